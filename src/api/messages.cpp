#include "api/messages.hpp"

namespace ns_sensor {
namespace {

constexpr MessageRow kMessages[] = {
#define PX_MESSAGE(id, code, literal) {Msg::id, code, literal},
#include "api/message_table.def"
#undef PX_MESSAGE
};

}  // namespace

std::span<const MessageRow> AllMessages() { return kMessages; }

const MessageRow &Message(Msg id) { return kMessages[static_cast<std::size_t>(id)]; }

std::string_view MessageKey(std::string_view literal) {
  return literal.substr(0, literal.find('='));
}

std::string_view DefaultText(std::string_view literal) {
  const auto eq = literal.find('=');
  return eq == std::string_view::npos ? std::string_view{} : literal.substr(eq + 1);
}

}  // namespace ns_sensor
