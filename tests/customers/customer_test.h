// An office whose clerk may do everything, and the customer screen on it.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "customers/new_cust_frm.h"
#include "tests/core/office.h"

namespace kaunter {

// Says yes to everything.
class AgreeingDesk : public SilentDesk {
 public:
  bool Ask(std::string_view, std::string_view) override { return true; }
};

class CustomerTest : public ::testing::Test {
 protected:
  CustomerTest() : office(Office::State::patched) {
    office.session.CurrentLevel = 4;
    office.session.CurrentCompCode = "HQ";
    office.session.AllowEdit = office.session.AllowCreditLimit = true;
    office.session.settings.TransLogs = false;
  }

  // The office as it stands becomes the one that Restore brings back.
  void Keep() {
    Close();
    std::filesystem::copy_file(File(), File() + ".kept");
    Reopen();
  }
  void Restore() {
    Close();
    for (const char* tail : {"", "-wal", "-shm"}) std::filesystem::remove(File() + tail);
    std::filesystem::copy_file(File() + ".kept", File());
  }
  void Close() { office.session.MainConn.reset(); }
  void Reopen() {
    office.Open();
    office.session.settings.TransLogs = false;
  }
  std::string File() const { return office.folder.File("office.db"); }

  std::unique_ptr<NewCustFrm> Open() {
    auto screen = std::make_unique<NewCustFrm>(office.session, desk);
    screen->Load();
    return screen;
  }

  static void Fill(NewCustFrm& screen) {
    screen.CustName.SetText("O'Brien; DROP TABLE CustMast -- 陈亚九");
    screen.CustRace.SetText("CINA");
    screen.CustGender.SetText("MALE");
    screen.AreaCode.SetText("PERSONAL");
    screen.RefererName.SetText("Lim");
    screen.AddEditCmd.Click();
    screen.RefererName.SetText("Wong");
    screen.AddEditCmd.Click();
  }

  // As a face does it: a failure never leaves the screen.
  static void Save(NewCustFrm& screen) {
    screen.Guard([&] { screen.SaveCmd.Click(); });
  }

  // Everything that a customer save touches, as text.
  std::string Stored() {
    std::string all;
    for (const char* sql :
         {"SELECT * FROM CustMast ORDER BY CustID", "SELECT * FROM NumberMast ORDER BY CustID",
          "SELECT * FROM RefererMast ORDER BY RefererName",
          "SELECT * FROM CheckListTrans ORDER BY CheckListSeq",
          "SELECT * FROM DocumentMast ORDER BY DocNo"}) {
      all += office.Lines(sql);
    }
    return all;
  }

  using Failure = Office::Failure;

  Office office;
  AgreeingDesk desk;
};

}  // namespace kaunter
