// A large office in a folder of its own, for measuring: customers of three companies and their
// loans, the same ones at every run.
#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "core/session.h"
#include "screen/desk.h"

namespace kaunter {

// Shows nothing; a message ends the program, since nothing is expected to go wrong.
class QuietDesk : public Desk {
 public:
  void Message(MessageKind kind, std::string_view title, std::string_view text) override;
  bool Ask(std::string_view, std::string_view) override { return false; }
  std::string Input(std::string_view, std::string_view, std::string_view) override { return {}; }
  std::string PickFile(std::string_view, std::string_view, std::string_view) override { return {}; }
  std::string PickFolder(std::string_view, std::string_view) override { return {}; }
  void Show(std::string_view) override {}
  void ShowModal(Screen&) override {}
  std::unique_ptr<ProgressBar> Progress(std::string_view) override;
  void Hourglass(bool) override {}
  void Beep() override {}
  void Print(const ReportJob&) override {}
  void Open(std::string_view) override {}
  bool Start(std::string_view, const std::vector<std::string>&) override { return false; }
};

class LargeOffice {
 public:
  // Two loans a customer, roughly; a third of the loans is settled, one in ten is of another
  // company than its customer. Customers are C000001 and on, loans C000001-001 and on.
  LargeOffice(int customers, int loans);
  ~LargeOffice();
  LargeOffice(const LargeOffice&) = delete;
  LargeOffice& operator=(const LargeOffice&) = delete;

  std::string file() const { return (folder_ / "office.db").string(); }

  Session session;  // connected; a user of level 4
  QuietDesk desk;

 private:
  void AddCustomers(int count);
  void AddLoans(int customers, int count);

  std::filesystem::path folder_;
};

}  // namespace kaunter
