// Iterators over the elements of a parsed JSON array or the members of a parsed JSON object,
// one interface for both, so that the document is walked by one procedure whatever the
// container. An element's name is what its node is called in the outline: a member's key,
// or for an array element the array's name, a space and the element's index.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "mgjson_read/rapidjson_config.hpp"

namespace ns_sensor {

// What the current element is; the numbers are the kinds' fixed codes.
enum class JsonKind : std::uint8_t {
  Null = 0,
  String = 1,
  Number = 2,
  Boolean = 3,
  Array = 4,
  Object = 5,
};

JsonKind KindOf(const JsonValue &value);

// The operations are virtual, in this order, so that every container kind is walked
// through one table of operations; the value accessors work on Current().
class JsonIterator {
 public:
  virtual ~JsonIterator() = default;
  JsonIterator(const JsonIterator &) = delete;
  JsonIterator &operator=(const JsonIterator &) = delete;

  // True while the iterator stands on an element; the operations below need one.
  virtual bool HasMore() const = 0;
  virtual void Advance() = 0;
  virtual std::string Name() const = 0;
  virtual JsonKind Kind() const;
  // The string's bytes, NULs included.
  virtual std::string_view StringValue() const;
  // Integers of any width and doubles, as a double.
  virtual double NumberValue() const;
  virtual bool BooleanValue() const;
  // Over the members of the current element, an object.
  virtual std::shared_ptr<JsonIterator> ObjectIterator() const;
  // Over the elements of the current element, an array; they are named after it.
  virtual std::shared_ptr<JsonIterator> ArrayIterator() const;
  // Members or elements of the current element, a container.
  virtual std::size_t Count() const;
  // The current element itself.
  virtual const JsonValue &Current() const = 0;

 protected:
  JsonIterator() = default;
};

class JsonArrayIterator final : public JsonIterator {
 public:
  // Over array's elements, named "<name> <index>".
  JsonArrayIterator(std::string name, const JsonValue &array);

  bool HasMore() const override { return current_ != end_; }
  void Advance() override;
  std::string Name() const override;
  const JsonValue &Current() const override { return *current_; }

 private:
  std::string name_;
  JsonValue::ConstValueIterator current_;
  JsonValue::ConstValueIterator end_;
  std::uint64_t index_ = 0;
};

class JsonObjectIterator final : public JsonIterator {
 public:
  explicit JsonObjectIterator(const JsonValue &object);

  bool HasMore() const override { return current_ != end_; }
  void Advance() override { ++current_; }
  std::string Name() const override;
  const JsonValue &Current() const override { return current_->value; }

 private:
  JsonValue::ConstMemberIterator current_;
  JsonValue::ConstMemberIterator end_;
};

}  // namespace ns_sensor
