#include "api/px_exception.hpp"

#include <cstdio>
#include <memory>

#include "localisation/dictionary.hpp"
#include "localisation/utf.hpp"
#include "platform/thread_slot.hpp"

namespace ns_sensor {
namespace {

// Each thread's last exception lives on the heap behind a platform thread slot, not in a
// thread_local object (see platform/thread_slot.hpp for why).
palvex::platform::ThreadSlot &LastExceptionSlot() {
  static palvex::platform::ThreadSlot slot([](void *last) { delete static_cast<PX_Exception *>(last); });
  return slot;
}

const PX_Exception &ClearedException() {
  static const PX_Exception cleared{0, std::string{}, 0, 0};
  return cleared;
}

void RecordLastException(const PX_Exception &exception) {
  auto *last = static_cast<PX_Exception *>(LastExceptionSlot().Get());
  if (last != nullptr) {
    *last = exception;
    return;
  }
  auto fresh = std::make_unique<PX_Exception>(exception);
  LastExceptionSlot().Set(fresh.get());
  fresh.release();
}

std::u16string FormatParam(const PX_MessageParam &param) {
  char buffer[64];
  switch (param.kind) {
    case PX_MessageParam::Signed:
      std::snprintf(buffer, sizeof buffer, "%lld", static_cast<long long>(param.signedValue));
      return AsciiToUtf16(buffer);
    case PX_MessageParam::Unsigned:
      std::snprintf(buffer, sizeof buffer, "%llu",
                    static_cast<unsigned long long>(param.unsignedValue));
      return AsciiToUtf16(buffer);
    case PX_MessageParam::Double:
      std::snprintf(buffer, sizeof buffer, "%f", param.doubleValue);
      return AsciiToUtf16(buffer);
    case PX_MessageParam::String:
      return Utf8ToUtf16(param.stringValue);
    default:
      return {};
  }
}

// Replaces the first ^n only; a parameter of kind None leaves the mark visible.
void Substitute(std::u16string &text, char16_t digit, const PX_MessageParam &param) {
  if (param.kind == PX_MessageParam::None) return;
  const char16_t mark[] = {u'^', digit, 0};
  const auto at = text.find(mark);
  if (at == std::u16string::npos) return;
  text.replace(at, 2, FormatParam(param));
}

}  // namespace

PX_MessageParam Quoted(std::string_view name) {
  std::string quoted;
  quoted.reserve(name.size() + 2);
  quoted += '"';
  quoted += name;
  quoted += '"';
  return PX_MessageParam(quoted);
}

std::string BuildErrorMessage(std::string_view messageKey, const PX_MessageParam &param1,
                              const PX_MessageParam &param2, const PX_MessageParam &param3,
                              const PX_MessageParam &param4) {
  std::u16string text = LookupMessage(messageKey);
  Substitute(text, u'1', param1);
  Substitute(text, u'2', param2);
  Substitute(text, u'3', param3);
  Substitute(text, u'4', param4);
  return Utf16ToUtf8(text);
}

void RaiseError(const PX_ErrorInfo &info, const PX_MessageParam &param1,
                const PX_MessageParam &param2, const PX_MessageParam &param3,
                const PX_MessageParam &param4) {
  PX_Exception exception(info.code,
                         BuildErrorMessage(info.messageKey, param1, param2, param3, param4),
                         info.detail1, info.detail2);
  RecordLastException(exception);
  throw exception;
}

void Raise(Msg id, const PX_MessageParam &param1, const PX_MessageParam &param2,
           const PX_MessageParam &param3, const PX_MessageParam &param4) {
  const MessageRow &row = Message(id);
  RaiseError(PX_ErrorInfo{row.code, row.literal.data()}, param1, param2, param3, param4);
}

const PX_Exception &LastException() {
  const auto *last = static_cast<const PX_Exception *>(LastExceptionSlot().Get());
  return last != nullptr ? *last : ClearedException();
}

void ResetLastException() {
  if (auto *last = static_cast<PX_Exception *>(LastExceptionSlot().Get())) *last = ClearedException();
}

}  // namespace ns_sensor
