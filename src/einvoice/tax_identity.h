// The boxes of a tax identity, of a customer, a company or a supplier, as each is left. A blank box
// passes: that something is required is the save's to tell. The others take the blanks off, tell
// what is wrong and mark the box; false then.
#pragma once

#include <string>
#include <string_view>

#include "screen/caption.h"

namespace kaunter {

class Connection;
class Label;
class Session;
class TextBox;

// A code table of the tax authority, as local rows hold it.
struct TaxCodeTable {
  std::string_view table;
  std::string_view code;
  std::string_view name;
  std::string_view picker;
  Caption invalid;
};
extern const TaxCodeTable kTaxState;
extern const TaxCodeTable kTaxCountry;
extern const TaxCodeTable kTaxMiscCode;

// The code of states that are none, for addresses abroad: it is not offered.
inline constexpr std::string_view kNoState = "17";

// Takes the dashes off too; digits behind "+6".
bool CheckPhone(Session& session, TextBox& box);
bool CheckEmail(Session& session, TextBox& box);
// Five digits in Malaysia; elsewhere as they have it.
bool CheckPostCode(Session& session, TextBox& box, std::string_view country);
// Of any box with a text. Puts the code as the table writes it, and its name into the label.
template <typename Box>
bool CheckTaxCode(Session& session, Box& box, Label& name, const TaxCodeTable& of);
// Checks the code as the box is left, and offers the table.
void OfferTaxCode(Session& session, TextBox& box, Label& name, const TaxCodeTable& of);

// "" where the table has no such code.
std::string TaxCodeName(Connection& main, const TaxCodeTable& of, std::string_view code);
// "01" of "Johor", however it is written; "" where it is no state's name.
std::string StateCodeOf(Connection& main, std::string_view state_name);

}  // namespace kaunter
