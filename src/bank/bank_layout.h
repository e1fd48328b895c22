// How a bank writes its text file: which of its lines are payments, and where date, amount and
// reference stand in them. Layouts are described in a text file, BankLayouts.txt, beside the
// program; an office adds its own in a file of the same name in the folder OwnReports.
// docs/bank-files.md tells every line that it may contain.
#pragma once

#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "platform/date_time.h"
#include "platform/money.h"
#include "screen/caption.h"

namespace kaunter {

// What a line of the file is cut by: fields in their order, or one position a character.
using BankText = std::u32string;

struct BankPlace {
  int start = 0;   // a position, or the number of a column, from 1
  int length = 0;  // 0 for a column
};

// What is taken out of a line; a layout has each of them once, but for conditions.
enum class BankPart { year, month, day, date, amount, reference, account };

struct BankField {
  BankPart part = BankPart::reference;
  BankPlace place;
  bool in_header = false;
  std::string pattern;  // of a date: "dd/mm/yyyy"
  bool sen = false;     // of an amount: whole sen, else ringgit with a point
};

// A line is a payment only when the text stands there, or only when it does not.
struct BankCondition {
  BankPlace place;
  std::string text;
  bool holds = true;
};

struct BankLayout {
  // How letters outside of English are written where the file itself does not begin with a mark.
  enum class Encoding {
    bytes,  // a position is a byte
    utf8,   // a position is a letter
    gbk,    // a position is a byte, and a Chinese letter is two
  };

  std::string name;
  char32_t delimiter = 0;  // 0: fields of fixed width
  Encoding encoding = Encoding::bytes;
  int skip = 0;             // lines at the top that are neither header nor payment
  bool has_header = false;  // the first line then is
  std::vector<BankField> fields;
  std::vector<BankCondition> conditions;

  const BankField* Find(BankPart part) const;
};

// A file of layouts that cannot be read: file, line, and what to do.
class BankLayoutFault : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// The layouts of a file's text; `file` is how a fault names it.
std::vector<BankLayout> ParseBankLayouts(std::string_view text, const std::string& file);

// Those of the program and of the office; one of the office takes the place of one of its name.
// Throws BankLayoutFault; a file that is not there has none.
std::vector<BankLayout> ReadBankLayouts(const std::string& app_path);

// A day written as the pattern says (d, m and y for digits, all else as it stands); nothing for
// another text, and for a day that the calendar lacks.
std::optional<DateTime> BankDate(std::string_view text, std::string_view pattern);

// Nothing where it is none: letters, a sign, more than two decimals, or too large.
std::optional<Money> BankAmount(std::string_view text, bool sen);

}  // namespace kaunter
