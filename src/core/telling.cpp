#include "core/telling.h"

#include <algorithm>
#include <iterator>
#include <stdexcept>

#include "core/session.h"
#include "platform/sql/connection.h"
#include "screen/caption_error.h"
#include "screen/screen.h"

namespace kaunter {
namespace {

constexpr int kLineCut = 10054;
// Of the disk, the file or the line: no room, moved away, its disk failed, damaged, read-only.
constexpr int kOfTheOffice[] = {1105, 945, 823, 824, 3906, kLineCut};

const Caption kLookFirst{"Look what is there before you do it again.",
                         "请先查看已储存的内容，再决定是否重做。"};

// The next save of this PC asks the server first (Connection::OutliveServer).
const Caption kNotKnown{
    "Whether it is stored cannot be known before the server answers again. Do not enter it on "
    "another PC. Leave the screen as it is and save again later: that asks the server first, and "
    "nothing is stored twice.",
    "在服务器恢复之前，无法知道是否已储存。请勿在另一台电脑上输入。请保留此画面，稍后再储存：程序会"
    "先向服务器查询，不会重复储存。"};
const Caption kEarlierStored{
    "If that is what you are saving now, it stands: do not save it again, open it to see it. If "
    "this is something else, save once more.",
    "如果那就是您现在要储存的内容，它已经储存：请勿再储存，打开即可查看。如果这是另一项内容，请再"
    "储存一次。"};

// What is known of a save on a server that was lost; `otherwise` where that is all there is to
// know.
const Caption& Known(const SqlError& failure, const Caption& otherwise) {
  const auto* lost = dynamic_cast<const ServerLost*>(&failure);
  if (lost == nullptr) return &otherwise == &kNothingKept ? kLookFirst : otherwise;
  switch (lost->stored()) {
    case ServerLost::Stored::unknown:
      return kNotKnown;
    case ServerLost::Stored::earlier:
      return kEarlierStored;
    case ServerLost::Stored::nothing:
      break;
  }
  return otherwise;
}

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
  const auto* both = dynamic_cast<const CaptionFailure*>(&failure);
  const Caption why = both != nullptr ? both->text : Caption(failure.what());
  for (const bool chinese : {false, true}) {
    std::string& text = chinese ? told.chinese : told.english;
    if (ours && text.find(why.In(chinese)) == std::string::npos) text += '\n' + why.In(chinese);
  }
  return told;
}

Caption Failed(const Caption& words, const std::exception& failure, const Caption& kept) {
  const auto* error = dynamic_cast<const SqlError*>(&failure);
  const bool of_office = error != nullptr && IsOfTheOffice(error->number());
  if (!of_office && &kept != &kEarlierKept) return words;
  const Caption& known = of_office && error->number() == kLineCut ? Known(*error, kept) : kept;
  const auto told = [&](bool chinese) {
    std::string text = words.In(chinese);
    const auto line = [&text](std::string_view more) {
      if (!text.empty() && !text.ends_with('\n')) text += '\n';
      text += more;
    };
    if (text.find(failure.what()) == std::string::npos) line(failure.what());
    line(known.In(chinese));
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
