// Message identifiers and their rows (code and literal), generated from message_table.def.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace ns_sensor {

enum class Msg : std::uint16_t {
#define PX_MESSAGE(id, code, literal) id,
#include "api/message_table.def"
#undef PX_MESSAGE
};

struct MessageRow {
  Msg id;
  std::uint32_t code;
  std::string_view literal;  // "$$$/PXError/...=default text"
};

// Every row of the table, in table order.
std::span<const MessageRow> AllMessages();

// The row of one identifier.
const MessageRow &Message(Msg id);

// The dictionary key of a literal: everything before the first "=".
std::string_view MessageKey(std::string_view literal);
// The default text of a literal: everything after the first "=" (empty without "=").
std::string_view DefaultText(std::string_view literal);

}  // namespace ns_sensor
