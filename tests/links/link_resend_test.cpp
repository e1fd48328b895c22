// The bridge held against random ledgers and mutilated at random: the list, the sending, a bridge
// that goes away, two supervisors at once.
#include "links/link_resend_frm.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <map>
#include <random>
#include <set>

#include "core/schema_text.h"
#include "tests/core/office.h"

namespace kaunter {
namespace {

class ResendDesk : public SilentDesk {
 public:
  bool Ask(std::string_view, std::string_view text) override {
    messages.emplace_back(text);
    return false;
  }
  bool AskBeforeLoss(std::string_view, std::string_view) override { return yes; }
  std::string Last() const { return messages.empty() ? "" : messages.back(); }
  bool yes = true;
};

// What the bridge must hold of the ledger, reckoned a second time while the ledger is made: the
// sums of a number in a table, "" beside it for a person.
using Model = std::map<std::pair<std::string, std::string>, std::string>;

class LinkResend : public ::testing::Test {
 protected:
  LinkResend() : office(Office::State::patched), session(office.session) {
    session.CurrentLevel = 4;
    session.CurrentCompCode = "HQ";
    session.settings.LinkAcc = "1";
    office.Run("UPDATE LinkAccMast SET LinkAccCode='5-'+LinkID");
    office.Run("INSERT INTO CompMast (CompCode,CompDesc) VALUES ('KL','KL')");
    session.AED = OpenSqlite("AED", office.folder.File("aed.db"), true, session.clock);
    RunScript(*session.AED, SchemaText("accounting"));
  }

  int Roll(int sides) { return static_cast<int>(random() % static_cast<unsigned>(sides)); }
  std::string Sen(int most = 100000) { return fmt::format("{:.2f}", Roll(most) / 100.0); }
  // Most lie in January, the first and last moment of it among them.
  std::string Day() {
    static const char* const days[] = {"2024-01-01", "2024-01-31 23:59:59", "2024-01-15",
                                       "2024-01-20", "2023-12-31 23:59:59", "2024-02-01"};
    return days[Roll(6)];
  }
  static bool In(const std::string& day) { return day.starts_with("2024-01"); }
  void Expect(bool counts, const std::string& table, const std::string& number, std::string sum) {
    if (counts) model[{table, number}] = std::move(sum);
  }
  static std::string Plus(std::initializer_list<std::string> amounts) {
    Money sum;
    for (const std::string& one : amounts) sum += Money::FromText(one);
    return sum.ToText();
  }

