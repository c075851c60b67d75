// The pieces every MGJSON text the writer makes is built of. None of them escapes: free
// texts were escaped when the object model stored them (text_arguments.hpp), and every
// key is a fixed name. Nothing is written between tokens.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "plugin_model/number_text.hpp"

namespace PX_PLUGIN::writer_text {

inline void Quote(std::string &out, std::string_view text) {
  out += '"';
  out += text;
  out += '"';
}

// "key":
inline void Key(std::string &out, std::string_view key) {
  Quote(out, key);
  out += ':';
}

inline void StringPair(std::string &out, std::string_view key, std::string_view text) {
  Key(out, key);
  Quote(out, text);
}

inline void NumberPair(std::string &out, std::string_view key, double value) {
  Key(out, key);
  char text[kLongestJsonNumberText];
  out.append(text, WriteJsonNumber(text, value));
}

inline void BooleanPair(std::string &out, std::string_view key, bool value) {
  Key(out, key);
  out += value ? "true" : "false";
}

inline void TextArrayPair(std::string &out, std::string_view key, const std::vector<std::string> &items) {
  Key(out, key);
  out += '[';
  for (std::size_t i = 0; i < items.size(); ++i) {
    if (i != 0) out += ',';
    Quote(out, items[i]);
  }
  out += ']';
}

}  // namespace PX_PLUGIN::writer_text
