#include "fit_check.hpp"

#include <array>

#include "fit_header.hpp"

namespace palvex_fit {

bool LooksLikeFit(std::istream &in) {
  std::array<char, kHeaderSize> head{};
  in.read(head.data(), static_cast<std::streamsize>(head.size()));
  const auto got = static_cast<std::size_t>(in.gcount());
  return ReadFitHeader(reinterpret_cast<const std::uint8_t *>(head.data()), got).has_value();
}

}  // namespace palvex_fit
