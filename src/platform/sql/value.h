// Value: one field of a row. Null, text, integer, double, money (decimal columns of up to four
// decimals) or date-time.
#pragma once

#include <cstdint>
#include <string>
#include <variant>

#include "platform/date_time.h"
#include "platform/money.h"

namespace kaunter {

class Value {
 public:
  Value() = default;
  Value(std::string text) : data_(std::move(text)) {}
  Value(const char* text) : data_(std::string(text)) {}
  Value(std::int64_t integer) : data_(integer) {}
  Value(int integer) : data_(static_cast<std::int64_t>(integer)) {}
  Value(double number) : data_(number) {}
  Value(Money money) : data_(money) {}
  Value(DateTime date) : data_(date) {}

  bool IsNull() const { return std::holds_alternative<std::monostate>(data_); }
  const std::string* AsText() const { return std::get_if<std::string>(&data_); }
  const std::int64_t* AsInteger() const { return std::get_if<std::int64_t>(&data_); }
  const double* AsDouble() const { return std::get_if<double>(&data_); }
  const Money* AsMoney() const { return std::get_if<Money>(&data_); }
  const DateTime* AsDate() const { return std::get_if<DateTime>(&data_); }

  // The loosely typed text: "" for Null, numbers without commas and trailing zeros, dates canonical
  // (yyyy-mm-dd, time only when not midnight).
  std::string ToText() const;

  bool operator==(const Value&) const = default;

 private:
  std::variant<std::monostate, std::string, std::int64_t, double, Money, DateTime> data_;
};

}  // namespace kaunter