  void MakeLedger(int records, const std::set<std::string>& companies) {
    for (const int end = made + records; made < end; ++made) {
      const int i = made;
      const std::string company = Roll(3) == 0 ? "KL" : "HQ";
      const std::string day = Day();
      const bool counts = In(day) && companies.contains(company);
      const std::string customer = fmt::format("{}O'{}", company, Roll(5));
      const std::string supplier = fmt::format("S{}{}", company, Roll(3));
      const auto person = [&](const char* table, const std::string& id) {
        if (known.insert(id).second) {
          const bool buys = table == std::string("TM_Debtor");
          office.Run(
              fmt::format("INSERT INTO {} ({},{},CompCode,TrxDate) VALUES ({},'Chan''s',{},"
                          "'2020-01-01')",
                          buys ? "CustMast" : "SupplierMast", buys ? "CustID" : "SuppID",
                          buys ? "CustName" : "SuppName", QuoteStr(id), QuoteStr(company)));
        }
        Expect(counts, table, id, "");
      };
      const std::string head =
          fmt::format("{},{},{}", QuoteStr(company), QuoteStr(customer), QuoteStr(day));
      switch (Roll(6)) {
        case 0: {
          const std::string id = fmt::format("L{}", i), fee = Sen(), stamp = Sen();
          office.Run(
              fmt::format("INSERT INTO LoanMast (CompCode,CustID,TrxDate,LoanID,LoanAmt,"
                          "TermInt,DepositAmt,OathsAmt,LegalFee,ProcessFee,MiscAmt,"
                          "DragLoan) VALUES ({},{},5000,{},{},0,0,0,1.5,'{}')",
                          head, QuoteStr(id), fee, stamp, Roll(2)));
          Expect(counts, "TM_ARInvoice", id, Plus({fee, stamp, "1.5"}));
          Expect(counts, "TM_ARPayment", id, Plus({fee, stamp, "1.5"}));
          person("TM_Debtor", customer);
          break;
        }
        case 1: {
          const std::string id = fmt::format("D{}", i), amount = Sen();
          office.Run(
              fmt::format("INSERT INTO DrawDownMast (CompCode,CustID,TrxDate,SID,DrawDownAmt) "
                          "VALUES ({},{},{})",
                          head, QuoteStr(id), amount));
          Expect(counts, "TM_ARInvoice", id, Plus({amount}));
          person("TM_Debtor", customer);
          break;
        }
        case 2:
        case 3: {
          const std::string id = fmt::format("P{}", i), amount = Sen(), late = Sen(500);
          const std::string discount = Roll(2) == 0 ? "0" : Sen(500);
          const bool active = Roll(6) > 0;
          office.Run(fmt::format(
              "INSERT INTO PaymentMast (CompCode,CustID,PayDate,PayID,PayAmt,"
              "IntAmt,CollectorAmt,ChargeAmt,DiscAmt,PaymentStatus,Bank) VALUES "
              "({},{},{},{},0.1,0.2,{},{},'MBB')",
              head, QuoteStr(id), amount, late, discount, QuoteStr(active ? "ACTIVE" : "VOID")));
          if (!active) break;
          Expect(counts, "TM_ARPayment", id, Plus({amount, late, "0.3"}));
          if (discount != "0" && discount != "0.00") {
            Expect(counts, "TM_ARCN", id, Plus({discount}));
          }
          person("TM_Debtor", customer);
          break;
        }
        case 4: {
          static const char* const kinds[] = {"Invoice", "Credit Note", "Batch"};
          const int kind = Roll(3);
          const std::string id = fmt::format("C{}", i), amount = Sen();
          office.Run(
              fmt::format("INSERT INTO ChargeMast (CompCode,CustID,TrxDate,ChargeID,PType,"
                          "ChargeAmt) VALUES ({},{},'{}',{}{})",
                          head, QuoteStr(id), kinds[kind], kind == 1 ? "-" : "", amount));
          if (kind == 2) break;
          Expect(counts, kind == 0 ? "TM_ARInvoice" : "TM_ARCN", id, Plus({amount}));
          person("TM_Debtor", customer);
          break;
        }
        default: {
          static const char* const kinds[] = {"Invoice", "Credit Note", "Payment"};
          static const char* const tables[] = {"TM_APInvoice", "TM_APCN", "TM_APPayment"};
          const int kind = Roll(3);
          const std::string id = fmt::format("T{}", i), amount = Sen();
          office.Run(
              fmt::format("INSERT INTO SupplierTrans (CompCode,SuppID,TrxDate,TransID,"
                          "TransType,TransAmt) VALUES ({},{},{},{},'{}',{}{})",
                          QuoteStr(company), QuoteStr(supplier), QuoteStr(day), QuoteStr(id),
                          kinds[kind], kind == 0 ? "" : "-", amount));
          Expect(counts, tables[kind], id, Plus({amount}));
          person("TM_Creditor", supplier);
        }
      }
    }
  }

  // What the bridge holds, as the model has it; an invoice whose lines do not make its sum is
  // marked.
  Model Bridge() {
    Model held;
    const auto read = [&](const std::string& table, const std::string& key,
                          const std::string& amount) {
      const Recordset rows =
          session.AED->Query(fmt::format("SELECT {},{} FROM {}", key, amount, table));
      for (const auto& row : rows.rows()) {
        const auto [at, is_new] = held.try_emplace({table, row[0].ToText()});
        if (!is_new) at->second += "+";
        if (amount != "AccNo") at->second += row[1].ToText();
      }
    };
    read("TM_Debtor", "AccNo", "AccNo");
    read("TM_Creditor", "AccNo", "AccNo");
    for (const char* side : {"TM_AR", "TM_AP"}) {
      const std::string of = side;
      read(of + "Invoice", "DocNo", "Total");
      read(of + "Payment", "DocNo", "PaymentAmount");
      read(of + "CN", "DocNo", "Amount");
      for (auto& [key, sum] : held) {
        if (key.first != of + "Invoice") continue;
        const std::string lines =
            ScalarQuery(*session.AED, "SELECT SUM(Amount) FROM " + of +
                                          "InvoiceDTL WHERE DocNo=" + QuoteStr(key.second));
        if (lines.empty() || Money::FromText(lines) != Money::FromText(sum)) sum += " lines";
      }
    }
    return held;
  }

