#include "converters/bvh_rotation.hpp"

#include <cmath>

#include "api/px_exception.hpp"
#include "converters/bvh_hierarchy.hpp"

namespace ns_sensor {
namespace {

constexpr double kDegreesToRadians = 0.017453292519943295;
constexpr double kRadiansToDegrees = 57.29577951308402;

using Matrix = std::array<std::array<double, 3>, 3>;

// The rotation by angle (radians) about axis 0 X, 1 Y or 2 Z.
Matrix AxisRotation(std::uint8_t axis, double angle) {
  const double c = std::cos(angle);
  const double s = std::sin(angle);
  switch (axis) {
    case 0:
      return {{{1, 0, 0}, {0, c, -s}, {0, s, c}}};
    case 1:
      return {{{c, 0, s}, {0, 1, 0}, {-s, 0, c}}};
    default:
      return {{{c, -s, 0}, {s, c, 0}, {0, 0, 1}}};
  }
}

Matrix Product(const Matrix &a, const Matrix &b) {
  Matrix result{};
  for (std::size_t row = 0; row < 3; ++row) {
    for (std::size_t column = 0; column < 3; ++column) {
      result[row][column] = a[row][0] * b[0][column] + a[row][1] * b[1][column] + a[row][2] * b[2][column];
    }
  }
  return result;
}

// Degrees, with a negative zero made positive so that no angle is written as "-0".
double Degrees(double radians) { return radians * kRadiansToDegrees + 0.0; }

}  // namespace

Triple ConvertPosition(const Triple &fileValues) { return {fileValues[0], -fileValues[1] + 0.0, -fileValues[2] + 0.0}; }

Triple ConvertRotation(std::int8_t order, const Triple &fileValues) {
  if (order < 0 || static_cast<std::size_t>(order) >= kChannelAxes.size()) Raise(Msg::BvhMalformed);
  const auto &axes = kChannelAxes[static_cast<std::size_t>(order)];
  const Matrix m = Product(Product(AxisRotation(axes[0], fileValues[0] * kDegreesToRadians),
                                   AxisRotation(axes[1], fileValues[1] * kDegreesToRadians)),
                           AxisRotation(axes[2], fileValues[2] * kDegreesToRadians));
  // N = transpose of M, read in place: N[i][j] = m[j][i].
  const double n21 = m[1][2];
  const double n22 = m[2][2];
  const double n20 = m[0][2];
  const double n10 = m[0][1];
  const double n00 = m[0][0];
  return {Degrees(-std::atan2(n21, n22)), Degrees(std::atan2(-n20, std::sqrt(n21 * n21 + n22 * n22))),
          Degrees(std::atan2(n10, n00))};
}

}  // namespace ns_sensor
