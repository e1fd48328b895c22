// What screens ask of a box that a person typed into.
#pragma once

#include <string>
#include <string_view>

#include "screen/caption.h"
#include "screen/control.h"

namespace kaunter {

class Session;

inline constexpr int kDateLength = 10;  // dd-mm-yyyy
inline constexpr int kKeyLength = 50;   // of a customer or a loan
inline constexpr int kMoneyLength = 20;
inline const Caption kInvalidAmount{"Invalid Amount", "金额不正确"};
inline const Caption kInvalidDate{"Invalid Date", "日期不正确"};

// Takes the blanks off and passes what is empty or a date. Anything else is refused with `invalid`:
// told, marked, and the focus comes back; false.
bool CheckDateBox(Session& session, TextBox& box, const Caption& invalid = kInvalidDate);
// The same of a box that must hold one: what is empty is refused with `required`.
bool RequireDate(Session& session, TextBox& box, const Caption& required,
                 const Caption& invalid = kInvalidDate);
// Of boxes that hold dates or nothing: a first day that is after the last one is refused, for it
// would find nothing and look like an answer.
bool CheckDateOrder(Session& session, TextBox& from, const TextBox& to);

// Where the office wants capitals (CapLock), what is typed into the screen's boxes of text goes to
// upper case as each is left, before the box's own onLeave. Remarks, e-mail addresses and what
// comes from a search or a mask stay as they are. Called once, when the boxes have their onLeave.
void CapTexts(const Session& session, const Screen& screen);

// A list that may be left empty again: nothing stands before its items.
void OfferNothing(ComboBox& box);

// Of a TextBox or a ComboBox.
template <typename Box>
void FillBlank(Box& box, std::string_view text) {
  if (box.empty()) box.SetText(std::string(text));
}

}  // namespace kaunter
