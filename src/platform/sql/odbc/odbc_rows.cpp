#include "platform/sql/odbc/odbc_rows.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <optional>

#include "platform/sql/odbc/odbc_text.h"
#include "platform/sql/waiting.h"

namespace kaunter::sql {
namespace {

// SQL Server's own types that the ODBC standard has no code for.
constexpr SQLSMALLINT kServerXml = -152;
constexpr SQLSMALLINT kServerTime = -154;
constexpr SQLSMALLINT kServerOffset = -155;

// Wider than that a driver means "without bound".
constexpr SQLULEN kLongestBoundText = 8000;
constexpr int kMoneyScale = 4;

enum class Passage { kText, kDecimal, kDouble, kInteger, kTimestamp, kDateText };

struct Plan {
  Column column;
  Passage passage = Passage::kText;
};

Plan DecimalPlan(int scale) {
  Plan plan;
  plan.column.type = scale <= kMoneyScale ? FieldType::kMoney : FieldType::kDouble;
  plan.column.scale = scale;
  plan.passage = Passage::kDecimal;
  return plan;
}

Plan PlanOf(FieldType type, Passage passage) {
  Plan plan;
  plan.column.type = type;
  plan.passage = passage;
  return plan;
}

// By what the driver tells.
Plan DriverPlan(SQLSMALLINT type, SQLULEN size, SQLSMALLINT scale) {
  switch (type) {
    case SQL_DECIMAL:
    case SQL_NUMERIC:
      return DecimalPlan(scale);
    case SQL_BIT:
    case SQL_TINYINT:
    case SQL_SMALLINT:
    case SQL_INTEGER:
    case SQL_BIGINT:
      return PlanOf(FieldType::kInteger, Passage::kInteger);
    case SQL_REAL:
    case SQL_FLOAT:
    case SQL_DOUBLE:
      return PlanOf(FieldType::kDouble, Passage::kDouble);
    case SQL_DATETIME:
    case SQL_TIMESTAMP:
    case SQL_TYPE_DATE:
    case SQL_TYPE_TIMESTAMP:
      return PlanOf(FieldType::kDate, Passage::kTimestamp);
    case SQL_CHAR:
    case SQL_VARCHAR:
    case SQL_WCHAR:
    case SQL_WVARCHAR: {
      Plan plan = PlanOf(FieldType::kText, Passage::kText);
      if (size <= kLongestBoundText) plan.column.width = static_cast<int>(size);
      return plan;
    }
    case kServerXml:
    case kServerTime:
    case kServerOffset:
    default:
      return PlanOf(FieldType::kText, Passage::kText);
  }
}

// By what the translator has decided; nothing when it has not.
std::optional<Plan> TranslatorPlan(const Type& type) {
  switch (type.kind) {
    case TypeKind::kText: {
      Plan plan = PlanOf(FieldType::kText, Passage::kText);
      plan.column.width = type.width;
      return plan;
    }
    case TypeKind::kInteger:
      return PlanOf(FieldType::kInteger, Passage::kInteger);
    case TypeKind::kDecimal:
      return DecimalPlan(type.scale);
    case TypeKind::kDouble:
      return PlanOf(FieldType::kDouble, Passage::kDouble);
    case TypeKind::kDate:
    case TypeKind::kDateTime:
      return PlanOf(FieldType::kDate, Passage::kDateText);
    case TypeKind::kUnknown:
    case TypeKind::kNull:
    case TypeKind::kBinary:
      return std::nullopt;
  }
  return std::nullopt;
}

class Reader {
 public:
  Reader(const OdbcHandle& statement, bool wide, const OdbcCheck& check)
      : statement_(statement), wide_(wide), check_(check) {}

  std::vector<Plan> Plans(const std::vector<ResultColumn>& known) const {
    SQLSMALLINT count = 0;
    check_(SQLNumResultCols(statement_.get(), &count));
    std::vector<Plan> plans;
    for (SQLSMALLINT i = 1; i <= count; ++i) {
      const bool decided = known.size() == static_cast<std::size_t>(count);
      const ResultColumn* column = decided ? &known[static_cast<std::size_t>(i - 1)] : nullptr;
      std::optional<Plan> plan = decided ? TranslatorPlan(column->type) : std::nullopt;
      if (!plan) plan = Describe(static_cast<SQLUSMALLINT>(i));
      if (decided) plan->column.name = column->name;
      plans.push_back(std::move(*plan));
    }
    return plans;
  }

  // Columns are asked for in their order: most drivers take no other.
  std::vector<Value> Row(const std::vector<Plan>& plans) {
    std::vector<Value> row;
    row.reserve(plans.size());
    for (std::size_t i = 0; i < plans.size(); ++i) {
      row.push_back(Read(static_cast<SQLUSMALLINT>(i + 1), plans[i]));
    }
    return row;
  }

 private:
  Plan Describe(SQLUSMALLINT position) const {
    SQLSMALLINT length = 0;
    SQLSMALLINT type = 0;
    SQLULEN size = 0;
    SQLSMALLINT scale = 0;
    SQLSMALLINT nullable = 0;
    std::string name;
    if (wide_) {
      char16_t buffer[512] = {};
      check_(SQLDescribeColW(statement_.get(), position, AsWide(buffer), 512, &length, &type, &size,
                             &scale, &nullable));
      name = ToUtf8(buffer);
    } else {
      char buffer[1024] = {};
      check_(SQLDescribeCol(statement_.get(), position, AsNarrow(buffer), sizeof buffer, &length,
                            &type, &size, &scale, &nullable));
      name = buffer;
    }
    Plan plan = DriverPlan(type, size, scale);
    plan.column.name = std::move(name);
    return plan;
  }

