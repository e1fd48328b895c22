#include "platform/sql/sqlite/sqlite_functions.h"

#include <fmt/format.h>

#include <cstring>
#include <exception>
#include <memory>
#include <new>

#include "platform/sql/sqlite/sqlite_function_call.h"
#include "platform/sql/text.h"
#include "platform/sql/translator/functions.h"

namespace kaunter::sql {
namespace {

int Collate(void*, int a_size, const void* a, int b_size, const void* b) {
  return CompareText({static_cast<const char*>(a), static_cast<std::size_t>(a_size)},
                     {static_cast<const char*>(b), static_cast<std::size_t>(b_size)});
}

void Now(sqlite3_context* context, int, sqlite3_value**) {
  auto* clock = static_cast<StatementClock*>(sqlite3_user_data(context));
  const std::string& now = clock->Now();
  sqlite3_result_text(context, now.data(), static_cast<int>(now.size()), SQLITE_TRANSIENT);
}

int OnStatement(unsigned, void* clock, void*, void*) {
  static_cast<StatementClock*>(clock)->NextStatement();
  return 0;
}

const FunctionEntry* Find(std::string_view name) {
  for (const auto entries : {NumberFunctions(), TextFunctions(), DateFunctions()}) {
    for (const FunctionEntry& entry : entries) {
      if (name == entry.name) return &entry;
    }
  }
  return nullptr;
}

const AggregateEntry* FindAggregate(std::string_view name) {
  for (const AggregateEntry& entry : Aggregates()) {
    if (name == entry.name) return &entry;
  }
  return nullptr;
}

void Check(int code, const char* name) {
  if (code != SQLITE_OK) {
    throw std::logic_error(fmt::format("SQLite does not take the function {}", name));
  }
}

void RegisterOne(sqlite3* db, const FunctionSignature& f, StatementClock* clock,
                 void (*destroy)(void*)) {
  const int flags = SQLITE_UTF8 | SQLITE_INNOCUOUS | (f.constant ? SQLITE_DETERMINISTIC : 0);
  if (f.name == std::string_view("k_now")) {
    Check(sqlite3_create_function_v2(db, f.name, 0, flags, clock, Now, nullptr, nullptr, destroy),
          f.name);
    return;
  }
  for (int count = f.min_arguments; count <= f.max_arguments; ++count) {
    if (f.aggregate) {
      const AggregateEntry* entry = FindAggregate(f.name);
      if (entry == nullptr) Check(SQLITE_ERROR, f.name);
      Check(sqlite3_create_window_function(
                db, f.name, count, flags, nullptr, entry->step, entry->final,
                entry->inverse != nullptr ? entry->final : nullptr, entry->inverse, nullptr),
            f.name);
    } else {
      const FunctionEntry* entry = Find(f.name);
      if (entry == nullptr) Check(SQLITE_ERROR, f.name);
      Check(sqlite3_create_function_v2(db, f.name, count, flags, nullptr, entry->call, nullptr,
                                       nullptr, nullptr),
            f.name);
    }
  }
}

// SQLite's own name for its Bloom filters is not in its public header.
constexpr int kBloomFilters = 0x00080000;

// SQLite 3.40 sifts the rows of a join through a filter that hashes a text by its length. Texts
// that our collation takes for equal may differ in length ('C1' and 'C1 '), and their rows would be
// lost.
void SwitchBloomFiltersOff(sqlite3* db) {
  Check(sqlite3_test_control(SQLITE_TESTCTRL_OPTIMIZATIONS, db, kBloomFilters), "Bloom filters");
}

// `destroy` takes the clock back when the handle closes; null when it is not the handle's.
void RegisterAll(sqlite3* db, StatementClock* clock, void (*destroy)(void*)) {
  Check(sqlite3_create_collation_v2(db, kCollation, SQLITE_UTF8, nullptr, Collate, nullptr),
        kCollation);
  SwitchBloomFiltersOff(db);
  for (const FunctionSignature& f : kFunctions) RegisterOne(db, f, clock, destroy);
}

}  // namespace

std::string_view Call::Text(int i) const {
  const void* text = sqlite3_value_text(arguments_[i]);
  if (text == nullptr) return {};
  return {static_cast<const char*>(text),
          static_cast<std::size_t>(sqlite3_value_bytes(arguments_[i]))};
}

void Call::Return(std::string_view text) {
  sqlite3_result_text64(context_, text.data() == nullptr ? "" : text.data(), text.size(),
                        SQLITE_TRANSIENT, SQLITE_UTF8);
}

void ReportRefusal(sqlite3_context* context, const Refusal& refusal) {
  const std::string text = fmt::format("[{}] {}", refusal.number, refusal.message);
  sqlite3_result_error(context, text.c_str(), static_cast<int>(text.size()));
}

void ReportFailure(sqlite3_context* context) {
  try {
    throw;
  } catch (const std::bad_alloc&) {
    sqlite3_result_error_nomem(context);
  } catch (const std::exception& error) {
    sqlite3_result_error(context, error.what(), -1);
  } catch (...) {
    sqlite3_result_error(context, "an unknown failure in a function", -1);
  }
}

int TakeErrorNumber(std::string* message) {
  if (message->empty() || message->front() != '[') return 0;
  const std::size_t close = message->find("] ");
  if (close == std::string::npos || close < 2 || close > 6) return 0;
  int number = 0;
  for (std::size_t i = 1; i < close; ++i) {
    const char c = (*message)[i];
    if (c < '0' || c > '9') return 0;
    number = number * 10 + (c - '0');
  }
  message->erase(0, close + 2);
  return number;
}

void RegisterSqliteFunctions(sqlite3* db, StatementClock* clock) {
  RegisterAll(db, clock, nullptr);
}

void RegisterSqliteFunctions(sqlite3* db, const Clock& clock) {
  auto* owned = new StatementClock(clock);
  RegisterAll(db, owned, [](void* p) { delete static_cast<StatementClock*>(p); });
  sqlite3_trace_v2(db, SQLITE_TRACE_STMT, OnStatement, owned);
}

}  // namespace kaunter::sql
