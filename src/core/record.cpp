#include "core/record.h"

#include <fmt/format.h>

#include <algorithm>
#include <stdexcept>
#include <unordered_map>

#include "core/values.h"
#include "screen/screen.h"

namespace kaunter {
namespace {

// The number of an update that found no row; the server has none for it.
constexpr int kRowNotFound = 50000;

void SetText(Control& control, std::string text) {
  switch (control.type()) {
    case ControlType::text_box:
      static_cast<TextBox&>(control).SetText(std::move(text));
      break;
    case ControlType::combo_box:
      static_cast<ComboBox&>(control).SetText(std::move(text));
      break;
    case ControlType::check_box:
      static_cast<CheckBox&>(control).SetChecked(IsNumeric(text) && CDbl(text) != 0);
      break;
    default:
      break;
  }
}

std::string Shown(const Value& value, As as) {
  switch (as) {
    case As::money:
      return ShowMoney(value);
    case As::money_or_null:
      return value.IsNull() ? std::string() : ShowMoney(value);
    case As::rate: {
      std::string text = Show4dp(value);
      for (int cut = 0; cut < 2 && !text.empty() && text.back() == '0'; ++cut) text.pop_back();
      return text;
    }
    case As::integer:
      return ShowInt(value);
    case As::date:
      return ShowDate(value);
    case As::birth_date:
      return ShowBirthDate(value);
    case As::date_time:
      return ShowDateTime(value);
    case As::text:
    case As::flag:
    case As::index:
    case As::number_flag:
      return NullToEmpty(value);
  }
  return {};
}

void Show(Control& control, const Value& value, As as) {
  const std::string text = Shown(value, as);
  if (as != As::index) {
    SetText(control, text);
    return;
  }
  auto& list = static_cast<ComboBox&>(control);
  const int index = IsNumeric(text) ? CInt(text) : -1;
  list.SetIndex(index < static_cast<int>(list.items().size()) ? index : -1);
}

std::string Converted(const Control& control, As as) {
  const std::string text = control.Text();
  switch (as) {
    case As::index: {
      const int index = static_cast<const ComboBox&>(control).index();
      return QuoteStr(index < 0 ? std::string() : std::to_string(index));
    }
    case As::money:
    case As::rate:
    case As::integer:
    case As::number_flag:
      return StripCommaOrZero(text);
    case As::money_or_null:
      return StripCommaOrNull(text);
    case As::date:
    case As::birth_date:
      return SqlDate(text);
    case As::date_time:
      return SqlDateTime(text);
    case As::text:
    case As::flag:
      return QuoteStr(text);
  }
  return {};
}

// How a box travels when nothing else is said.
As Natural(const Control& control) {
  if (control.type() == ControlType::check_box) return As::flag;
  if (control.type() != ControlType::text_box) return As::text;
  switch (static_cast<const TextBox&>(control).kind()) {
    case Kind::money:
      return As::money;
    case Kind::rate:
      return As::rate;
    case Kind::integer:
      return As::integer;
    case Kind::date:
      return As::date;
    case Kind::text:
    case Kind::memo:
    case Kind::password:
    case Kind::time:
      return As::text;
  }
  return As::text;
}

bool StandsOn(const Control& control, const Control& container) {
  for (const Control* at = control.parent(); at != nullptr; at = at->parent()) {
    if (at == &container) return true;
  }
  return false;
}

}  // namespace

Record& Record::Bind(Control& control, As as, std::string column) {
  Field field;
  field.control = &control;
  field.as = as;
  field.column = column.empty() ? control.name() : std::move(column);
  field.remembered = control.Text();
  fields_.push_back(std::move(field));
  return *this;
}

Record& Record::Add(TextBox& box, As as, std::string column) {
  return Bind(box, as, std::move(column));
}
Record& Record::Add(ComboBox& box, As as, std::string column) {
  return Bind(box, as, std::move(column));
}
Record& Record::Add(CheckBox& box, As as, std::string column) {
  return Bind(box, as, std::move(column));
}

Record& Record::AddPage(const Frame& page, std::initializer_list<const Control*> not_stored) {
  for (Control* control : page.screen().controls()) {
    const bool is_box = control->type() == ControlType::text_box ||
                        control->type() == ControlType::combo_box ||
                        control->type() == ControlType::check_box;
    const bool bound = std::any_of(fields_.begin(), fields_.end(), [control](const Field& field) {
      return field.control == control;
    });
    const bool skipped =
        std::find(not_stored.begin(), not_stored.end(), control) != not_stored.end();
    if (is_box && !bound && !skipped && StandsOn(*control, page))
      Bind(*control, Natural(*control), {});
  }
  return *this;
}

Record& Record::AddValue(std::string column, std::function<std::string()> literal) {
  Field field;
  field.column = std::move(column);
  field.literal = std::move(literal);
  fields_.push_back(std::move(field));
  return *this;
}

Record& Record::InsertOnly() {
  fields_.back().insert_only = true;
  return *this;
}

Record& Record::ReadOnly() {
  fields_.back().read_only = true;
  return *this;
}

void Record::TakeWidths(Connection& connection) {
  const Recordset shape = connection.Query(fmt::format("SELECT * FROM {} WHERE 1=0", table_));
  const std::vector<Column>& columns = shape.columns();
  for (Field& field : fields_) {
    if (field.control == nullptr) continue;
    const auto column = std::find_if(columns.begin(), columns.end(), [&field](const Column& one) {
      return SameText(one.name, field.column);
    });
    if (column == columns.end()) {
      throw std::logic_error(fmt::format("{} has no column {}", table_, field.column));
    }
    if (field.as != As::text) continue;
    if (field.control->type() == ControlType::text_box) {
      static_cast<TextBox*>(field.control)->max_length = column->width;
    } else if (field.control->type() == ControlType::combo_box) {
      static_cast<ComboBox*>(field.control)->max_length = column->width;
    }
  }
}

void Record::Load(const Recordset& row) {
  std::unordered_map<std::string, std::size_t> places;
  for (std::size_t i = 0; i < row.columns().size(); ++i) {
    places.emplace(Lower(row.columns()[i].name), i);
  }
  for (Field& field : fields_) {
    if (field.control == nullptr) continue;
    const auto place = places.find(Lower(field.column));
    if (place != places.end()) Show(*field.control, row.Field(place->second), field.as);
  }
  Remember();
}

void Record::Clear() {
  for (Field& field : fields_) {
    if (field.control == nullptr) continue;
    SetText(*field.control, {});
    field.control->SetMark(false);
  }
  Remember();
}

void Record::Remember() {
  for (Field& field : fields_) {
    if (field.control != nullptr) field.remembered = field.control->Text();
  }
}

bool Record::Changed(const Control* key) const {
  for (const Field& field : fields_) {
    if (field.control == nullptr || field.control == key) continue;
    if (field.control->Text() != field.remembered) return true;
  }
  return false;
}

std::string Record::Literal(const Field& field) const {
  if (field.control == nullptr) return field.literal();
  try {
    return Converted(*field.control, field.as);
  } catch (const std::invalid_argument& error) {
    Control& control = *field.control;
    control.SetMark(true);
    control.screen().FocusOn(control);
    std::string caption = control.caption().In(control.screen().chinese());
    std::erase(caption, '&');
    throw std::invalid_argument(fmt::format("{}: {}", caption, error.what()));
  }
}

std::string Record::InsertStatement() const {
  std::string columns;
  std::string values;
  for (const Field& field : fields_) {
    if (field.read_only) continue;
    columns += (columns.empty() ? "" : ",") + field.column;
    values += (values.empty() ? "" : ",") + Literal(field);
  }
  return fmt::format("INSERT INTO {} ({}) VALUES ({})", table_, columns, values);
}

std::string Record::Assignments() const {
  std::string assignments;
  for (const Field& field : fields_) {
    if (field.read_only || field.insert_only || SameText(field.column, key_)) continue;
    assignments +=
        fmt::format("{}{}={}", assignments.empty() ? "" : ",", field.column, Literal(field));
  }
  return assignments;
}

std::string Record::UpdateStatement(std::string_view key_value) const {
  return fmt::format("UPDATE {} SET {} WHERE {}={}", table_, Assignments(), key_,
                     QuoteStr(key_value));
}

std::string Record::UpdateOnlyRow() const {
  return fmt::format("UPDATE {} SET {}", table_, Assignments());
}

RowNotFound::RowNotFound(std::string_view key)
    : SqlError(kRowNotFound, fmt::format("{} not found", key)), key_(key) {}

void ExecuteOnRow(Connection& connection, std::string_view sql, std::string_view key) {
  if (connection.Execute(sql) == 0) throw RowNotFound(key);
}

}  // namespace kaunter
