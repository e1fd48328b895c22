#include "core/telling.h"

#include <algorithm>
#include <iterator>
#include <stdexcept>

#include "core/session.h"
#include "platform/sql/connection.h"
#include "screen/screen.h"

namespace kaunter {
namespace {

constexpr int kLineCut = 10054;
// Of the disk, the file or the line: no room, moved away, its disk failed, damaged, read-only.
constexpr int kOfTheOffice[] = {1105, 945, 823, 824, 3906, kLineCut};

const Caption kLookFirst{"Look what is there before you do it again.",
                         "请先查看已储存的内容，再决定是否重做。"};

bool IsOfTheOffice(int number) {
  return std::find(std::begin(kOfTheOffice), std::end(kOfTheOffice), number) !=
         std::end(kOfTheOffice);
}

}  // namespace

const std::string& Heading(const Session& session, const Screen& screen) {
  return session.MsgTitle.empty() ? screen.title().In(screen.chinese()) : session.MsgTitle;
}

void Tell(Session& session, const Screen& screen, MessageKind kind, const Caption& text) {
  session.MsgText = session.In(text);
  screen.desk().Message(kind, Heading(session, screen), session.MsgText);
}

const Caption kNothingKept{"Nothing of it was kept. Mend the cause and do it again.",
                           "此次的更改全未保留。请排除原因后再做一次。"};
const Caption kEarlierKept{
    "What was saved before stays saved. Mend the cause, and look what is there before you do it "
    "again.",
    "在此之前储存的内容已保留。请先排除原因，并查看已储存的内容，再决定是否重做。"};
const Caption kNotStored{"This change is not stored. Mend the cause and do it again.",
                         "此更改没有储存。请排除原因后再做一次。"};
const Caption kNotRead{"Mend the cause and read it again.", "请排除原因后再读取。"};

Caption FailedOrRefused(const Caption& words, const std::exception& failure) {
  Caption told = Failed(words, failure);
  const bool ours = dynamic_cast<const std::runtime_error*>(&failure) != nullptr &&
                    dynamic_cast<const SqlError*>(&failure) == nullptr && *failure.what() != '\0';
  for (std::string* text : {&told.english, &told.chinese}) {
    if (ours && text->find(failure.what()) == std::string::npos) {
      *text += '\n';
      *text += failure.what();
    }
  }
  return told;
}

Caption Failed(const Caption& words, const std::exception& failure, const Caption& kept) {
  const auto* error = dynamic_cast<const SqlError*>(&failure);
  const bool of_office = error != nullptr && IsOfTheOffice(error->number());
  if (!of_office && &kept != &kEarlierKept) return words;
  // Where the connection was cut, its own words tell what became of what was sent last.
  const bool cut = of_office && error->number() == kLineCut && &kept == &kNothingKept;
  const auto told = [&](bool chinese) {
    std::string text = words.In(chinese);
    const auto line = [&text](std::string_view more) {
      if (!text.empty() && !text.ends_with('\n')) text += '\n';
      text += more;
    };
    if (text.find(failure.what()) == std::string::npos) line(failure.what());
    line((cut ? kLookFirst : kept).In(chinese));
    return text;
  };
  return {told(false), told(true)};
}

bool Refuse(Session& session, Control& control, const Caption& text) {
  Tell(session, control.screen(), MessageKind::critical, text);
  control.SetMark(true);
  control.screen().FocusOn(control);
  return false;
}

}  // namespace kaunter
