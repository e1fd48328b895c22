#include "core/card_boxes.h"

#include <fmt/format.h>

#include <algorithm>

#include "core/card_reader.h"
#include "core/identity.h"
#include "core/log.h"
#include "core/session.h"
#include "core/telling.h"
#include "core/values.h"
#include "screen/screen.h"

namespace kaunter {
namespace {

bool Put(Control& control, const std::string& text) {
  int most = 0;
  if (control.type() == ControlType::combo_box) {
    auto& list = static_cast<ComboBox&>(control);
    if (!list.editable() && !text.empty()) {
      const auto& items = list.items();
      if (std::ranges::none_of(items, [&](const auto& item) { return SameText(item, text); }))
        return true;
    }
    list.SetText(text);
    most = list.max_length;
  } else {
    auto& box = static_cast<TextBox&>(control);
    box.SetText(text);
    most = box.max_length;
  }
  const auto letters = std::ranges::count_if(
      text, [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; });
  control.SetMark(most > 0 && letters > most);
  return !control.marked();
}

// A card without an old number says nothing about the one in the box; an address is a whole.
bool IsAddress(CardField field) {
  return field == CardField::add1 || field == CardField::add2 || field == CardField::add3 ||
         field == CardField::postcode || field == CardField::city || field == CardField::state;
}

bool HasAddress(const CardValues& card) {
  return !card[CardField::add1].empty() || !card[CardField::city].empty();
}

// False where the table would not take it.
bool KeepRace(Session& session, const std::string& race) {
  const std::string stored =
      fmt::format("SELECT CustRaceID FROM CustRaceMast WHERE CustRaceID={}", QuoteStr(race));
  try {
    if (!ScalarQuery(session.Main(), stored).empty()) return true;
    session.Main().Execute(fmt::format(
        "INSERT INTO CustRaceMast (CustRaceID,CustRaceDesc) VALUES ({0},{0})", QuoteStr(race)));
    return true;
  } catch (const SqlError& failure) {
    WriteLog(session, LogLine(session, fmt::format("Card Reader - {}", failure.what())));
  }
  // Another desktop may have read the same race a moment ago.
  return !ScalarQuery(session.Main(), stored).empty();
}

// One that the list lacks comes into the table and the list.
void TakeRace(Session& session, ComboBox& list, const std::string& race) {
  list.Clear();
  if (race.empty()) return;
  std::vector<std::string> items = list.items();
  const auto known =
      std::ranges::find_if(items, [&](const std::string& item) { return SameText(item, race); });
  if (known != items.end()) {
    list.SetText(*known);
  } else if (KeepRace(session, race)) {
    items.push_back(race);
    list.SetItems(std::move(items));
    list.SetText(race);
  } else {
    Tell(session, list.screen(), MessageKind::warning,
         {fmt::format("The race {} could not be added. Please choose one.", race),
          fmt::format("无法加入种族 {}，请选择。", race)});
  }
}

// Another person stands in the boxes.
bool IsAnother(const CardGroup& group, const CardValues& card) {
  const std::string ic = MaskNewIc(Trim(group.new_ic.text()));
  if (!ic.empty()) return ic != card[CardField::new_ic];
  const std::string name = Trim(group.name.text());
  return !name.empty() && !SameText(name, card[CardField::name]);
}

bool MayReplace(Session& session, const CardGroup& group, const CardValues& card) {
  const Screen& screen = group.name.screen();
  const Caption question{
      fmt::format("The card is that of {} ({}). In the boxes stands {} ({}). Put the card in the "
                  "place of it ? Everything else on the screen stays.",
                  card[CardField::name], card[CardField::new_ic], group.name.text(),
                  group.new_ic.text()),
      fmt::format(
          "身份证属于 {}（{}）。画面上的是 {}（{}）。要以身份证资料取代吗？画面上的其他资料不变。",
          card[CardField::name], card[CardField::new_ic], group.name.text(), group.new_ic.text())};
  return screen.desk().AskBeforeLoss(session.In({"Read MyKad", "读取身份证"}),
                                     session.In(question));
}

}  // namespace

std::optional<FilledCard> ReadCardInto(Session& session, const CardGroup& group) {
  const Screen& screen = group.name.screen();
  CardValues card;
  if (!ReadMyKad(session, screen, group.new_ic.text(), card, group.photo_file)) return std::nullopt;
  const bool another = IsAnother(group, card);
  if (another && !MayReplace(session, group, card)) return std::nullopt;
  std::vector<CardBox> boxes = group.others;
  boxes.insert(boxes.begin(), {{CardField::name, &group.name}, {CardField::new_ic, &group.new_ic}});
  std::string too_long;
  for (const auto& [field, box] : boxes) {
    const bool says_it = !card[field].empty() || (IsAddress(field) && HasAddress(card));
    if ((says_it || another) && !Put(*box, card[field])) {
      too_long += "\n" + session.In(box->caption());
    }
  }
  if (!too_long.empty()) {
    Tell(session, screen, MessageKind::warning,
         {"Longer on the card than its box takes, please shorten:" + too_long,
          "身份证上的内容比栏位长，请缩短：" + too_long});
  }
  if (group.race != nullptr && (another || !card[CardField::race].empty())) {
    TakeRace(session, *group.race, card[CardField::race]);
  }
  if (another && group.birth != nullptr) group.birth->Clear();
  if (group.new_ic.onLeave) group.new_ic.onLeave();
  return FilledCard{card, another};
}

}  // namespace kaunter
