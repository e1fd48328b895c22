// Record: the boxes of a screen bound to the columns of one row. A field is declared once, its
// column included; load, clear, insert, update, "changed" and the width of each box follow from the
// declaration.
//
//   record_.Add(DOB, As::birth_date).AddPage(CustomerPage, {&SearchText}).AddPage(ContactPage);
//   record_.AddValue("UserID", [this] { return QuoteStr(session_.CurrentUserID); });
#pragma once

#include <functional>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "platform/sql/connection.h"
#include "screen/control.h"

namespace kaunter {

// How a box travels to its column and back.
enum class As {
  text,           // QuoteStr; NullToEmpty
  money,          // StripCommaOrZero; ShowMoney
  money_or_null,  // StripCommaOrNull; ShowMoney, Null as ""
  rate,           // StripCommaOrZero; Show4dp without trailing zeros past the second decimal
  integer,        // StripCommaOrZero; ShowInt
  date,           // SqlDate; ShowDate
  birth_date,     // SqlDate; every year but 1900 is shown
  date_time,      // SqlDateTime; ShowDateTime
  flag,           // a check box in a text column: '1' or '0'
  index,          // a list whose place (0, 1 ...) stands in a text column; '' for no choice
  number_flag,    // a check box in a number column: 1 or 0
};

class Record {
 public:
  Record(std::string table, std::string key) : table_(std::move(table)), key_(std::move(key)) {}

  // Binds a box to the column of its own name, or to another.
  Record& Add(TextBox& box, As as = As::text, std::string column = {});
  Record& Add(ComboBox& box, As as = As::text, std::string column = {});
  Record& Add(CheckBox& box, As as = As::flag, std::string column = {});
  // Binds every box on the page (frames in it too) to the column of its own name, as its kind of
  // box travels: money, rate, integer, date, flag or text. What was added before keeps its way;
  // `not_stored` names the boxes that belong to no column.
  Record& AddPage(const Frame& page, std::initializer_list<const Control*> not_stored = {});
  // A column without a box: `literal` gives its SQL literal when the row is written.
  Record& AddValue(std::string column, std::function<std::string()> literal);
  // The last column added is written when the row is made and left alone afterwards.
  Record& InsertOnly();
  // The last column added is shown and never written.
  Record& ReadOnly();

  // A box takes no more than its column holds: the widths come from the table itself. A box whose
  // column the table lacks is a fault (std::logic_error): what is typed there would be lost.
  void TakeWidths(Connection& connection);

  // Fills the boxes from the current row; no events. A column that the row lacks leaves its box
  // alone.
  void Load(const Recordset& row);
  void Clear();
  // Something was typed since the last Load, Clear or Remember.
  // Without the box of the key: a number that was typed, or refused, is nothing to be lost.
  bool Changed(const Control* key = nullptr) const;
  void Remember();

  // Throw std::invalid_argument with the caption of the box for letters in a number or a date that
  // is none; the box is marked and gets the focus.
  std::string InsertStatement() const;
  std::string UpdateStatement(std::string_view key_value) const;
  // For a table of one row: no WHERE.
  std::string UpdateOnlyRow() const;

  const std::string& table() const { return table_; }

 private:
  struct Field {
    Control* control = nullptr;
    As as = As::text;
    std::string column;
    std::function<std::string()> literal;
    bool insert_only = false;
    bool read_only = false;
    std::string remembered;
  };
  Record& Bind(Control& control, As as, std::string column);
  std::string Assignments() const;
  std::string Literal(const Field& field) const;

  std::string table_;
  std::string key_;
  std::vector<Field> fields_;
};

// "<key> not found": another desktop has deleted the row meanwhile.
class RowNotFound : public SqlError {
 public:
  explicit RowNotFound(std::string_view key);
  const std::string& key() const { return key_; }

 private:
  std::string key_;
};

// Runs an UPDATE or DELETE that must touch the row it names. Throws RowNotFound.
void ExecuteOnRow(Connection& connection, std::string_view sql, std::string_view key);

}  // namespace kaunter
