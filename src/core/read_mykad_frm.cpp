#include "core/read_mykad_frm.h"

#include <fmt/format.h>

#include <filesystem>
#include <thread>

#include "core/card_values.h"
#include "core/session.h"
#include "platform/child_program.h"
#include "screen/screen.h"

namespace kaunter {
namespace {

constexpr auto kLook = std::chrono::milliseconds(20);
// No card takes so long. At an unattended desk nobody would give up.
constexpr auto kLongest = std::chrono::minutes(3);

const Caption kTitle{"Read MyKad", "读取身份证"};

CardTrouble NotRun(const std::string& program, const Caption& why) {
  return {{"Card Reader", "读卡器"},
          {fmt::format("An error occur during reading myKad info\n{} {}", program, why.english),
           fmt::format("读取身份证资料时发生错误\n{} {}", program, why.chinese)}};
}

}  // namespace

ReadMyKadfrm::ReadMyKadfrm(const Session& session, const Screen& screen)
    : session_(session), screen_(screen) {}

bool ReadMyKadfrm::GoOn() {
  if (!bar_) bar_.emplace(screen_, kTitle);
  static const Caption kText{"Reading Mykad detail, please wait ....",
                             "正在读取身份证资料，请稍候 ...."};
  if (!bar_->GoOn(0, 0, session_.In(kText))) given_up_ = true;
  return !given_up_;
}

bool ReadMyKadfrm::Run(const std::string& program, const std::vector<std::string>& arguments) {
  if (!GoOn()) return false;
  ChildProgram reader(
      program, arguments,
      {.folder = std::filesystem::path(program).parent_path().string(), .whole_family = true});
  if (!reader.started()) {
    throw NotRun(program, {"could not be started.", "无法启动。"});
  }
  const auto begun = std::chrono::steady_clock::now();
  while (!reader.Ended()) {
    const bool too_long = std::chrono::steady_clock::now() - begun > kLongest;
    if (!GoOn() || too_long) {
      reader.End([this] { GoOn(); });
      if (given_up_) return false;
      throw NotRun(program, {"did not come to an end, and was ended.", "一直没有结束，已被中止。"});
    }
    std::this_thread::sleep_for(kLook);
  }
  return true;
}

void ReadMyKadfrm::WaitFor(const std::function<bool()>& there, std::chrono::milliseconds longest) {
  const auto begun = std::chrono::steady_clock::now();
  while (!there() && std::chrono::steady_clock::now() - begun < longest && GoOn()) {
    std::this_thread::sleep_for(kLook);
  }
}

void ReadMyKadfrm::TellRead() {
  bar_.reset();
  screen_.desk().Message(MessageKind::information, session_.In(kTitle),
                         session_.In({"MyKad readed", "身份证已读取"}));
}

}  // namespace kaunter
