// Aggregates that SQLite lacks or adds in binary: sums of decimals are exact.
#include "platform/sql/decimal.h"
#include "platform/sql/sqlite/sqlite_function_call.h"

namespace kaunter::sql {
namespace {

// SQLite gives an aggregate zeroed memory of this size: all members must be right as zero.
struct Sum {
  std::int64_t units;  // of 10^places
  std::int64_t count;
  int scale;
  int places;
};

Sum* SumOf(sqlite3_context* context) {
  return static_cast<Sum*>(sqlite3_aggregate_context(context, sizeof(Sum)));
}

void AddDecimal(Call& call) {
  if (call.IsNull(0)) return;
  Sum* sum = SumOf(call.context());
  if (sum == nullptr) throw std::bad_alloc();
  if (sum->count == 0) {
    const std::int64_t scale = call.Integer(1);
    sum->scale = scale < 0 ? 0 : scale > kMaxScale ? kMaxScale : static_cast<int>(scale);
    sum->places = scale > 4 ? 6 : 4;
  }
  ++sum->count;
  if (__builtin_add_overflow(sum->units, DecimalUnits(call.Raw(0), sum->places), &sum->units)) {
    RefuseOverflow("numeric");
  }
}

void ReturnUnits(Call& call, std::int64_t units, int scale) {
  if (units % PowerOfTen(scale) == 0) return call.Return(units / PowerOfTen(scale));
  call.Return(Unscale(units, scale));
}

std::int64_t HalfAway(std::int64_t units, std::int64_t divisor) {
  const std::int64_t whole = units / divisor;
  const std::int64_t rest = units % divisor;
  if (rest >= divisor - divisor / 2) return whole + 1;
  return -rest >= divisor - divisor / 2 ? whole - 1 : whole;
}

void FinishSum(Call& call) {
  const auto* sum = static_cast<Sum*>(sqlite3_aggregate_context(call.context(), 0));
  if (sum == nullptr || sum->count == 0) return call.Null();
  if (sum->scale >= sum->places) return ReturnUnits(call, sum->units, sum->places);
  const std::int64_t divisor = PowerOfTen(sum->places - sum->scale);
  ReturnUnits(call, divisor == 1 ? sum->units : HalfAway(sum->units, divisor), sum->scale);
}

void FinishAverage(Call& call) {
  const auto* sum = static_cast<Sum*>(sqlite3_aggregate_context(call.context(), 0));
  if (sum == nullptr || sum->count == 0) return call.Null();
  __extension__ using Wide = __int128;
  const Wide scaled = static_cast<Wide>(sum->units) * PowerOfTen(sum->scale);
  const Wide average = scaled / (static_cast<Wide>(sum->count) * PowerOfTen(sum->places));
  const auto units = static_cast<std::int64_t>(average);
  if (units != average) RefuseOverflow("numeric");
  ReturnUnits(call, units, sum->scale);
}

void AddInteger(Call& call) {
  if (call.IsNull(0)) return;
  Sum* sum = SumOf(call.context());
  if (sum == nullptr) throw std::bad_alloc();
  ++sum->count;
  if (__builtin_add_overflow(sum->units, call.Integer(0), &sum->units)) RefuseOverflow("int");
}

void FinishIntegerAverage(Call& call) {
  const auto* sum = static_cast<Sum*>(sqlite3_aggregate_context(call.context(), 0));
  if (sum == nullptr || sum->count == 0) return call.Null();
  call.Return(sum->units / sum->count);
}

struct One {
  sqlite3_value* value;
  bool seen;
};

void TakeOne(Call& call) {
  auto* one = static_cast<One*>(sqlite3_aggregate_context(call.context(), sizeof(One)));
  if (one == nullptr) throw std::bad_alloc();
  if (one->seen) {
    throw Refusal{512,
                  "Subquery returned more than 1 value. This is not permitted when the subquery "
                  "follows =, !=, <, <= , >, >= or when the subquery is used as an expression."};
  }
  one->seen = true;
  one->value = sqlite3_value_dup(call.Raw(0));
}

void FinishOne(sqlite3_context* context) {
  auto* one = static_cast<One*>(sqlite3_aggregate_context(context, 0));
  if (one == nullptr || one->value == nullptr) return sqlite3_result_null(context);
  sqlite3_result_value(context, one->value);
  sqlite3_value_free(one->value);
  one->value = nullptr;
}

template <void (*kFinish)(Call&)>
void GuardedFinal(sqlite3_context* context) {
  Guarded<kFinish>(context, 0, nullptr);
}

constexpr AggregateEntry kEntries[] = {
    {"k_sum", Guarded<AddDecimal, false>, GuardedFinal<FinishSum>},
    {"k_avg", Guarded<AddDecimal, false>, GuardedFinal<FinishAverage>},
    {"k_avg_int", Guarded<AddInteger, false>, GuardedFinal<FinishIntegerAverage>},
    {"k_one", Guarded<TakeOne, false>, FinishOne},
};

}  // namespace

std::span<const AggregateEntry> Aggregates() { return kEntries; }

}  // namespace kaunter::sql
