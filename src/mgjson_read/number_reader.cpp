// The number grammar of MGJSON files. It takes the steps of RapidJSON's normal-precision
// number reading one by one, with MGJSON's own messages, and keeps the oddities that files
// written for this format rely on being read the same way everywhere:
// - the byte after "e"/"E" is always taken as the exponent's sign, whatever it is, so
//   1e25 has the exponent 5 and 1e5 misses its exponent;
// - a negative exponent takes only the digits 1 to 9 after its first digit, so 1e-10 ends
//   after "1e-1";
// - an exponent that is too large is reported under the key "MIssingExponent".
#include "mgjson_read/scanner.hpp"  // first: it configures RapidJSON

#include <rapidjson/internal/pow10.h>

#include <cstdint>

namespace ns_sensor {
namespace {

constexpr const char *kJsonNumber = "JSON Number";
// Beyond this a further integer digit could overflow the double.
constexpr double kLargestBeforeDigit = 1.7976931348623158e307;
// Fraction digits continue the integer while it is exactly representable.
constexpr std::uint64_t kLargestExactInteger = 9007199254740991u;  // 2^53 - 1
constexpr int kMaxSignificantDigits = 17;
constexpr std::int64_t kExponentSkipThreshold = 214748364;
constexpr std::int64_t kLargestPowerOfTen = 308;

bool IsDigit(char byte) { return byte >= '0' && byte <= '9'; }
bool IsNonZeroDigit(char byte) { return byte >= '1' && byte <= '9'; }
unsigned DigitValue(char byte) { return static_cast<unsigned>(byte - '0'); }

// d × 10^p for -308 <= p <= 308, from the table of exact powers.
double ScaleByPowerOfTen(double d, std::int64_t p) {
  if (p < -kLargestPowerOfTen) return 0.0;
  if (p >= 0) return d * rapidjson::internal::Pow10(static_cast<int>(p));
  return d / rapidjson::internal::Pow10(static_cast<int>(-p));
}

}  // namespace

const char *MgjsonScanner::ReadNumber(const char *at, const PropertyPath &path,
                                      double &value) const {
  auto more = [&] { return at != end_; };
  auto fail = [&](Msg id) { RaiseAtOffset(id, OffsetOf(at), Quoted(path.Text()), kJsonNumber); };

  const bool minus = more() && *at == '-';
  if (minus) ++at;

  // Integer part: 32 bits while it fits, then 64 bits, then a double.
  std::uint32_t i = 0;
  std::uint64_t i64 = 0;
  double d = 0.0;
  bool use64 = false;
  bool useDouble = false;
  int significantDigits = 0;
  if (more() && *at == '0') {
    ++at;  // a leading zero ends the integer part
  } else if (more() && IsNonZeroDigit(*at)) {
    i = DigitValue(*at++);
    significantDigits = 1;
    const std::uint32_t limit32 = minus ? 214748364u : 429496729u;
    const char lastDigit32 = minus ? '8' : '5';
    while (more() && IsDigit(*at)) {
      if (i >= limit32 && (i != limit32 || *at > lastDigit32)) {
        i64 = i;
        use64 = true;
        break;
      }
      i = i * 10 + DigitValue(*at++);
      ++significantDigits;
    }
    if (use64) {
      const std::uint64_t limit64 = minus ? 922337203685477580u : 1844674407370955161u;
      const char lastDigit64 = minus ? '8' : '5';
      while (more() && IsDigit(*at)) {
        if (i64 >= limit64 && (i64 != limit64 || *at > lastDigit64)) {
          d = static_cast<double>(i64);
          useDouble = true;
          break;
        }
        i64 = i64 * 10 + DigitValue(*at++);
        ++significantDigits;
      }
    }
    if (useDouble) {
      while (more() && IsDigit(*at)) {
        if (d >= kLargestBeforeDigit) fail(Msg::NumberTooBig);
        d = d * 10 + DigitValue(*at++);
        ++significantDigits;
      }
    }
  } else {
    fail(Msg::InvalidPropertyTypeSyntax);
  }

  // Fraction: continue the integer while it is exact, then the double up to 17 digits.
  std::int64_t fractionExponent = 0;
  if (more() && *at == '.') {
    ++at;
    if (!more() || !IsDigit(*at)) fail(Msg::MissingFractionPart);
    if (!useDouble) {
      if (!use64) i64 = i;
      while (more() && IsDigit(*at) && i64 <= kLargestExactInteger) {
        i64 = i64 * 10 + DigitValue(*at++);
        --fractionExponent;
        if (i64 != 0) ++significantDigits;
      }
      d = static_cast<double>(i64);
      useDouble = true;
    }
    while (more() && IsDigit(*at)) {
      if (significantDigits < kMaxSignificantDigits) {
        d = d * 10.0 + DigitValue(*at);
        --fractionExponent;
        if (d > 0.0) ++significantDigits;
      }
      ++at;
    }
  }

  // Exponent: the byte after "e" is the sign, whatever it is.
  std::int64_t exponent = 0;
  if (more() && (*at == 'e' || *at == 'E')) {
    ++at;
    if (!useDouble) {
      d = use64 ? static_cast<double>(i64) : static_cast<double>(i);
      useDouble = true;
    }
    const bool exponentMinus = more() && *at == '-';
    if (more()) ++at;
    if (!more() || !IsDigit(*at)) fail(Msg::MissingExponent);
    exponent = DigitValue(*at++);
    if (exponentMinus) {
      while (more() && IsNonZeroDigit(*at)) {
        exponent = exponent * 10 + DigitValue(*at++);
        if (exponent >= kExponentSkipThreshold) {
          while (more() && IsNonZeroDigit(*at)) ++at;
        }
      }
      exponent = -exponent;
    } else {
      const std::int64_t maxExponent = kLargestPowerOfTen - fractionExponent;
      while (more() && IsDigit(*at)) {
        exponent = exponent * 10 + DigitValue(*at);
        if (exponent > maxExponent) fail(Msg::ExponentTooBig);
        ++at;
      }
    }
  }

  if (!useDouble) {
    // Two's complement negation, as the integer would be stored before its conversion.
    if (use64) {
      value = minus ? static_cast<double>(static_cast<std::int64_t>(~i64 + 1))
                    : static_cast<double>(i64);
    } else {
      value = minus ? static_cast<double>(-static_cast<std::int64_t>(i)) : static_cast<double>(i);
    }
    return at;
  }
  const std::int64_t p = exponent + fractionExponent;
  if (p < -kLargestPowerOfTen) {
    d = ScaleByPowerOfTen(d, -kLargestPowerOfTen);
    d = ScaleByPowerOfTen(d, p + kLargestPowerOfTen);
  } else {
    d = ScaleByPowerOfTen(d, p);
  }
  value = minus ? -d : d;
  return at;
}

}  // namespace ns_sensor
