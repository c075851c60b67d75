#include "converters/json_iterators.hpp"

#include <charconv>

namespace ns_sensor {

JsonKind KindOf(const JsonValue &value) {
  switch (value.GetType()) {
    case rapidjson::kNullType: return JsonKind::Null;
    case rapidjson::kFalseType:
    case rapidjson::kTrueType: return JsonKind::Boolean;
    case rapidjson::kObjectType: return JsonKind::Object;
    case rapidjson::kArrayType: return JsonKind::Array;
    case rapidjson::kStringType: return JsonKind::String;
    case rapidjson::kNumberType: break;
  }
  return JsonKind::Number;
}

JsonKind JsonIterator::Kind() const { return KindOf(Current()); }

std::string_view JsonIterator::StringValue() const {
  const JsonValue &value = Current();
  return {value.GetString(), value.GetStringLength()};
}

double JsonIterator::NumberValue() const { return Current().GetDouble(); }

bool JsonIterator::BooleanValue() const { return Current().GetBool(); }

std::shared_ptr<JsonIterator> JsonIterator::ObjectIterator() const {
  return std::make_shared<JsonObjectIterator>(Current());
}

std::shared_ptr<JsonIterator> JsonIterator::ArrayIterator() const {
  return std::make_shared<JsonArrayIterator>(Name(), Current());
}

std::size_t JsonIterator::Count() const {
  const JsonValue &value = Current();
  return value.IsObject() ? value.MemberCount() : value.Size();
}

JsonArrayIterator::JsonArrayIterator(std::string name, const JsonValue &array)
    : name_(std::move(name)), current_(array.Begin()), end_(array.End()) {}

void JsonArrayIterator::Advance() {
  ++current_;
  ++index_;
}

std::string JsonArrayIterator::Name() const {
  char digits[24];
  const auto written = std::to_chars(digits, digits + sizeof digits, index_);
  std::string name;
  name.reserve(name_.size() + 1 + static_cast<std::size_t>(written.ptr - digits));
  name.append(name_).append(1, ' ').append(digits, written.ptr);
  return name;
}

JsonObjectIterator::JsonObjectIterator(const JsonValue &object)
    : current_(object.MemberBegin()), end_(object.MemberEnd()) {}

std::string JsonObjectIterator::Name() const {
  return std::string(current_->name.GetString(), current_->name.GetStringLength());
}

}  // namespace ns_sensor
