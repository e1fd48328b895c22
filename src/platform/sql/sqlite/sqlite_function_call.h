// How a SQLite function of ours is written: as a plain function of a Call, which may refuse by
// throwing a Refusal. No exception reaches SQLite.
#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace kaunter::sql {

struct Refusal {
  int number;
  std::string message;
};

// The arguments and the result of one call.
class Call {
 public:
  Call(sqlite3_context* context, int count, sqlite3_value** arguments)
      : context_(context), count_(count), arguments_(arguments) {}

  int count() const { return count_; }
  sqlite3_context* context() const { return context_; }
  sqlite3_value* Raw(int i) const { return arguments_[i]; }
  bool IsNull(int i) const { return Type(i) == SQLITE_NULL; }
  bool IsText(int i) const { return Type(i) == SQLITE_TEXT || Type(i) == SQLITE_BLOB; }
  bool IsInteger(int i) const { return Type(i) == SQLITE_INTEGER; }
  std::string_view Text(int i) const;
  std::int64_t Integer(int i) const { return sqlite3_value_int64(arguments_[i]); }
  double Number(int i) const { return sqlite3_value_double(arguments_[i]); }

  void Null() { sqlite3_result_null(context_); }
  void Return(std::int64_t value) { sqlite3_result_int64(context_, value); }
  void Return(int value) { sqlite3_result_int64(context_, value); }
  void Return(double value) { sqlite3_result_double(context_, value == 0 ? 0.0 : value); }
  void Return(std::string_view text);
  void ReturnArgument(int i) { sqlite3_result_value(context_, arguments_[i]); }

 private:
  int Type(int i) const { return sqlite3_value_type(arguments_[i]); }

  sqlite3_context* context_;
  int count_;
  sqlite3_value** arguments_;
};

using SqliteFunction = void (*)(sqlite3_context*, int, sqlite3_value**);

struct FunctionEntry {
  const char* name;
  SqliteFunction call;
};

void ReportRefusal(sqlite3_context* context, const Refusal& refusal);
void ReportFailure(sqlite3_context* context);  // of the exception in flight

// The function as SQLite calls it. With kNullGivesNull a null argument ends the call with null.
template <void (*kFunction)(Call&), bool kNullGivesNull = true>
void Guarded(sqlite3_context* context, int count, sqlite3_value** arguments) {
  Call call(context, count, arguments);
  if constexpr (kNullGivesNull) {
    for (int i = 0; i < count; ++i) {
      if (call.IsNull(i)) return call.Null();
    }
  }
  try {
    kFunction(call);
  } catch (const Refusal& refusal) {
    ReportRefusal(context, refusal);
  } catch (...) {
    ReportFailure(context);
  }
}

struct AggregateEntry {
  const char* name;
  SqliteFunction step;
  void (*final)(sqlite3_context*);  // also gives the value of a window, where there is an inverse
  SqliteFunction inverse;           // null: it stands in no window
};

std::span<const FunctionEntry> NumberFunctions();
std::span<const FunctionEntry> TextFunctions();
std::span<const FunctionEntry> DateFunctions();
std::span<const AggregateEntry> Aggregates();

// What several functions share.
// A decimal argument as units of 10^scale: a number rounded, a text parsed [8114], [8115].
std::int64_t DecimalUnits(sqlite3_value* value, int scale);
[[noreturn]] void RefuseOverflow(std::string_view type);  // 8115

}  // namespace kaunter::sql
