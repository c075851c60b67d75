// Channel values of a motion frame turned into the document's convention: positions change
// the sign of their second and third values, rotations in any of the six Euler orders
// become angles about X, Y and Z of one fixed decomposition.
#pragma once

#include <array>
#include <cstdint>

namespace ns_sensor {

using Triple = std::array<double, 3>;

// (p1, -p2, -p3) of the values in file order.
Triple ConvertPosition(const Triple &fileValues);

// Rotation values in degrees, in file order, of the channel order code (kChannelAxes):
// the rotation matrix M is the product of the three axis rotations in channel order and N
// its transpose; the result in degrees is (-atan2(N21, N22), atan2(-N20, sqrt(N21² + N22²)),
// atan2(N10, N00)). Raises BvhMalformed (1509) for a code outside 0 to 5.
Triple ConvertRotation(std::int8_t order, const Triple &fileValues);

}  // namespace ns_sensor
