// A desk nobody sits at: it notes the messages and says no to everything.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "screen/desk.h"

namespace kaunter {

class SilentBar : public ProgressBar {
 public:
  void SetRange(int) override {}
  void SetText(std::string_view) override {}
  void Step(int) override {}
  void SetPosition(int) override {}
};

class SilentDesk : public Desk {
 public:
  void Message(MessageKind, std::string_view title, std::string_view text) override {
    if (listener) listener(text);
    messages.push_back(std::string(title) + ": " + std::string(text));
  }
  bool Ask(std::string_view, std::string_view) override { return false; }
  std::string Input(std::string_view, std::string_view, std::string_view) override { return {}; }
  std::string PickFile(std::string_view, std::string_view, std::string_view) override { return {}; }
  std::string PickFolder(std::string_view, std::string_view) override { return {}; }
  void Show(std::string_view) override {}
  void ShowModal(Screen&) override {}
  std::unique_ptr<ProgressBar> Progress(std::string_view) override {
    return std::make_unique<SilentBar>();
  }
  void Hourglass(bool) override {}
  void Beep() override {}
  void Print(const ReportJob&) override {}
  void Open(std::string_view) override {}
  bool Start(std::string_view, const std::vector<std::string>&) override { return false; }

  std::vector<std::string> messages;
  // Hears what every desk is told.
  inline static std::function<void(std::string_view)> listener;
};

}  // namespace kaunter
