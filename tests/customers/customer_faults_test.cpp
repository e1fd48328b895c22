// The customer save whole or not at all: the database fails at each statement in turn, and the
// machine loses power at each write.
#include "tests/customers/customer_test.h"
#include "tests/support/pulled_plug.h"

namespace kaunter {
namespace {

// A save of a new customer, or of one that is there.
class CustomerFaults : public CustomerTest, public ::testing::WithParamInterface<bool> {
 protected:
  CustomerFaults() {
    if (!IsNew()) {
      auto first = Open();
      Fill(*first);
      Save(*first);
    }
    Keep();
    before_ = Stored();
    SaveOne();
    after_ = Stored();
    EXPECT_NE(before_, after_);
  }

  static bool IsNew() { return GetParam(); }

  // The screen with everything typed that the save stores.
  std::unique_ptr<NewCustFrm> Typed() {
    auto screen = Open();
    if (IsNew()) {
      Fill(*screen);
    } else {
      screen->CustID.Enter();
      screen->CustID.SetText("HQ0001");
      screen->CustID.Leave();
      screen->CustName.SetText("陈亚九 a.k.a. Tan");
      screen->CustHP1.SetText("012-3456789");
      screen->RefererName.SetText("Third");
      screen->AddEditCmd.Click();
    }
    return screen;
  }

  void SaveOne() {
    auto screen = Typed();
    desk.messages.clear();
    Save(*screen);
    if (desk.messages.empty() || desk.messages.back().find(" saved") == std::string::npos) {
      throw std::runtime_error("not saved: " + (desk.messages.empty() ? "" : desk.messages.back()));
    }
  }

  // The next new customer takes the number behind the last stored one: none is lost or doubled.
  void ExpectNextNumber(const std::string& stored) {
    auto screen = Open();
    Fill(*screen);
    Save(*screen);
    const bool first_stored = !IsNew() || stored == after_;
    EXPECT_EQ(screen->CustID.text(), first_stored ? "HQ0002" : "HQ0001");
  }

  std::string before_, after_;
};

TEST_P(CustomerFaults, AFailureAtAnyStatementLeavesAllOrNothingAndTheNextSaveSucceeds) {
  for (const Failure how : {Failure::passes, Failure::stays, Failure::line_cut}) {
    int undone = 0;
    bool hit = true;
    for (int at = 1; hit; ++at) {
      SCOPED_TRACE("statement " + std::to_string(at) + ", kind " +
                   std::to_string(static_cast<int>(how)));
      ASSERT_LT(at, 200);
      Restore();
      Reopen();
      auto screen = Typed();
      const std::string name = screen->CustName.text();
      desk.messages.clear();
      hit = office.FailAt(at, how, [&] { Save(*screen); });
      ASSERT_FALSE(office.session.Main().InTransaction());
      EXPECT_FALSE(desk.messages.empty()) << "nothing was told";
      const std::string stored = Stored();
      ASSERT_TRUE(stored == before_ || stored == after_) << stored;
      if (stored == before_) {
        ++undone;
        EXPECT_EQ(screen->CustName.text(), name);
        EXPECT_EQ(screen->CustID.text(), IsNew() ? "" : "HQ0001");
        // The same screen saves when the trouble is over.
        desk.messages.clear();
        Save(*screen);
        ASSERT_FALSE(desk.messages.empty());
        EXPECT_NE(desk.messages.back().find("saved"), std::string::npos) << desk.messages.back();
        EXPECT_EQ(Stored(), after_);
      }
      ExpectNextNumber(after_);
    }
    EXPECT_GT(undone, 3);
  }
}

TEST_P(CustomerFaults, APulledPlugAtAnyWriteLeavesAllOrNothing) {
  std::string stored;
  test::DieEverywhere({.file = File(),
                       .fresh = [&] { Restore(); },
                       .save =
                           [&] {
                             Reopen();
                             SaveOne();
                           },
                       .state =
                           [&] {
                             Reopen();
                             stored = Stored();
                             return stored;
                           },
                       .before = before_,
                       .after = after_,
                       .seeds = 2,
                       .then =
                           [&] {
                             ExpectNextNumber(stored);
                             Close();
                           }});
}

INSTANTIATE_TEST_SUITE_P(Of, CustomerFaults, ::testing::Bool(), [](const auto& save) {
  return save.param ? "ANewCustomer" : "AnExistingCustomer";
});

}  // namespace
}  // namespace kaunter
