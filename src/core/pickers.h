// The table of the search pickers: what each of them lists, from where, under which key and order,
// and which of the dialog's filters it offers. picker_statement.h makes a statement of it,
// popup_frm.h shows it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/sql/inside_texts.h"
#include "screen/caption.h"

namespace kaunter {

// A column that nobody sees: it sorts the rows of the record in work before all others.
inline constexpr std::string_view kOwnFirst = "OwnFirst";

// Columns are written as the innermost select names them ("L.LoanID"); an empty one means that the
// picker lacks what it stands for.
struct Picker {
  std::string name;
  Caption title_word = {};  // empty: the title begins with "Popup"
  // The select list; its first column is what a choice gives back. Empty: a list that nothing
  // fills.
  std::string columns = {};
  std::string source = {};  // behind FROM
  std::string key = {};  // last column of every order, so that pages neither lose nor repeat rows
  std::string condition = {};  // holds always
  std::string group_by = {};
  std::string order = {};               // sorts before the key
  std::vector<std::string> sorts = {};  // what SortOrder offers; the first is the order at open
  std::vector<std::string> searched = {};
  // Where the office's searched texts are indexed the search finds the keys first. Each table of
  // `searched` and `numbers` is in IndexedTexts then.
  bool keys_first = false;
  // Identity cards and telephones, found with and without dashes. A picker that has them is one in
  // which people are looked for.
  std::vector<std::string> numbers = {};
  std::string company = {};       // the company filter of the session, and the box CompCode
  std::string also_company = {};  // a row counts too when this column is of a listed company
  std::string area = {};          // AreaCode
  std::string loan_group = {};    // LoanGroupID
  std::string loan_type = {};     // LoanTypeID
  std::string collect_info = {};  // CollectInfoID
  std::string loan_balance = {};  // HideLoanChk leaves out rows where it is 0 or less
  // The condition that PickerExtra stands for; none when the picker does not use it.
  std::string (*extra)(std::string_view picker_extra) = nullptr;
  // Columns behind the others that PickerExtra asks for, the last of them kOwnFirst; "" for none.
  std::string (*extra_columns)(std::string_view picker_extra) = nullptr;
  bool paged = true;
  bool linked = false;  // on the linked database instead of the main one
};

const std::vector<Picker>& AllPickers();
// By name without regard to case. Throws std::invalid_argument for a name that is no picker's.
const Picker& FindPicker(std::string_view name);

// What the pickers of customers, of loans and of payments search in.
const std::vector<SearchedTexts>& IndexedTexts();

}  // namespace kaunter