  Value Read(SQLUSMALLINT position, const Plan& plan) {
    switch (plan.passage) {
      case Passage::kInteger:
        return ReadInteger(position);
      case Passage::kDouble:
        return ReadDouble(position);
      case Passage::kTimestamp:
        return ReadTimestamp(position);
      case Passage::kDecimal:
        return ReadDecimal(position, plan.column);
      case Passage::kDateText:
        return ReadDateText(position);
      case Passage::kText:
        break;
    }
    std::optional<std::string> text = wide_ ? ReadWide(position) : ReadNarrow(position);
    return text ? Value(std::move(*text)) : Value();
  }

  Value ReadInteger(SQLUSMALLINT position) {
    SQLBIGINT number = 0;
    SQLLEN length = 0;
    check_(SQLGetData(statement_.get(), position, SQL_C_SBIGINT, &number, sizeof number, &length));
    return length == SQL_NULL_DATA ? Value() : Value(static_cast<std::int64_t>(number));
  }

  Value ReadDouble(SQLUSMALLINT position) {
    double number = 0;
    SQLLEN length = 0;
    check_(SQLGetData(statement_.get(), position, SQL_C_DOUBLE, &number, sizeof number, &length));
    return length == SQL_NULL_DATA ? Value() : Value(number);
  }

  Value ReadTimestamp(SQLUSMALLINT position) {
    SQL_TIMESTAMP_STRUCT stamp = {};
    SQLLEN length = 0;
    check_(SQLGetData(statement_.get(), position, SQL_C_TYPE_TIMESTAMP, &stamp, sizeof stamp,
                      &length));
    if (length == SQL_NULL_DATA) return Value();
    return Value(
        DateTime{stamp.year, stamp.month, stamp.day, stamp.hour, stamp.minute, stamp.second});
  }

  Value ReadDecimal(SQLUSMALLINT position, const Column& column) {
    const std::optional<std::string> text = ReadNarrow(position);
    if (!text) return Value();
    if (column.type == FieldType::kDouble) return Value(std::strtod(text->c_str(), nullptr));
    try {
      if (const std::optional<Money> money = Money::TryText(*text)) return Value(*money);
    } catch (const std::overflow_error&) {
    }
    throw SqlError(8115, fmt::format("Arithmetic overflow: the field {} holds {}, which is beyond "
                                     "what an amount can be.",
                                     column.name, *text));
  }

  // The canonical text of the embedded database; a fraction of a second is cut. What is no date
  // stays text: it is shown rather than lost.
  Value ReadDateText(SQLUSMALLINT position) {
    constexpr std::size_t kToTheSecond = 19;
    std::optional<std::string> text = ReadNarrow(position);
    if (!text) return Value();
    const std::optional<DateTime> date =
        DateTime::FromCanonical(std::string_view(*text).substr(0, kToTheSecond));
    return date ? Value(*date) : Value(std::move(*text));
  }

  std::optional<std::string> ReadNarrow(SQLUSMALLINT position) {
    std::string text;
    char chunk[kChunk];
    return Gather(position, SQL_C_CHAR, chunk, &text) ? std::optional(text) : std::nullopt;
  }

  std::optional<std::string> ReadWide(SQLUSMALLINT position) {
    std::u16string text;
    char16_t chunk[kChunk];
    if (!Gather(position, SQL_C_WCHAR, chunk, &text)) return std::nullopt;
    return ToUtf8(text);
  }

  // Gathers a text piece by piece; false for null. Each piece ends with a terminator that is not
  // part of the text.
  template <typename Char>
  bool Gather(SQLUSMALLINT position, SQLSMALLINT type, Char (&chunk)[4096],
              std::basic_string<Char>* text) {
    constexpr SQLLEN kUnit = sizeof(Char);
    constexpr SQLLEN kRoom = static_cast<SQLLEN>(kChunk - 1) * kUnit;
    for (;;) {
      SQLLEN length = 0;
      const SQLRETURN result =
          SQLGetData(statement_.get(), position, type, chunk, sizeof chunk, &length);
      if (result == SQL_NO_DATA) return true;
      check_(result);
      if (length == SQL_NULL_DATA) return false;
      const bool more = length == SQL_NO_TOTAL || length > kRoom;
      text->append(chunk, static_cast<std::size_t>((more ? kRoom : length) / kUnit));
      if (!more) return true;
    }
  }

  static constexpr std::size_t kChunk = 4096;

  const OdbcHandle& statement_;
  bool wide_;
  const OdbcCheck& check_;
};

constexpr std::size_t kRowsBetweenActs = 256;

}  // namespace

Recordset ReadRows(const OdbcHandle& statement, bool wide, const std::vector<ResultColumn>& known,
                   const OdbcCheck& check) {
  Reader reader(statement, wide, check);
  const std::vector<Plan> plans = reader.Plans(known);
  std::vector<std::vector<Value>> rows;
  for (;;) {
    const SQLRETURN result = SQLFetch(statement.get());
    if (result == SQL_NO_DATA) break;
    check(result);
    rows.push_back(reader.Row(plans));
    if (rows.size() % kRowsBetweenActs != 0) continue;
    ActWhileWaiting();
    if (StopAsked()) throw SqlError(0, "The query was stopped.");
  }
  std::vector<Column> columns;
  for (const Plan& plan : plans) columns.push_back(plan.column);
  return Recordset(std::move(columns), std::move(rows));
}

void SkipRows(const OdbcHandle& statement, const OdbcCheck& check) {
  for (;;) {
    const SQLRETURN result = SQLFetch(statement.get());
    if (result == SQL_NO_DATA) return;
    check(result);
  }
}

}  // namespace kaunter::sql
