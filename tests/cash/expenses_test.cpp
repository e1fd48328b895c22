// Expenses: the order of the checks, whose record it is, and that a number is one's own.
#include "cash/personal_epx_frm.h"
#include "tests/cash/cash_counter.h"

namespace kaunter {
namespace {

class ExpensesTest : public CashCounter {
 protected:
  std::unique_ptr<PersonalEpxFrm> Filled() {
    auto screen = std::make_unique<PersonalEpxFrm>(office.session, counter);
    screen->Load();
    Put(screen->CompCode, "HQ");
    Put(screen->ExpDate, "05-02-2024");
    Put(screen->ExpDesc, "Rent 'of' KL");
    Put(screen->CreditAmt, "1,200.5");
    Put(screen->CBCat, "LOAN");
    Put(screen->Bank, "CASH");
    return screen;
  }
  std::string Kept() {
    return Lines("SELECT TrxID,CompCode,TrxDesc,DebitAmt,CreditAmt,UserID FROM PersonalExp");
  }
};

// Row k breaks check k and every later one, so each is met before all that follow it.
TEST_F(ExpensesTest, ChecksComeInTheirOrderAndNothingTypedIsLost) {
  const std::vector<std::vector<std::string>> cases = {
      {"9", "", "", "", "", "", "", "", "T: Record not found|"},
      {"", "", "", "", "", "", "", "", "T: Company Code is require|"},
      {"", "HQ", "", "", "", "", "", "", "T: Expenses Date is require|"},
      {"", "HQ", "30-02-2024", "", "", "", "", "", "T: Invalid Expenses Date|"},
      {"", "HQ", "29-02-2024", " ", "", "", "", "", "T: Expenses Desc is require|"},
      {"", "HQ", "29-02-2024", "a", "x'", "", "", "", "T: Invald Debit Amount|"},
      {"", "HQ", "29-02-2024", "a", "-1", "", "", "", "T: Debit Amount cannot less then 0|"},
      {"", "HQ", "29-02-2024", "a", "1", "1..2", "", "", "T: Invald Credit Amount|"},
      {"", "HQ", "29-02-2024", "a", "0.004", "", "", "", "T: Debit or Credit Amount is require|"},
      {"", "HQ", "29-02-2024", "a", "1", "2", "", "", "T: Category is require|"},
      {"", "HQ", "29-02-2024", "a", "1", "2", "LOAN", "", "T: Cheque No is require|"},
      {"", "HQ", "29-02-2024", "a", "1", "2", "LOAN", "MBB", "T: Cheque No is require|"},
      {"", "HQ", "29-02-2024", "a", "1", "2", "LOAN", "cash", "?Confirm to save Expenses?|"}};
  counter.agrees = false;
  for (const auto& one : cases) {
    PersonalEpxFrm screen(office.session, counter);
    screen.Load();
    for (TextBox* box : {&screen.TrxID, &screen.ExpDate, &screen.ExpDesc, &screen.DebitAmt}) {
      const int at = box == &screen.TrxID     ? 0
                     : box == &screen.ExpDate ? 2
                     : box == &screen.ExpDesc ? 3
                                              : 4;
      box->SetText(one.at(static_cast<std::size_t>(at)));
    }
    screen.CreditAmt.SetText(one[5]);
    screen.CompCode.SetText(one[1]);
    screen.CBCat.SetText(one[6]);
    screen.Bank.SetText(one[7]);
    EXPECT_EQ(Press(screen.SaveCmd), one[8]);
    EXPECT_EQ(screen.TrxID.text() + screen.ExpDesc.text(), one[0] + one[3]);
  }
  EXPECT_EQ(Kept(), "");
}

// Between the insert and the reading of its number another company enters one.
TEST_F(ExpensesTest, TheNumberShownIsThatOfTheOwnRow) {
  auto screen = Filled();
  main().SetFaultHook([&](std::string_view sql) {
    if (sql.starts_with("SELECT MAX(TrxID)")) {
      main().Execute("INSERT INTO PersonalExp (CompCode) VALUES ('KL')");
    }
  });
  EXPECT_EQ(Press(screen->SaveCmd), "?Confirm to save Expenses?|T: Expenses saved|");
  EXPECT_EQ(screen->TrxID.text(), "1");
  main().SetFaultHook({});
  EXPECT_TRUE(office.Log().back().ends_with("(1 debit-0.00 credit-1,200.50)"));
}

TEST_F(ExpensesTest, RightsOfTheUserAndOfHisCompany) {
  auto screen = Filled();
  Press(screen->SaveCmd);
  const std::string kept = Kept();
  office.session.AllowEdit = office.session.AllowDelete = false;
  EXPECT_EQ(Press(screen->SaveCmd),
            "T: User AMY Level not allow to edit or delete expenses record|");
  EXPECT_EQ(Press(screen->DeleteCmd), "T: You are not allow to delete record|");
  EXPECT_EQ(counter.asked_manager, 2);
  office.session.AllowEdit = office.session.AllowDelete = true;
  office.session.CurrentLevel = 1;
  office.Run("UPDATE PersonalExp SET CompCode='KL'");
  for (Button* button : {&screen->SaveCmd, &screen->DeleteCmd}) {
    EXPECT_NE(Press(*button).find("an error occur during saving expenses|T: Expenses 1 is not"),
              std::string::npos);
  }
  EXPECT_EQ(screen->ExpDesc.text(), "Rent 'of' KL");
  Press(screen->Command2);
  Put(screen->TrxID, "1");
  Put(screen->TrxID, "1 or 1=1");
  Put(screen->TrxID, "0");
  EXPECT_EQ(counter.messages, std::vector<std::string>(3, "T: Record not found"));
  office.Run("UPDATE PersonalExp SET CompCode='HQ'");
  EXPECT_EQ(Kept(), kept);
}

}  // namespace
}  // namespace kaunter
