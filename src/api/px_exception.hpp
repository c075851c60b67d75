// The library's one exception type and the routine that raises it.
#pragma once

#include <concepts>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

#include "api/messages.hpp"

namespace ns_sensor {

class PX_Exception : public std::runtime_error {
 public:
  PX_Exception(std::uint32_t code, const std::string &message, std::int64_t detail1 = -1,
               std::int64_t detail2 = -1)
      : std::runtime_error(message), code_(code), detail1_(detail1), detail2_(detail2) {}

  std::uint32_t code() const noexcept { return code_; }
  std::int64_t detail1() const noexcept { return detail1_; }
  std::int64_t detail2() const noexcept { return detail2_; }

 private:
  std::uint32_t code_;
  std::int64_t detail1_;
  std::int64_t detail2_;
};

// One substitution parameter of a message.
struct PX_MessageParam {
  enum Kind : std::uint32_t { None = 0, Signed = 1, Unsigned = 2, Double = 3, String = 4 };

  std::uint32_t kind = None;
  std::uint64_t unsignedValue = 0;
  std::int64_t signedValue = 0;
  double doubleValue = 0.0;
  std::string stringValue;

  PX_MessageParam() = default;
  template <std::integral T>
    requires(!std::same_as<T, bool>)
  PX_MessageParam(T value) {  // NOLINT(google-explicit-constructor): parameters read as values
    if constexpr (std::is_signed_v<T>) {
      kind = Signed;
      signedValue = value;
    } else {
      kind = Unsigned;
      unsignedValue = value;
    }
  }
  PX_MessageParam(double value) : kind(Double), doubleValue(value) {}
  PX_MessageParam(std::string_view value) : kind(String), stringValue(value) {}
  PX_MessageParam(const char *value) : kind(String), stringValue(value ? value : "") {}
  PX_MessageParam(const std::string &value) : kind(String), stringValue(value) {}
};

// A name or path reported as a parameter is wrapped in double quotes.
PX_MessageParam Quoted(std::string_view name);

// The description of one failure site.
struct PX_ErrorInfo {
  std::uint32_t code;
  const char *messageKey;  // the whole literal
  std::int64_t detail1 = -1;
  std::int64_t detail2 = -1;
};

// Builds the finished UTF-8 message: dictionary text, then ^1..^4 substituted in order.
std::string BuildErrorMessage(std::string_view messageKey, const PX_MessageParam &param1 = {},
                              const PX_MessageParam &param2 = {},
                              const PX_MessageParam &param3 = {},
                              const PX_MessageParam &param4 = {});

// Builds the message, records the exception as the thread's last one and throws it.
[[noreturn]] void RaiseError(const PX_ErrorInfo &info, const PX_MessageParam &param1 = {},
                             const PX_MessageParam &param2 = {},
                             const PX_MessageParam &param3 = {},
                             const PX_MessageParam &param4 = {});

// RaiseError with the code and literal of a table row.
[[noreturn]] void Raise(Msg id, const PX_MessageParam &param1 = {},
                        const PX_MessageParam &param2 = {}, const PX_MessageParam &param3 = {},
                        const PX_MessageParam &param4 = {});

// The calling thread's last raised exception; code 0 and empty text when cleared.
const PX_Exception &LastException();
void ResetLastException();

}  // namespace ns_sensor