  // Takes rows away, changes amounts, cuts lines, writes some twice.
  void Mutilate() {
    const Model whole = Bridge();
    for (const auto& [key, sum] : whole) {
      const auto& [table, number] = key;
      const bool person = sum.empty();
      const std::string where =
          " WHERE " + std::string(person ? "AccNo" : "DocNo") + "=" + QuoteStr(number);
      switch (Roll(8)) {
        case 7:
          if (person) {
            session.AED->Execute("INSERT INTO " + table + " (AccNo) VALUES (" + QuoteStr(number) +
                                 ")");
          }
          break;
        case 0:
          session.AED->Execute("DELETE FROM " + table + where);
          break;
        case 3:
          if (table.ends_with("Invoice")) {
            session.AED->Execute("DELETE FROM " + table + "DTL" + where);
          }
          break;
        case 4:
          if (table.ends_with("Payment")) {
            session.AED->Execute("INSERT INTO " + table + " (DocNo,PaymentAmount) VALUES (" +
                                 QuoteStr(number) + ",0)");
          }
          break;
        case 6:
          if (table.ends_with("Payment")) {
            session.AED->Execute("UPDATE " + table + " SET PaymentAmount=PaymentAmount+0.01" +
                                 where);
          }
          break;
        case 5:
          if (table.ends_with("CN")) {
            session.AED->Execute("UPDATE " + table + " SET Amount=Amount-0.01" + where);
          }
          break;
        default:
          break;
      }
    }
  }

  std::unique_ptr<LinkResendfrm> Listed() {
    auto screen = std::make_unique<LinkResendfrm>(session, desk);
    screen->Load();
    screen->DateFrom.Type("01-01-2024");
    screen->DateTo.Type("31-01-2024");
    screen->ListCmd.Click();
    return screen;
  }
  static std::size_t CountOf(const Model& model, const Model& held) {
    std::size_t count = 0;
    for (const auto& [key, sum] : model) {
      const auto found = held.find(key);
      count += found == held.end() || found->second != sum ? 1 : 0;
    }
    return count;
  }

