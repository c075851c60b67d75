#include "api/guard.hpp"

#include "api/client_table.hpp"

namespace ns_sensor {
namespace {

constexpr std::uint32_t kUnknownFailureCode = 23;

void ReportBuilt(PX_ErrorContext context, std::uint32_t code, Msg id) noexcept {
  try {
    const std::string message = BuildErrorMessage(Message(id).literal);
    ReportToHost(context, code, message, -1, -1);
  } catch (...) {
    // Building the text needs memory too; the default text needs none.
    ReportToHost(context, code, DefaultText(Message(id).literal), -1, -1);
  }
}

}  // namespace

void ReportCurrentException(PX_ErrorContext context) noexcept {
  try {
    throw;
  } catch (const PX_Exception &failure) {
    const char *text = failure.what();
    ReportToHost(context, failure.code(), (text && *text) ? text : "Unknown exception",
                 failure.detail1(), failure.detail2());
  } catch (const std::bad_alloc &) {
    ReportBuilt(context, Message(Msg::MemoryNotAvailable).code, Msg::MemoryNotAvailable);
  } catch (...) {
    // Code 23 at the boundary, although the same key is raised elsewhere with 34.
    ReportBuilt(context, kUnknownFailureCode, Msg::UnknownExceptionCaught);
  }
}

}  // namespace ns_sensor
