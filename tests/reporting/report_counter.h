// An office with two companies, a customer and two loans, and a desk that keeps what ReportFrm
// hands to the printer.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "reporting/report_frm.h"
#include "screen/report_job.h"
#include "tests/core/office.h"
#include "tests/screen/stopped_bar.h"

namespace kaunter {

class PrintingDesk : public SilentDesk {
 public:
  void Message(MessageKind kind, std::string_view title, std::string_view text) override {
    SilentDesk::Message(kind, title, text);
    kinds.push_back(kind);
  }
  bool Ask(std::string_view, std::string_view text) override {
    questions.push_back(std::string(text));
    return agrees && (declined.empty() || text.find(declined) == std::string_view::npos);
  }
  std::string Input(std::string_view, std::string_view, std::string_view preset) override {
    return input.value_or(std::string(preset));
  }
  std::unique_ptr<ProgressBar> Progress(std::string_view title) override {
    if (stops) return std::make_unique<StoppedBar>();
    return SilentDesk::Progress(title);
  }
  void Show(std::string_view name) override {
    shown.push_back(std::string(name));
    if (on_show) on_show();
  }
  void Print(const ReportJob& job) override {
    if (!jammed.empty() && job.ReportFileName.find(jammed) != std::string::npos) {
      throw std::runtime_error("The printer has no paper.");
    }
    printed.push_back(job);
  }

  bool agrees = true;
  bool stops = false;    // each long work, at its first look
  std::string jammed;    // a report whose file holds this text is not printed
  std::string declined;  // a question that holds this text gets a no
  std::optional<std::string> input;
  std::function<void()> on_show;
  std::vector<MessageKind> kinds;
  std::vector<std::string> questions;
  std::vector<std::string> shown;
  std::vector<ReportJob> printed;
};

struct ReportCounter {
  ReportCounter() {
    Session& session = office.session;
    session.CurrentLevel = 4;
    session.CurrentCompCode = "HQ";
    session.CurrentCompDesc = "Head Office";
    office.Run(
        "INSERT INTO CompMast (CompCode,CompDesc) VALUES ('KL','Branch');"
        "INSERT INTO CustMast (CustID,CompCode,CustName) VALUES ('C1','HQ','Tan Ah Kow');"
        "INSERT INTO LoanMast (LoanID,CustID,CompCode,LoanType,TrxDate,LoanAmt) VALUES "
        "('L1','C1','HQ','Unsecured','2024-01-05',1000);"
        "INSERT INTO LoanMast (LoanID,CustID,CompCode,LoanType,TrxDate,LoanAmt) VALUES "
        "('L2','C1','HQ','Secured','2024-01-06',2000)");
  }

  // Opens ReportFrm on a file as the menu does.
  ReportFrm& Open(const std::string& file) {
    office.session.ReportFile = file;
    office.session.MsgTitle = "Paper";
    screen = std::make_unique<ReportFrm>(office.session, desk);
    screen->Load();
    return *screen;
  }
  // The same with January in its dates and the home company chosen where there is one to choose.
  ReportFrm& OpenJanuary(const std::string& file) {
    ReportFrm& frm = Open(file);
    frm.DateFrom.SetText("01-01-2024");
    frm.DateTo.SetText("31-01-2024");
    Choose(0, 0);
    return frm;
  }
  // Moves the nth value of the nth list to the chosen ones.
  void Choose(int list, int row) {
    if (!screen->ListCombo.visible()) return;
    screen->ListCombo.PickIndex(list);
    screen->List1.Select(row);
    screen->InSingle.Click();
  }
  // Presses print; the job, or null when none was started.
  const ReportJob* Print() {
    desk.printed.clear();
    desk.messages.clear();
    desk.kinds.clear();
    screen->Guard([this] { screen->SaveCmd.Click(); });
    return desk.printed.empty() ? nullptr : &desk.printed.back();
  }
  std::string Refusal() const {
    return desk.printed.empty() && !desk.messages.empty() ? desk.messages.back() : std::string();
  }
  static std::string FileOf(const ReportJob* job) {
    return job == nullptr ? "none" : job->ReportFileName.substr(job->ReportFileName.rfind('/') + 1);
  }

  Office office{Office::State::patched};
  PrintingDesk desk;
  std::unique_ptr<ReportFrm> screen;
};

}  // namespace kaunter