  std::mt19937 random{7};
  Office office;
  Session& session;
  ResendDesk desk;
  Model model;
  std::set<std::string> known;
  int made = 0;
};

TEST_F(LinkResend, TheBridgeComesToARecountOfTheLedgerWhateverWasMissing) {
  MakeLedger(120, {"HQ", "KL"});
  for (int round = 0; round < 12; ++round) {
    const std::size_t differ = CountOf(model, Bridge());
    const auto screen = Listed();
    EXPECT_EQ(desk.Last(),
              fmt::format("Accounting Re-send: {} documents and persons of the ledger, {} to be "
                          "sent",
                          model.size(), differ))
        << round;
    ASSERT_EQ(screen->DG.RowCount(), static_cast<int>(differ));
    screen->SendCmd.Click();
    EXPECT_EQ(Bridge(), model) << round;
    EXPECT_EQ(Listed()->DG.RowCount(), 0) << round;
    MakeLedger(5, {"HQ", "KL"});
    Mutilate();
  }
}

// What was moved in stands in the accounts of the old books; what is done with it here does not.
TEST_F(LinkResend, WhatWasMovedInIsNotSentAgain) {
  office.Run(
      "INSERT INTO CustMast (CustID,CustName,CompCode,TrxDate) VALUES ('A1','Ali','HQ',"
      "'2020-01-01')");
  for (const char* id : {"Old", "New"}) {
    office.Run(
        fmt::format("INSERT INTO LoanMast (LoanID,CompCode,CustID,TrxDate,ProcessFee,DragLoan) "
                    "VALUES ('L{0}','HQ','A1','2024-01-02',5,'0');"
                    "INSERT INTO PaymentMast (PayID,LoanID,CompCode,CustID,PayDate,PayAmt,"
                    "PaymentStatus) VALUES ('P{0}','LOld','HQ','A1','2024-01-03',7,'ACTIVE');"
                    "INSERT INTO DrawDownMast (SID,LoanID,CompCode,CustID,TrxDate,DrawDownAmt,"
                    "DateCreated) VALUES ('D{0}','LOld','HQ','A1','2024-01-02',9,{1});"
                    "INSERT INTO ChargeMast (ChargeID,LoanID,CompCode,CustID,TrxDate,ChargeAmt,"
                    "PType,DateCreated) VALUES ('C{0}','LOld','HQ','A1','2024-01-03',3,'Invoice',"
                    "{1})",
                    id, *id == 'O' ? "'2024-01-20 10:11:12'" : "'2024-01-21 10:11:12'"));
  }
  office.Run(
      "INSERT INTO MoveInMast (Kind,CompCode,OldCode,NewID,DateCreated) VALUES "
      "('loans','HQ','1','LOld','2024-01-20 10:11:12');"
      "INSERT INTO MoveInMast (Kind,CompCode,OldCode,NewID,DateCreated) VALUES "
      "('payments','HQ','1','POld','2024-01-20 10:11:12')");
  Listed()->SendCmd.Click();
  std::string sent;
  for (const auto& [key, sum] : Bridge()) sent += key.second + " ";
  EXPECT_EQ(sent, "CNew DNew LNew LNew PNew A1 ");
}

TEST_F(LinkResend, BelowLevelFourTheOwnCompanyAndBelowTwoNobody) {
  MakeLedger(80, {"HQ"});
  session.CurrentLevel = 2;
  const auto screen = Listed();
  screen->SendCmd.Click();
  EXPECT_EQ(Bridge(), model);
  session.CurrentLevel = 1;
  LinkResendfrm clerk(session, desk);
  clerk.Load();
  EXPECT_EQ(desk.Last(), "Accounting Re-send: User AMY Level not allow to re-send to the accounts");
  clerk.ListCmd.Click();
  EXPECT_EQ(clerk.DG.RowCount(), 0);
}

// Whole or not at all, whatever statement fails, and the second run sends the rest.
TEST_F(LinkResend, ABridgeThatGoesAwayLeavesNoHalfDocument) {
  MakeLedger(12, {"HQ", "KL"});
  for (int at = 1;; ++at) {
    for (const char* table :
         {"TM_Debtor", "TM_Creditor", "TM_ARInvoice", "TM_ARInvoiceDTL", "TM_ARCN", "TM_ARPayment",
          "TM_APInvoice", "TM_APInvoiceDTL", "TM_APCN", "TM_APPayment"}) {
      session.AED->Execute(std::string("DELETE FROM ") + table);
    }
    const auto screen = Listed();
    int count = 0;
    session.AED->SetFaultHook([&](std::string_view sql) {
      if (++count >= at && !sql.starts_with("ROLLBACK")) throw SqlError(10054, "the line is cut");
    });
    screen->SendCmd.Click();
    session.AED->SetFaultHook({});
    if (count < at) break;
    EXPECT_TRUE(desk.Last().starts_with("Accounting Re-send: an error occur on linkage"));
    for (const auto& [key, sum] : Bridge()) EXPECT_EQ(sum, model.at(key)) << key.second;
    screen->SendCmd.Click();
    EXPECT_EQ(Bridge(), model) << at;
  }
}

TEST_F(LinkResend, TwoSupervisorsAndASaveMeanwhileLeaveOneRowOfEach) {
  MakeLedger(60, {"HQ", "KL"});
  const auto first = Listed();
  const auto second = Listed();
  // A payment was changed and another record taken back since the lists were made.
  std::string changed, gone;
  for (const auto& [key, sum] : model) {
    if (key.first != "TM_ARPayment" || key.second[0] != 'P') continue;
    (changed.empty() ? changed : gone) = key.second;
  }
  office.Run("UPDATE PaymentMast SET PayAmt=PayAmt+1 WHERE PayID=" + QuoteStr(changed));
  office.Run("DELETE FROM PaymentMast WHERE PayID=" + QuoteStr(gone));
  const Money sum = Money::FromText(model[{"TM_ARPayment", changed}]) + Money::FromInteger(1);
  model[{"TM_ARPayment", changed}] = sum.ToText();
  model.erase({"TM_ARPayment", gone});
  model.erase({"TM_ARCN", gone});
  for (int row = 0; row < first->DG.RowCount(); ++row) first->DG.SetTicked(row, row % 2 == 0);
  first->SendCmd.Click();
  second->SendCmd.Click();
  first->CmdCheckAll.Click();
  first->SendCmd.Click();
  EXPECT_EQ(Bridge(), model);
  const int result = first->DG.ColumnIndex("Result");
  std::set<std::string> results;
  for (int row = 0; row < first->DG.RowCount(); ++row) results.insert(first->DG.Cell(row, result));
  EXPECT_EQ(results, (std::set<std::string>{"Gone from the ledger", "In order meanwhile", "Sent"}));
}

TEST_F(LinkResend, NothingIsSentUnaskedOrWithoutAnAccount) {
  MakeLedger(20, {"HQ", "KL"});
  const auto screen = Listed();
  desk.yes = false;
  screen->SendCmd.Click();
  office.Run("UPDATE LinkAccMast SET LinkAccCode='' WHERE LinkID='PD'");
  screen->SendCmd.Click();
  EXPECT_EQ(desk.Last(), "Link Account not complete setup\nDo you want to setup now ?");
  EXPECT_TRUE(Bridge().empty());
  screen->DateTo.Type("31-12-2023");
  EXPECT_EQ(screen->DG.RowCount(), 0);
  screen->ListCmd.Click();
  EXPECT_EQ(desk.Last(),
            "Accounting Re-send: Date From 01-01-2024 is after Date To 31-12-2023: put the earlier "
            "day first");
}

}  // namespace
}  // namespace kaunter
