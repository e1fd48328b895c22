// Aggregates that SQLite lacks or adds in binary: sums of decimals are exact.
#include "platform/sql/decimal.h"
#include "platform/sql/sqlite/sqlite_function_call.h"

namespace kaunter::sql {
namespace {

__extension__ using Wide = __int128;

// SQLite gives an aggregate zeroed memory of this size, at an address that suits 64 bits: all
// members must be right as zero.
struct __attribute__((packed, aligned(8))) Sum {
  Wide units;  // of 10^places
  std::int64_t count;
  int scale;
  int places;
};

// What a value is kept with while it is added: finer than a division gives it.
int PlacesFor(int scale) { return scale <= 4 ? 4 : scale <= 6 ? 6 : kMaxScale; }

// A value too large for so many places has none so fine.
Wide UnitsOf(sqlite3_value* value, int places) {
  constexpr int kCoarse = 4;
  std::int64_t units = 0;
  if (places == kCoarse) return DecimalUnits(value, kCoarse);
  if (ScaleDouble(sqlite3_value_double(value), places, &units)) return units;
  return static_cast<Wide>(DecimalUnits(value, kCoarse)) * PowerOfTen(places - kCoarse);
}

Sum* SumOf(sqlite3_context* context) {
  return static_cast<Sum*>(sqlite3_aggregate_context(context, sizeof(Sum)));
}

void AddDecimal(Call& call) {
  if (call.IsNull(0)) return;
  Sum* sum = SumOf(call.context());
  if (sum == nullptr) throw std::bad_alloc();
  if (sum->count == 0) {
    sum->scale = call.count() > 1 ? static_cast<int>(call.Integer(1)) : kMaxScale;
    sum->places = PlacesFor(sum->scale);
  }
  ++sum->count;
  sum->units += UnitsOf(call.Raw(0), sum->places);
}

// A row leaves the frame of a window.
void TakeDecimal(Call& call) {
  Sum* sum = SumOf(call.context());
  if (call.IsNull(0) || sum == nullptr) return;
  --sum->count;
  sum->units -= UnitsOf(call.Raw(0), sum->places);
}

void ReturnUnits(Call& call, Wide units, int scale) {
  const Wide power = PowerOfTen(scale);
  const auto whole = static_cast<std::int64_t>(units / power);
  if (whole != units / power) RefuseOverflow("numeric");
  if (units % power == 0) return call.Return(whole);
  call.Return(static_cast<double>(units) / static_cast<double>(power));
}

void FinishSum(Call& call) {
  const auto* sum = static_cast<Sum*>(sqlite3_aggregate_context(call.context(), 0));
  if (sum == nullptr || sum->count == 0) return call.Null();
  const Wide divisor = PowerOfTen(sum->places - sum->scale);
  const Wide half = sum->units < 0 ? -(divisor / 2) : divisor / 2;
  ReturnUnits(call, (sum->units + half) / divisor, sum->scale);
}

void FinishAverage(Call& call) {
  const auto* sum = static_cast<Sum*>(sqlite3_aggregate_context(call.context(), 0));
  if (sum == nullptr || sum->count == 0) return call.Null();
  const Wide divisor = static_cast<Wide>(sum->count) * PowerOfTen(sum->places - sum->scale);
  ReturnUnits(call, sum->units / divisor, sum->scale);
}

void AddInteger(Call& call) {
  if (call.IsNull(0)) return;
  Sum* sum = SumOf(call.context());
  if (sum == nullptr) throw std::bad_alloc();
  ++sum->count;
  sum->units += call.Integer(0);
}

void TakeInteger(Call& call) {
  Sum* sum = SumOf(call.context());
  if (call.IsNull(0) || sum == nullptr) return;
  --sum->count;
  sum->units -= call.Integer(0);
}

void FinishIntegerAverage(Call& call) {
  const auto* sum = static_cast<Sum*>(sqlite3_aggregate_context(call.context(), 0));
  if (sum == nullptr || sum->count == 0) return call.Null();
  call.Return(static_cast<std::int64_t>(sum->units / sum->count));
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
    {"k_sum", Guarded<AddDecimal, false>, GuardedFinal<FinishSum>, Guarded<TakeDecimal, false>},
    {"k_avg", Guarded<AddDecimal, false>, GuardedFinal<FinishAverage>, Guarded<TakeDecimal, false>},
    {"k_avg_int", Guarded<AddInteger, false>, GuardedFinal<FinishIntegerAverage>,
     Guarded<TakeInteger, false>},
    {"k_one", Guarded<TakeOne, false>, FinishOne, nullptr},
};

}  // namespace

std::span<const AggregateEntry> Aggregates() { return kEntries; }

}  // namespace kaunter::sql
