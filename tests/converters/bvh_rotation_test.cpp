// Rotation and position channels in the document's convention. The expected angles were
// worked out apart from the code, by composing unit quaternions in channel order and
// reading the result's X-Y-Z Euler angles (R = Rx(a) Ry(b) Rz(c)); the document's angles
// are (a, -b, -c), since its Y and Z axes point the other way.
#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "converters/bvh_rotation.hpp"

namespace ns_sensor {
namespace {

constexpr double kTolerance = 1e-9;

void ExpectAngles(const Triple &actual, const Triple &expected, const std::string &what) {
  for (std::size_t i = 0; i < 3; ++i) EXPECT_NEAR(actual[i], expected[i], kTolerance) << what << " angle " << i;
}

TEST(BvhRotation, EveryOrderAgainstIndependentValues) {
  const struct {
    std::int8_t order;
    Triple file;
    Triple expected;
  } cases[] = {
      {0, {30, -45, 60}, {30.0, 45.0, -60.0}},
      {1, {30, -45, 60}, {80.768479516408, -37.761243907035, 63.434948822922}},
      {2, {30, -45, 60}, {39.639272237756, 16.279906247033, 50.360727762244}},
      {3, {30, -45, 60}, {-49.106605350869, -20.704811054635, -82.207654298596}},
      {4, {30, -45, 60}, {-64.438554163202, -34.975303851097, -25.561445836798}},
      {5, {30, -45, 60}, {69.118790319646, -7.286245187116, -51.876568255402}},
      {0, {10, 20, -170}, {10.0, -20.0, 170.0}},
      {1, {10, 20, -170}, {-173.451178397019, 9.391285802043, -159.716440545470}},
      {2, {10, 20, -170}, {-170.348746707551, 13.267575283820, 18.048551545403}},
      {3, {10, 20, -170}, {20.283559454530, -9.391285802043, 173.451178397019}},
      {4, {10, 20, -170}, {-161.951448454597, 13.267575283820, -170.348746707551}},
      {5, {10, 20, -170}, {-173.067449863330, 21.214509800044, 6.932550136670}},
  };
  for (const auto &c : cases) {
    ExpectAngles(ConvertRotation(c.order, c.file), c.expected, "order " + std::to_string(c.order));
  }
}

// Zero in every order, and a quarter turn about one axis wherever its channel stands;
// a zero is written without a sign.
TEST(BvhRotation, ZeroAndSingleAxisRotations) {
  for (std::int8_t order = 0; order < 6; ++order) {
    const Triple angles = ConvertRotation(order, {0, 0, 0});
    ExpectAngles(angles, {0, 0, 0}, "zero in order " + std::to_string(order));
    for (double angle : angles) EXPECT_FALSE(std::signbit(angle)) << int(order);
  }
  for (double value : ConvertPosition({0, 0, 0})) EXPECT_FALSE(std::signbit(value));
  ExpectAngles(ConvertRotation(0, {90, 0, 0}), {90, 0, 0}, "X in order 0");
  ExpectAngles(ConvertRotation(4, {0, 90, 0}), {90, 0, 0}, "X in order 4");
  ExpectAngles(ConvertRotation(0, {0, 90, 0}), {0, -90, 0}, "Y in order 0");
  ExpectAngles(ConvertRotation(5, {90, 0, 0}), {0, 0, -90}, "Z in order 5");
}

}  // namespace
}  // namespace ns_sensor
