// Random histories at the payment counter, typed into the screen as a clerk types them: new
// payments, changed and deleted ones, on two loans of one customer, by four screens that stay open.
// After every press the stored rows are compared with a second model (counter_model.h); what was
// refused has changed no row and no box; the identities of the ledger hold; a second rebuild
// changes nothing; a payment changed back or deleted again brings the loan back.
//
// The histories are numbered and always the same. KAUNTER_HISTORY runs one of them alone and prints
// its steps, KAUNTER_HISTORIES sets their number.
#include <sqlite3.h>

#include <iostream>
#include <memory>
#include <thread>
#include <unordered_map>

#include "collections/payment_frm.h"
#include "core/password_screens.h"
#include "core/values.h"
#include "gtest/gtest.h"
#include "loans/rebuild.h"
#include "platform/sql/sqlite/sqlite_functions.h"
#include "platform/sql/transaction.h"
#include "tests/collections/counter_model.h"
#include "tests/core/office.h"
#include "tests/loans/random_loans.h"

namespace kaunter {
namespace {

using counter::Answers;
using counter::Box;
using counter::Dashed;
using counter::Iso;
using counter::Loan;
using counter::Paid;
using counter::Typed;
using counter::Verdict;
using model::Day;
using model::Sen;

class HistoryDesk : public SilentDesk {
 public:
  bool Ask(std::string_view, std::string_view text) override {
    asked.emplace_back(text);
    if (text.find("Continue make payment") != std::string_view::npos) return answers.holiday;
    const bool to_store = text.starts_with("Confirm to ") || text.starts_with("confirm to ");
    return !to_store || answers.confirm;
  }
  void Message(MessageKind, std::string_view, std::string_view text) override {
    if (!text.starts_with("Payment already made on the month")) messages.emplace_back(text);
  }
  void ShowModal(Screen& screen) override {
    if (dynamic_cast<frmUserSignIn*>(&screen) != nullptr) session->OverrideOK = answers.manager;
  }
  Session* session = nullptr;
  Answers answers;
  std::vector<std::string> asked;
};

// The database file on the bare engine.
class BareFile {
 public:
  explicit BareFile(const std::string& file) {
    sqlite3_open(file.c_str(), &db_);
    sql::RegisterSqliteFunctions(db_, clock_);
  }
  ~BareFile() {
    for (const auto& [sql, statement] : statements_) sqlite3_finalize(statement);
    sqlite3_close_v2(db_);
  }
  BareFile(const BareFile&) = delete;
  BareFile& operator=(const BareFile&) = delete;

  // Rows a line, fields by a bar; fractions in whole sen where `sen`.
  std::string Rows(const char* sql, const std::string& key = {}, bool sen = true) {
    sqlite3_stmt*& statement = statements_[sql];
    if (statement == nullptr &&
        sqlite3_prepare_v2(db_, sql, -1, &statement, nullptr) != SQLITE_OK) {
      ADD_FAILURE() << sqlite3_errmsg(db_) << " " << sql;
      return {};
    }
    if (sqlite3_bind_parameter_count(statement) > 0) {
      sqlite3_bind_text(statement, 1, key.data(), static_cast<int>(key.size()), SQLITE_STATIC);
    }
    std::string text;
    while (sqlite3_step(statement) == SQLITE_ROW) {
      for (int i = 0; i < sqlite3_column_count(statement); ++i) {
        if (sen && sqlite3_column_name(statement, i)[0] == '$') {
          text += std::to_string(std::llround(sqlite3_column_double(statement, i) * 100));
        } else if (const auto* field = sqlite3_column_text(statement, i); field != nullptr) {
          text += reinterpret_cast<const char*>(field);
        }
        text += "|";
      }
      text += "\n";
    }
    sqlite3_reset(statement);
    return text;
  }
  std::string Everything() {
    std::string all;
    for (const char* table :
         {"SELECT * FROM PaymentMast", "SELECT * FROM SchMast", "SELECT * FROM LoanMast",
          "SELECT * FROM ChargeMast ORDER BY ChargeID", "SELECT * FROM CustMast",
          "SELECT * FROM NumberMast", "SELECT * FROM ChqMast", "SELECT * FROM SchMast2"}) {
      all += Rows(table, {}, false) + "\n";
    }
    return all;
  }

 private:
  Clock clock_;
  sqlite3* db_ = nullptr;
  std::unordered_map<const char*, sqlite3_stmt*> statements_;
};

// What must hold, asked of the rows alone; the answer is a loan or a payment that breaks it.
constexpr const char* kBroken[] = {
    "SELECT LoanID,SchID FROM SchMast WHERE ROUND(Payment-CapitalPayment-InterestPayment,2) <> 0",
    "SELECT LoanID,SchID FROM SchMast WHERE Payment > PayableAmt AND Payment > 0",
    "SELECT LoanID,SchID FROM SchMast WHERE CapitalPayment > 0 AND InterestPayment <> InterestAmt",
    "SELECT LoanID FROM LoanMast AS l WHERE ROUND(TotPay - (SELECT TOTAL(InstalAmt) FROM "
    "PaymentMast AS p WHERE p.LoanID=l.LoanID),2) <> 0",
    "SELECT LoanID FROM LoanMast AS l WHERE LoanBal <> (SELECT NewLoanBal FROM PaymentMast AS p "
    "WHERE p.LoanID=l.LoanID ORDER BY PayID DESC LIMIT 1)",
    "SELECT PayID FROM PaymentMast WHERE PayExtra <= 0 AND TopAmt*TopTerm=0 AND "
    "ROUND(OldLoanBal-InstalAmt-NewLoanBal,2) <> 0 AND LoanID IN (SELECT LoanID FROM LoanMast "
    "WHERE DragLoan='0')",
    "SELECT LoanID FROM LoanMast AS l WHERE DragLoan='0' AND NOT EXISTS (SELECT 1 FROM PaymentMast "
    "AS p WHERE p.LoanID=l.LoanID) AND ROUND(LoanBal - (SELECT TOTAL(PayableAmt) FROM SchMast AS s "
    "WHERE s.LoanID=l.LoanID),2) <> 0",
    "SELECT LoanID FROM LoanMast AS l WHERE ROUND(TotCollectorAmt - (SELECT TOTAL(ChargeAmt) FROM "
    "ChargeMast AS c WHERE c.LoanID=l.LoanID AND ChargeAmt > 0 AND PType <> 'Batch Loan "
    "Interest'),2) <> 0",
    "SELECT LoanID FROM LoanMast AS l WHERE ROUND(TotInt - (SELECT TOTAL(ChargeAmt) FROM "
    "ChargeMast AS c WHERE c.LoanID=l.LoanID AND ChargeAmt < 0 AND PType <> 'Batch Loan "
    "Interest'),2) <> 0",
    "SELECT LoanID FROM LoanMast AS l WHERE NextDueDate <> (SELECT DueDate FROM SchMast AS s WHERE "
    "s.LoanID=l.LoanID AND Payment < PayableAmt ORDER BY DueDate LIMIT 1)",
    "SELECT CustID FROM CustMast AS c WHERE ROUND(TotLoanBal - (SELECT TOTAL(LoanBal) FROM "
    "LoanMast AS l WHERE l.CustID=c.CustID),2) <> 0",
    "SELECT ReceiptNo FROM PaymentMast WHERE ReceiptNo <> '' GROUP BY ReceiptNo HAVING COUNT(*) > "
    "1",
    "SELECT ChqNo FROM PaymentMast AS p WHERE EXISTS (SELECT 1 FROM ChqMast AS c WHERE "
    "c.LoanID=p.LoanID AND c.ChqNo=p.ChqNo AND c.PayID <> p.PayID)",
    "SELECT ChqNo FROM ChqMast AS c WHERE PayID <> '' AND NOT EXISTS (SELECT 1 FROM PaymentMast AS "
    "p WHERE p.PayID=c.PayID AND p.ChqNo=c.ChqNo)",
};

constexpr std::array<TextBox PaymentFrm::*, counter::kBoxes> kBoxesOfScreen = {
    &PaymentFrm::TotPay,  &PaymentFrm::PayAmt,    &PaymentFrm::InstalAmt,    &PaymentFrm::PayExtra,
    &PaymentFrm::IntAmt,  &PaymentFrm::ChargeAmt, &PaymentFrm::CollectorAmt, &PaymentFrm::DiscAmt,
    &PaymentFrm::Memo5,   &PaymentFrm::MPayment,  &PaymentFrm::SalesmanComm, &PaymentFrm::TopAmt,
    &PaymentFrm::TopTerm, &PaymentFrm::TopUpAmt};

struct Counted {
  int histories = 0, typed = 0, pressed = 0, refused = 0, stored = 0, changed = 0, deleted = 0;
  int taken_back = 0, rebuilt_again = 0;
  std::map<std::string, int> told;  // how often each refusal was met, without its figures
};

class CounterHistory {
 public:
  CounterHistory() : bare_(office_.folder.File("office.db")) {
    desk_.session = &office_.session;
    office_.session.CurrentLevel = 4;
    office_.session.CurrentCompCode = "HQ";
    office_.session.settings.TransLogs = false;
  }

  // False when something did not hold; told with the steps that led there.
  bool Run(std::uint64_t number, bool tell) {
    number_ = number;
    random_ = Random(number);
    steps_.clear();
    held_ = true;
    ++counted.histories;
    MakeCustomer();
    Compare("at the start");
    const auto steps = random_.Between(3, 9);
    for (int i = 0; held_ && i < steps; ++i) Step();
    for (Clerk& clerk : clerks_) clerk.screen.reset();
    if (tell) std::cout << Trail();
    return held_;
  }

  Counted counted;

 private:
  // A screen and what should stand on it.
  struct Clerk {
    std::unique_ptr<PaymentFrm> screen;
    counter::Counter model;
  };
  enum Who { kNew, kOther, kEdit, kDelete };

  Connection& main() { return office_.session.Main(); }
  std::int64_t Between(std::int64_t least, std::int64_t most) {
    return random_.Between(least, std::max(least, most));
  }
  bool OneIn(int n) { return random_.OneIn(n); }

  std::string Trail() const {
    std::string all = fmt::format("KAUNTER_HISTORY={}\n", number_);
    for (const std::string& step : steps_) all += "  " + step + "\n";
    return all;
  }
  void Note(std::string step) { steps_.push_back(std::move(step)); }
  void Fault(const std::string& what) {
    if (held_) ADD_FAILURE() << Trail() << what;
    held_ = false;
  }
  void Same(const std::string& what, const std::string& is, const std::string& should_be) {
    if (is == should_be) return;
    // The first line that differs.
    std::size_t at = 0;
    while (at < is.size() && at < should_be.size() && is[at] == should_be[at]) ++at;
    const auto line = [&at](const std::string& text) {
      const std::size_t begin = at == 0 ? std::string::npos : text.rfind('\n', at - 1);
      const std::size_t first = begin == std::string::npos ? 0 : begin + 1;
      return text.substr(first, text.find('\n', at) - first);
    };
    Fault(fmt::format("{}:\n  {}\nshould be:\n  {}", what, line(is), line(should_be)));
  }

  // --- a customer with two loans

  void MakeCustomer() {
    company_ = {};
    company_.receipts = static_cast<counter::Company::Receipts>(Between(0, 2));
    company_.check_holiday = OneIn(2);
    office_.session.settings.CheckHoliday = company_.check_holiday;
    office_.session.settings.ORYYMMDD = company_.receipts == counter::Company::Receipts::dated;
    main().BeginTrans();
    for (const char* table : {"PaymentMast", "SchMast", "SchMast2", "LoanMast", "ChargeMast",
                              "NumberMast", "ChqMast", "CustMast", "HolidayMast"}) {
      main().Execute(fmt::format("DELETE FROM {}", table));
    }
    main().Execute(fmt::format("UPDATE CompMast SET SerialReceiptNo='{}'",
                               company_.receipts == counter::Company::Receipts::serial ? 1 : 0));
    main().Execute(
        "INSERT INTO CustMast (CustID,CompCode,CustName,CustStatus,TotLoan,TotLoanBal,TotTopUpAmt) "
        "VALUES ('C','HQ','Tan','ACTIVE',0,0,0)");
    for (const char* id : {"C-001", "C-002"}) MakeLoan(id);
    company_.holiday = model::PlusDays(company_.loans[0].lent, static_cast<int>(Between(20, 90)));
    main().Execute(
        fmt::format("INSERT INTO HolidayMast (HolidayDate,HolidayName) VALUES ('{}','Raya')",
                    Iso(company_.holiday)));
    for (Loan& loan : company_.loans) {
      RebuildLoan(main(), loan.id);
      loan.Rebuild();
    }
    main().CommitTrans();
    RebuildCustomer(main(), "C");
  }

  void MakeLoan(const std::string& id) {
    Loan loan;
    loan.id = id;
    const char* const types[] = {"MONTH", "MONTH", "WEEK", "DAILY", "14DAYS"};
    loan.type = types[Between(0, 4)];
    loan.ledger = DrawLoan(random_, id, {.rows = 5, .long_rows = 12, .payments = 0});
    model::StoredLoan& ledger = loan.ledger;
    const Day first = ledger.rows.front().due;
    for (std::size_t i = 0; loan.type != "MONTH" && i < ledger.rows.size(); ++i) {
      const int step = loan.type == "WEEK" ? 7 : loan.type == "DAILY" ? 1 : 14;
      ledger.rows[i].due = model::PlusDays(first, static_cast<int>(i) * step);
    }
    // As it is generated; a special one has figures of its own.
    if (ledger.backup.empty()) ledger.backup = ledger.rows;
    loan.lent =
        first.month == 1 ? Day{first.year - 1, 12, 20} : Day{first.year, first.month - 1, 20};
    loan.deposit = OneIn(2) ? 0 : Between(1, 500) * 100;
    loan.drawn = OneIn(15) ? 0 : ledger.amount;
    if (OneIn(4)) loan.group = "PINJAMAN TIDAK BERBAYAR";
    main().Execute(fmt::format(
        "INSERT INTO LoanMast (LoanID,CustID,CompCode,DragLoan,SpecialSch,LoanAmt,LoanAmt2,InsRate,"
        "InstallmentAmt2,LoanStatus,LoanGroupID,LoanTypeID,TrxDate,NextDueDate,PayOutAmt,"
        "DepositAmt2,TopUpAmt,LoanBal) VALUES ('{}','C','HQ','{}','{}',{},{},{},{},'ACTIVE','{}',"
        "'{}','{}','1999-01-01',{},{},0,0)",
        id, ledger.scheme, ledger.special ? 1 : 0, Text(ledger.amount), Text(ledger.amount),
        Money::FromTenThousandths(ledger.rate4).ToText(), Text(ledger.instalment), loan.group,
        loan.type, Iso(loan.lent), Text(loan.drawn), Text(loan.deposit)));
    StoreRows("SchMast", id, ledger.rows);
    StoreRows("SchMast2", id, ledger.backup);
    if (OneIn(2)) {
      loan.counted = true;
      main().Execute(fmt::format("Insert into NumberMast values ('{}','001','001')", id));
    }
    for (int i = 1; i <= static_cast<int>(Between(0, 2)); ++i) {
      counter::Cheque cheque{i, fmt::format("CHQ{}", i), "MBB", "", Between(1, ledger.amount), {}};
      loan.cheques.push_back(cheque);
      main().Execute(
          fmt::format("INSERT INTO ChqMast (LoanID,SeqNo,ChqNo,ChqBank,ChqAmt,PayID) VALUES "
                      "('{}',{},'{}','MBB',{},'')",
                      id, i, cheque.no, Text(cheque.amount)));
    }
    company_.loans.push_back(loan);
    if (OneIn(2)) PostCharges(company_.loans.back());
  }

  void StoreRows(const char* table, const std::string& id, const std::vector<model::Row>& rows) {
    for (const model::Row& row : rows) {
      main().Execute(fmt::format(
          "INSERT INTO {} (SchID,LoanID,DueDate,PayableAmt,CapitalAmt,InterestAmt) VALUES "
          "({},'{}',{},{},{},{})",
          table, row.id, id, Text(row.due), Text(row.payable), Text(row.capital),
          Text(row.interest)));
    }
  }

  void PostCharges(Loan& loan) {
    static constexpr const char* kTypes[] = {"Batch",   "Batch",       "Batch",
                                             "Invoice", "Credit Note", "Batch Loan Interest"};
    for (int i = static_cast<int>(Between(1, 3)); i > 0; --i) {
      counter::Charge charge;
      charge.id = fmt::format("{}-B{}", loan.id, ++serial_);
      charge.date = AnyDay(loan);
      charge.type = kTypes[Between(0, 5)];
      charge.amount = Between(1, 5000) * (charge.type == "Credit Note" ? -1 : 1);
      loan.charges.push_back(charge);
      main().Execute(fmt::format(
          "INSERT INTO ChargeMast (ChargeID,LoanID,CustID,CompCode,TrxDate,DueDate,ChargeAmt,"
          "OrgAmt,PType) VALUES ('{}','{}','C','HQ','{}','{}',{},0,'{}')",
          charge.id, loan.id, Iso(charge.date), Iso(charge.date), Text(charge.amount),
          charge.type));
      Note(fmt::format("{} is charged {} on {} ({})", loan.id, counter::Shown(charge.amount),
                       Iso(charge.date), charge.type));
    }
  }

  Day AnyDay(const Loan& loan) {
    const int span =
        31 + static_cast<int>(loan.ledger.rows.size()) * (loan.type == "MONTH" ? 31 : 8);
    return model::PlusDays(loan.lent, static_cast<int>(Between(0, span)));
  }

  // --- one step

  void Step() {
    company_.may_discount = !OneIn(4);
    company_.may_edit = !OneIn(4);
    company_.special_user = OneIn(20);
    office_.session.AllowDisc = company_.may_discount;
    office_.session.AllowEdit = company_.may_edit;
    office_.session.Special = company_.special_user;
    Loan& loan = company_.loans[static_cast<std::size_t>(Between(0, 1))];
    switch (Between(0, 15)) {
      case 0:
        PostBetween(loan);
        return;
      case 1:
      case 2:
        WithPaid(loan, [&](const Paid& paid) { Change(loan, paid.id); });
        return;
      case 3:
      case 4:
        WithPaid(loan, [&](const Paid& paid) { ChangeAndBack(loan, paid.id); });
        return;
      case 5:
      case 6:
        WithPaid(loan, [&](const Paid& paid) { Delete(loan, paid.id); });
        return;
      case 7:
        PayAndDelete(loan);
        return;
      case 8:
        Interleaved(loan);
        return;
      case 9:
        HandOver(loan);
        return;
      case 10:
        NotActive(loan);
        return;
      default:
        Pay(kNew, loan);
    }
  }

  void WithPaid(Loan& loan, const std::function<void(const Paid&)>& act) {
    if (loan.paid.empty()) {
      Pay(kNew, loan);
      return;
    }
    const Paid paid =
        loan.paid[static_cast<std::size_t>(Between(0, static_cast<int>(loan.paid.size()) - 1))];
    act(paid);
  }

  // The batch posts late charges; its own refresh of the totals is a rebuild here.
  void PostBetween(Loan& loan) {
    PostCharges(loan);
    RebuildLoan(main(), loan.id);
    loan.Rebuild();
    RebuildCustomer(main(), "C");
    Compare("charges posted");
  }

  void Pay(Who who, Loan& loan) {
    Clerk& clerk = Opened(who);
    if (!BringLoan(clerk, loan)) return;
    TypeAndPress(clerk, 3);
  }
  void Change(Loan& loan, const std::string& pay_id) {
    Clerk& clerk = Opened(kEdit);
    if (BringPayment(clerk, loan, pay_id)) TypeAndPress(clerk, 2);
  }
  bool Delete(Loan& loan, const std::string& pay_id) {
    Clerk& clerk = Opened(kDelete);
    return BringPayment(clerk, loan, pay_id) && Press(clerk, DrawAnswers());
  }

  void ChangeAndBack(Loan& loan, const std::string& pay_id) {
    company_.may_edit = office_.session.AllowEdit = true;
    company_.may_discount = office_.session.AllowDisc = true;
    const bool cut_before = loan.CutAnew();
    const Paid before = *loan.Find(pay_id);
    const std::string state = StateOf(loan, true);
    const bool all_paid = AllPaid(loan);
    Clerk& clerk = Opened(kEdit);
    if (!BringPayment(clerk, loan, pay_id)) return;
    if (!TypeAndPress(clerk, 2)) return;
    const bool cut = cut_before || loan.CutAnew() || loan.ledger.grace_row_cut;
    if (!BringPayment(clerk, loan, pay_id)) return;
    Note("... and back");
    TypeCheque(clerk, before.cheque);
    for (const auto& [box, sen] :
         std::initializer_list<std::pair<Box, Sen>>{{counter::kPay, before.pay},
                                                    {counter::kExtra, before.extra},
                                                    {counter::kInstal, before.instalment},
                                                    {counter::kExtra, before.extra},
                                                    {counter::kInterest, before.late},
                                                    {counter::kRefund, before.charge},
                                                    {counter::kCollector, before.collector},
                                                    {counter::kDiscount, before.discount},
                                                    {counter::kMemo5, before.calculated},
                                                    {counter::kTopAmt, before.top},
                                                    {counter::kTopUp, before.topup}}) {
      TypeAmount(clerk, box, {counter::Shown(sen), sen * 100});
    }
    TypeAmount(clerk, counter::kTopTerm,
               {std::to_string(before.top_term), before.top_term * 10000});
    TypeDate(clerk, Dashed(before.date), before.date);
    TypeReceipt(clerk, before.receipt);
    if (!Press(clerk, {})) return;
    const Paid& after = *loan.Find(pay_id);
    const bool same = after.pay == before.pay && after.instalment == before.instalment &&
                      after.extra == before.extra && after.cheque == before.cheque;
    if (!same || cut || all_paid) return;
    ++counted.taken_back;
    Same("changed and changed back", StateOf(loan, true), state);
  }

  void PayAndDelete(Loan& loan) {
    company_.may_discount = office_.session.AllowDisc = true;
    company_.special_user = office_.session.Special = false;
    const bool cut = loan.CutAnew();
    const bool all_paid = AllPaid(loan);
    const std::string state = StateOf(loan, false);
    Clerk& clerk = Opened(kNew);
    if (!BringLoan(clerk, loan) || !TypeAndPress(clerk, 3)) return;
    const bool waived = clerk.model.waive_from.has_value();
    const bool cut_now = cut || loan.CutAnew() || loan.ledger.grace_row_cut;
    Clerk& gone = Opened(kDelete);
    const std::string id = loan.paid.back().id;
    if (!BringPayment(gone, loan, id) || !Press(gone, {})) return;
    if (cut_now || all_paid || waived) return;
    ++counted.taken_back;
    Same("paid and deleted", StateOf(loan, false), state);
  }

  // A payment is half typed while others are stored.
  void Interleaved(Loan& loan) {
    Clerk& clerk = Opened(kOther);
    std::optional<Paid> changing;
    if (!loan.paid.empty() && OneIn(2)) changing = loan.paid.back();
    Clerk* stale = &clerk;
    if (changing) {
      stale = &Opened(OneIn(2) ? kEdit : kDelete);
      if (!BringPayment(*stale, loan, changing->id)) return;
    } else if (!BringLoan(clerk, loan)) {
      return;
    }
    if (!stale->model.is_delete()) TypeSome(*stale);
    const bool same_cheque = !changing && !loan.cheques.empty() && OneIn(2);
    if (same_cheque) TypeCheque(*stale, "CHQ1");
    Note("meanwhile");
    if (same_cheque) {
      Clerk& quicker = Opened(kNew);
      if (!BringLoan(quicker, loan)) return;
      TypeCheque(quicker, "CHQ1");
      TypeAmount(quicker, counter::kPay, As(1));
      TypeDate(quicker, Dashed(loan.lent), loan.lent);
      Press(quicker, {});
    } else if (!changing && !loan.paid.empty() && OneIn(2)) {
      Delete(loan, loan.paid.front().id);
    } else if (changing && stale->model.is_edit()) {
      Delete(loan, changing->id);
    } else if (changing) {
      Change(loan, changing->id);
    } else {
      Pay(kNew, loan);
    }
    if (!held_) return;
    Note("and then");
    Press(*stale, {});
  }

  void HandOver(Loan& loan) {
    SettlementQuote quote;
    quote.DragLoan = loan.flexi() ? "1" : "0";
    const Day day = AnyDay(loan);
    quote.SettledDate = Dashed(day);
    const Sen charges = std::max<Sen>(loan.charged + loan.credited, 0);
    const Sen schedule = Between(0, std::max<Sen>(loan.ledger.balance, 0));
    const Sen rest = Between(0, loan.ledger.balance - schedule);
    quote.OPayment = counter::Shown(charges);
    quote.NPayment = counter::Shown(schedule);
    quote.EPayment = counter::Shown(rest);
    quote.PayAmt = counter::Shown(schedule + rest);
    quote.ChargeAmt = "0.00";
    office_.session.HandOverQuote = quote;
    Clerk& clerk = Reopened(kNew, loan.id);
    office_.session.HandOverQuote = {};
    counter::Counter& on = clerk.model;
    on.OpenLoan(loan);
    Note(fmt::format("{} comes with a quote for {}: {} and {}, late {}", loan.id, quote.SettledDate,
                     quote.NPayment, quote.EPayment, quote.OPayment));
    if (!on.enabled) {
      Told("hand-over", "Loan settled, cannot make payment");
      return;
    }
    on.TypeDate(Dashed(day), day);
    on.waive_from = day;
    on.box[counter::kInterest].Show(charges);
    on.box[counter::kPay].Show(loan.flexi() ? schedule + rest : schedule);
    on.box[counter::kInstal].Show(schedule);
    on.box[counter::kExtra].Show(loan.flexi() ? rest : 0);
    on.box[counter::kDiscount].Show(loan.flexi() ? 0 : rest);
    if (!loan.flexi()) on.new_balance = on.old_balance - schedule;
    on.box[counter::kTotal].Show(on.box[counter::kPay].sen() + charges);
    on.split_total = on.box[counter::kTotal].text;
    Press(clerk, DrawAnswers());
  }

  // Nothing comes on a loan that does not run.
  void NotActive(Loan& loan) {
    const std::string status = OneIn(2) ? "CLOSED" : "PENDING";
    main().Execute(
        fmt::format("UPDATE LoanMast SET LoanStatus='{}' WHERE LoanID='{}'", status, loan.id));
    Note(fmt::format("{} is {}", loan.id, status));
    Clerk& clerk = Opened(kNew);
    clerk.model = {};
    desk_.messages.clear();
    Put(clerk.screen->LoanID, loan.id);
    Told("loan", "No payment for " + status + " loan");
    const std::string before = bare_.Everything();
    clerk.screen->Guard([&] { clerk.screen->SaveCmd.Click(); });
    Same("a press on a loan that does not run", bare_.Everything(), before);
    main().Execute(
        fmt::format("UPDATE LoanMast SET LoanStatus='ACTIVE' WHERE LoanID='{}'", loan.id));
  }

  // --- at the screen

  Clerk& Opened(Who who) {
    Clerk& clerk = clerks_[who];
    if (clerk.screen == nullptr || OneIn(12)) return Reopened(who, "");
    clerk.screen->Guard([&] { clerk.screen->CmdClear.Click(); });
    clerk.model.Start(company_, kModes[who]);
    return clerk;
  }
  Clerk& Reopened(Who who, const std::string& loan) {
    Clerk& clerk = clerks_[who];
    if (clerk.screen != nullptr) clerk.screen->Close();
    office_.session.CallerTag = kModes[who];
    office_.session.HandOverLoanID = loan;
    office_.session.PickerExtra.clear();
    desk_.messages.clear();
    clerk.screen = std::make_unique<PaymentFrm>(office_.session, desk_);
    clerk.screen->Guard([&] { clerk.screen->Load(); });
    clerk.model.Start(company_, kModes[who]);
    return clerk;
  }

  template <typename AnyBox>
  void Put(AnyBox& box, const std::string& text) {
    box.Enter();
    Place(box, text);
    box.screen().Guard([&] { box.Leave(); });
    ++counted.typed;
  }
  void Place(TextBox& box, const std::string& text) {
    if (!box.Type(text)) Fault(box.name() + " does not take " + text);
  }
  void Place(ComboBox& box, const std::string& text) {
    if (!box.Pick(text)) Fault(box.name() + " does not take " + text);
  }
  std::string LastTold() { return desk_.messages.empty() ? "" : desk_.messages.back(); }
  void Told(const std::string& where, const std::string& should_be) {
    const std::string is = LastTold();
    if (should_be.empty() ? !is.empty() : !is.starts_with(should_be)) {
      Fault(fmt::format("{} told \"{}\", should be \"{}\"", where, is, should_be));
    }
  }

  bool BringLoan(Clerk& clerk, Loan& loan) {
    Note(fmt::format("{} on {} (balance {})", clerk.model.mode, loan.id,
                     counter::Shown(loan.ledger.balance)));
    desk_.messages.clear();
    Put(clerk.screen->LoanID, OneIn(5) ? " " + loan.id + " " : loan.id);
    Told("loan", clerk.model.OpenLoan(loan));
    CompareBoxes(clerk);
    return held_ && clerk.model.enabled;
  }
  bool BringPayment(Clerk& clerk, Loan& loan, const std::string& pay_id) {
    Note(fmt::format("{} of {}", clerk.model.mode, pay_id));
    clerk.screen->Guard([&] { clerk.screen->CmdClear.Click(); });
    clerk.model.Start(company_, clerk.model.mode);
    desk_.messages.clear();
    Put(clerk.screen->PayID, pay_id);
    Told("payment", "");
    clerk.model.OpenPayment(loan, *loan.Find(pay_id));
    CompareBoxes(clerk);
    return held_;
  }

  // The amounts on the screen are those of the model.
  void CompareBoxes(Clerk& clerk) {
    const counter::Counter& on = clerk.model;
    for (const Box box : {counter::kPay, counter::kInstal, counter::kExtra, counter::kInterest}) {
      const std::string& text = (*clerk.screen.*kBoxesOfScreen[box]).text();
      if (!on.box[box].number) continue;
      const auto shown = Money::TryText(text.empty() ? "0" : text);
      if (!shown || shown->ten_thousandths() != on.box[box].units) {
        Fault(fmt::format("{} shows {} for {}", (*clerk.screen.*kBoxesOfScreen[box]).name(), text,
                          on.box[box].units));
      }
    }
    Same("NewLoanBal", clerk.screen->NewLoanBal.text(), counter::Shown(on.new_balance));
    Same("OldLoanBal", clerk.screen->OldLoanBal.text(), counter::Shown(on.old_balance));
  }

  void TypeAmount(Clerk& clerk, Box which, const Typed& typed) {
    TextBox& box = *clerk.screen.*kBoxesOfScreen[which];
    if (box.locked() != clerk.model.Locked(which)) Fault(box.name() + " is locked or is not");
    if (box.locked() || !held_) return;
    Note(fmt::format("{} \"{}\"", box.name(), typed.text));
    desk_.messages.clear();
    Put(box, typed.text);
    const std::string told = clerk.model.Leave(which, typed);
    Told(box.name(), told);
    if (!told.empty()) Same(box.name(), box.text(), clerk.model.box[which].text);
    CompareBoxes(clerk);
  }
  void TypeCheque(Clerk& clerk, const std::string& no) {
    if (!held_) return;
    Note("ChqNo " + no);
    desk_.messages.clear();
    Put(clerk.screen->ChqNo, no);
    Told("ChqNo", clerk.model.LeaveCheque(no));
    CompareBoxes(clerk);
  }
  void TypeReceipt(Clerk& clerk, const std::string& number) {
    Note("ReceiptNo " + number);
    Put(clerk.screen->ReceiptNo, number);
    clerk.model.receipt = number;
  }
  void TypeDate(Clerk& clerk, const std::string& text, const std::optional<Day>& day) {
    if (!held_) return;
    desk_.answers.holiday = !OneIn(3);
    Note(fmt::format("PayDate {}{}", text, desk_.answers.holiday ? "" : ", not on a holiday"));
    desk_.messages.clear();
    Put(clerk.screen->PayDate, text);
    clerk.model.TypeDate(text, day);
    std::string told = clerk.model.LeaveDate(desk_.answers);
    Told("PayDate", told == "?" ? "" : told);
    Same("PayDate", clerk.screen->PayDate.text(), text);
  }

  // --- what is typed

  Typed As(Sen sen) {
    const std::string plain = Text(sen);
    switch (Between(0, 9)) {
      case 0:
        return {" " + plain + " ", sen * 100};
      case 1:
      case 2:
        return {counter::Shown(sen), sen * 100};
      case 3:
        if (sen >= 0 && sen % 100 == 0) return {plain + ".005", sen * 100 + 50};
        return {plain, sen * 100};
      default:
        return {plain, sen * 100};
    }
  }
  Typed Wrong() {
    static const Typed kWrong[] = {
        {"abc", 0, false}, {"1O0", 0, false}, {"1e3", 0, false}, {"12..5", 0, false},
        {"1';", 0, false}, {"-5", -50000},    {"-0.01", -100},   {"", 0}};
    return kWrong[Between(0, 7)];
  }
  Typed DrawTyped(const counter::Counter& on, Box which) {
    if (OneIn(14)) {
      const Typed wrong = Wrong();
      // A count has room for four signs.
      if (wrong.text.size() <= 4) return wrong;
    }
    const Sen balance = std::max<Sen>(on.old_balance, 1);
    switch (which) {
      case counter::kTotal:
      case counter::kPay:
        switch (Between(0, 11)) {
          case 0:
            return As(balance);
          case 1:
            return As(balance + 1);
          case 2:
            return As(0);
          case 3:
            return As(std::max<Sen>(on.Limit(), 0) + Between(0, 1));
          case 4:
            return As(std::max<Sen>(on.outstanding, 0) + Between(0, 1));
          case 5:
          case 6:
          case 7:
            return As(std::max<Sen>(on.entry.payable, 0));
          default:
            return As(Between(1, balance / (OneIn(2) ? 1 : 4)));
        }
      case counter::kInstal:
      case counter::kExtra:
        return As(Between(0, on.box[counter::kPay].sen() + (OneIn(6) ? 1 : 0)));
      case counter::kInterest:
        return As(Between(OneIn(5) ? -500 : 0, OneIn(3) ? on.outstanding : 5000));
      case counter::kRefund:
        return As(Between(0, OneIn(3) ? 60000 : on.loan->deposit));
      case counter::kMultiple:
      case counter::kTopTerm: {
        const auto count = Between(0, which == counter::kTopTerm ? 3 : 6);
        return {std::to_string(count), count * 10000};
      }
      default:
        return As(Between(0, 20000));
    }
  }

  void TypeDay(Clerk& clerk) {
    const Loan& loan = *clerk.model.loan;
    switch (Between(0, 14)) {
      case 0:
        TypeDate(clerk, OneIn(2) ? "31-02-2024" : "tomorrow", std::nullopt);
        return;
      case 1:
        TypeDate(clerk, "", std::nullopt);
        return;
      case 2: {
        const Day before{loan.lent.year, loan.lent.month, 19};
        TypeDate(clerk, Dashed(before), before);
        return;
      }
      case 3:
        TypeDate(clerk, Dashed(loan.lent), loan.lent);
        return;
      case 4:
        if (model::NotBefore(company_.holiday, loan.lent)) {
          TypeDate(clerk, Dashed(company_.holiday), company_.holiday);
          return;
        }
        [[fallthrough]];
      default: {
        const Day day = AnyDay(loan);
        TypeDate(clerk, Dashed(day), day);
      }
    }
  }

  void TypeSome(Clerk& clerk) {
    const counter::Counter& on = clerk.model;
    const auto type = [&](Box box) { TypeAmount(clerk, box, DrawTyped(clerk.model, box)); };
    if (on.date.empty() ? !OneIn(20) : OneIn(4)) TypeDay(clerk);
    if (OneIn(8)) TypeCheque(clerk, fmt::format("CHQ{}", Between(1, 3)));
    switch (Between(0, 5)) {
      case 0:
      case 1:
        type(on.is_new() ? counter::kTotal : counter::kPay);
        break;
      case 2:
        type(counter::kPay);
        break;
      case 3:
        type(counter::kPay);
        type(OneIn(2) ? counter::kInstal : counter::kExtra);
        break;
      case 4:
        type(OneIn(2) ? counter::kInterest : counter::kRefund);
        break;
      default:
        for (int i = 0; i < 4; ++i) type(static_cast<Box>(Between(0, counter::kBoxes - 1)));
    }
    for (int box = counter::kInterest; box < counter::kBoxes; ++box) {
      if (OneIn(14)) type(static_cast<Box>(box));
    }
    if (OneIn(8)) TypeReceipt(clerk, AnyReceipt());
    if (OneIn(12)) TypeDay(clerk);
  }

  // One that is in use, the next one, a book's own.
  std::string AnyReceipt() {
    std::vector<std::string> choice = {"BOOK 1", "BOOK 2", "R0002", ""};
    for (const Loan& loan : company_.loans) {
      for (const Paid& paid : loan.paid) choice.push_back(paid.receipt);
    }
    for (const auto& [key, at] : company_.counters) {
      choice.push_back(fmt::format("{}{:04}", key.substr(key.find('#') + 1), at + 1));
    }
    return choice[static_cast<std::size_t>(Between(0, static_cast<int>(choice.size()) - 1))];
  }

  Answers DrawAnswers() {
    return {.holiday = !OneIn(4), .confirm = !OneIn(10), .manager = OneIn(2)};
  }

  bool TypeAndPress(Clerk& clerk, int times) {
    TypeSome(clerk);
    for (int i = 0; held_ && i < times; ++i) {
      if (Press(clerk, DrawAnswers())) return true;
      if (OneIn(5)) {
        TypeSome(clerk);
      } else {
        Mend(clerk, clerk.model.refused_for);
      }
    }
    return false;
  }

  // What the last press was refused for is typed anew.
  void Mend(Clerk& clerk, const std::string& told) {
    if (told.find("ate") != std::string::npos && told.find("day") == std::string::npos) {
      const Day day = AnyDay(*clerk.model.loan);
      TypeDate(clerk, Dashed(day), day);
    }
    if (told.find("discount") != std::string::npos) {
      TypeAmount(clerk, counter::kDiscount, {"0", 0});
    }
    if (told.find("eposit") != std::string::npos) TypeAmount(clerk, counter::kRefund, {"", 0});
    if (told.starts_with("Cannot exceed")) TypeAmount(clerk, counter::kMultiple, {"0", 0});
    if (told.find("Topup more") != std::string::npos) {
      TypeAmount(clerk, counter::kTopTerm, {"1", 10000});
    }
    if (told.starts_with("Same Receipt")) TypeReceipt(clerk, "");
    for (int i = 0; i < counter::kBoxes; ++i) {
      if (told == counter::kRules[static_cast<std::size_t>(i)].invalid) {
        TypeAmount(clerk, static_cast<Box>(i), {"0", 0});
      }
    }
    if (told.find("ayment") != std::string::npos) {
      const Sen due = std::max<Sen>(clerk.model.entry.payable, 1);
      TypeAmount(clerk, counter::kPay, As(std::clamp<Sen>(clerk.model.old_balance, 0, due)));
    }
  }

  // --- the press of the button and what stands behind it

  std::vector<std::string> BoxTexts(const PaymentFrm& screen) {
    std::vector<std::string> texts;
    for (const Control* control : screen.controls()) {
      if (control->type() == ControlType::text_box || control->type() == ControlType::combo_box) {
        texts.push_back(control->name() + "=" + control->Text());
      }
    }
    return texts;
  }

  bool Press(Clerk& clerk, const Answers& answers) {
    if (!held_) return false;
    ++counted.pressed;
    const std::string before = bare_.Everything();
    const std::vector<std::string> typed = BoxTexts(*clerk.screen);
    const Verdict verdict = clerk.model.Press(answers);
    std::string failed;
    if (verdict.kind == Verdict::Kind::stored) {
      failed = clerk.model.is_delete() ? clerk.model.Delete() : clerk.model.Store();
    }
    const bool stored = verdict.kind == Verdict::Kind::stored && failed.empty();
    Note(fmt::format("press: {}", stored                                    ? "stored"
                                  : verdict.kind == Verdict::Kind::declined ? "declined"
                                  : verdict.kind == Verdict::Kind::dead     ? "dead"
                                  : failed.empty()                          ? verdict.told
                                                                            : failed));
    desk_.messages.clear();
    desk_.asked.clear();
    desk_.answers = answers;
    clerk.screen->Guard([&] { clerk.screen->SaveCmd.Click(); });
    if (main().InTransaction()) Fault("a transaction is left open");
    if (!stored) {
      ++counted.refused;
      const std::string told = verdict.told.empty() ? failed : verdict.told;
      clerk.model.refused_for = told;
      Told("the press", told == "?" ? "" : told);
      ++counted.told[WithoutFigures(told)];
      // A failed delete has the loan rebuilt all the same.
      if (!clerk.model.is_delete() || !clerk.model.loan->CutAnew()) {
        Same("a refused press changed rows", bare_.Everything(), before);
      }
      KeepsTyped(clerk, typed);
      return false;
    }
    Told("the press", clerk.model.is_new() ? "Payment ID " : "Loan ID ");
    ++(clerk.model.is_new()      ? counted.stored
       : clerk.model.is_delete() ? counted.deleted
                                 : counted.changed);
    Compare("behind the press");
    return held_;
  }

  static std::string WithoutFigures(std::string text) {
    std::erase_if(text, [](char c) { return c == '.' || c == ',' || (c >= '0' && c <= '9'); });
    return text;
  }

  // A blank box may have taken its default; what was typed stands where it stood.
  void KeepsTyped(Clerk& clerk, const std::vector<std::string>& typed) {
    const std::vector<std::string> after = BoxTexts(*clerk.screen);
    for (std::size_t i = 0; i < typed.size(); ++i) {
      if (!typed[i].ends_with("=")) Same("a refused press changed a box", after[i], typed[i]);
    }
    Same("LampiranStatus", clerk.screen->LampiranStatus.text(), clerk.model.group);
  }

  static bool AllPaid(const Loan& loan) {
    return std::none_of(loan.ledger.rows.begin(), loan.ledger.rows.end(),
                        [](const model::Row& row) { return row.open(); });
  }

  // What a payment taken back must leave as it was.
  std::string StateOf(const Loan& loan, bool with_payments) {
    std::string all;
    for (const char* sql :
         {"SELECT SchID,PayableAmt,CapitalAmt,InterestAmt,Payment,CapitalPayment,InterestPayment,"
          "LoanBal,PayExtra FROM SchMast WHERE LoanID=? ORDER BY SchID",
          "SELECT LoanBal,TotPay,TotInt,TotCharge,TotCollectorAmt,TotDiscAmt,PayExtra,NextDueDate,"
          "LastPaymentDate,LastPaymentNo,TotLoanInt,LoanGroupID FROM LoanMast WHERE LoanID=?",
          "SELECT ChargeID,ChargeAmt,OrgAmt FROM ChargeMast WHERE LoanID=? ORDER BY ChargeID",
          "SELECT ChqNo,PayID FROM ChqMast WHERE LoanID=? ORDER BY SeqNo",
          "SELECT PayID,PayAmt,InstalAmt,PayExtra,IntAmt,OldLoanBal,NewLoanBal,IntPay,CapPay,"
          "ReceiptNo,PayDate FROM PaymentMast WHERE LoanID=? ORDER BY PayID"}) {
      all += bare_.Rows(sql, loan.id, false);
    }
    if (with_payments) all += bare_.Rows("SELECT TotLoan,TotLoanBal FROM CustMast", {}, false);
    return all;
  }

  void Compare(const char* when) {
    for (const Loan& loan : company_.loans) CompareLoan(when, loan);
    CompareCompany(when);
    for (const char* broken : kBroken) {
      Same(fmt::format("{}: {}", when, broken), bare_.Rows(broken), "");
    }
    if (held_) RebuildAgain(when);
  }

  void RebuildAgain(const char* when) {
    const std::string before = bare_.Everything();
    {
      Transaction transaction(main());
      for (const Loan& loan : company_.loans) {
        if (!loan.CutAnew()) RebuildLoan(main(), loan.id);
      }
      transaction.Commit();
    }
    RebuildCustomer(main(), "C");
    Same(fmt::format("{}: a second rebuild", when), bare_.Everything(), before);
  }

  void CompareLoan(const std::string& when, const Loan& loan) {
    const model::StoredLoan& ledger = loan.ledger;
    std::string rows;
    Sen interest = 0;
    std::vector<model::Row> by_number = ledger.rows;
    std::sort(by_number.begin(), by_number.end(),
              [](const model::Row& a, const model::Row& b) { return a.id < b.id; });
    for (const model::Row& row : by_number) {
      const auto found = loan.reversed.find(row.id);
      const counter::Reversed off =
          found == loan.reversed.end() ? counter::Reversed{} : found->second;
      interest += row.interest;
      rows += fmt::format("{}|{}|{}|{}|{}|{}|{}|{}|{}|{}|{}|{}|{}|{}|\n", row.id, Iso(row.due),
                          row.payable, row.capital, row.interest, row.paid, row.capital_paid,
                          row.interest_paid, row.balance, row.extra, off.interest, off.capital,
                          off.collector, off.late);
    }
    Same(when + " rows of " + loan.id,
         bare_.Rows("SELECT SchID,DueDate,PayableAmt \"$1\",CapitalAmt \"$2\",InterestAmt \"$3\","
                    "Payment \"$4\",CapitalPayment \"$5\",InterestPayment \"$6\",LoanBal \"$7\","
                    "PayExtra \"$8\",IntChargeAmt \"$9\",DragInt \"$a\",DragIntPaid \"$b\",IntAmt "
                    "\"$c\" FROM SchMast WHERE LoanID=? ORDER BY SchID",
                    loan.id),
         rows);
    const Paid* last = loan.paid.empty() ? nullptr : &loan.paid.back();
    Same(when + " " + loan.id,
         bare_.Rows("SELECT LoanBal \"$1\",TotPay \"$2\",TotInt \"$3\",TotCharge \"$4\","
                    "TotCollectorAmt \"$5\",TotDiscAmt \"$6\",PayExtra \"$7\",TopUpAmt \"$8\","
                    "TotLoanInt \"$9\",NextDueDate,LastPaymentDate,LastPaymentNo,LoanGroupID,"
                    "LoanStatus FROM LoanMast WHERE LoanID=?",
                    loan.id),
         fmt::format("{}|{}|{}|{}|{}|{}|{}|{}|{}|{}|{}|{}|{}|ACTIVE|\n", ledger.balance,
                     ledger.total_paid, loan.credited, ledger.total_charge, loan.charged,
                     ledger.total_discount, ledger.total_extra, loan.topup, interest,
                     Iso(ledger.next_due), last ? Iso(last->date) : "", last ? last->id : "",
                     loan.group));
    ComparePayments(when, loan);
    CompareCharges(when, loan);
  }

  void ComparePayments(const std::string& when, const Loan& loan) {
    std::string all;
    for (const Paid& p : loan.paid) {
      all += fmt::format("{}|{}|{}|{}|{}|{}|{}|{}|{}|{}|{}|{}|{}|{}|", p.id, p.row, Iso(p.date),
                         p.pay, p.instalment, p.extra, p.late, p.charge, p.discount, p.collector,
                         p.calculated, p.top, p.top_term, p.topup);
      all += fmt::format("{}|{}|{}|{}|{}|{}|{}|{}|{}|{}|{}|", p.receipt, p.cheque, p.bank,
                         p.collect, p.group, p.payable, p.interest_open, p.capital_open,
                         Iso(p.last_due), Iso(p.next_due), p.commission);
      all += fmt::format("{}|{}|{}|{}|{}|0|ACTIVE|C|HQ|\n", p.old_balance, p.new_balance,
                         p.interest_part, p.capital_part, p.changed ? "0" : "");
    }
    Same(when + " payments of " + loan.id,
         bare_.Rows("SELECT PayID,SchID,PayDate,PayAmt \"$1\",InstalAmt \"$2\",PayExtra \"$3\","
                    "IntAmt \"$4\",ChargeAmt \"$5\",DiscAmt \"$6\",CollectorAmt \"$7\",Memo5 "
                    "\"$8\",TopAmt \"$9\",TopTerm,TopUpAmt \"$a\",ReceiptNo,ChqNo,Bank,"
                    "CollectInfoID,LampiranStatus,PayableAmt \"$b\",IntChargeAmt \"$c\",DragInt "
                    "\"$d\",LastDueDate,NextDueDate,SalesmanComm \"$e\",OldLoanBal \"$f\","
                    "NewLoanBal \"$g\",IntPay \"$h\",CapPay \"$i\",DeletePayID,settlement,"
                    "PaymentStatus,CustID,CompCode FROM PaymentMast WHERE LoanID=? ORDER BY PayID",
                    loan.id),
         all);
  }

  void CompareCharges(const std::string& when, const Loan& loan) {
    std::vector<counter::Charge> sorted = loan.charges;
    std::sort(sorted.begin(), sorted.end(),
              [](const auto& a, const auto& b) { return a.id < b.id; });
    std::string all;
    for (const counter::Charge& one : sorted) {
      all += fmt::format("{}|{}|{}|{}|{}|\n", one.id, Iso(one.date), one.amount, one.original,
                         one.type);
    }
    Same(when + " charges of " + loan.id,
         bare_.Rows("SELECT ChargeID,TrxDate,ChargeAmt \"$1\",OrgAmt \"$2\",PType FROM ChargeMast "
                    "WHERE LoanID=? ORDER BY ChargeID",
                    loan.id),
         all);
    all.clear();
    for (const counter::Cheque& one : loan.cheques) {
      all +=
          fmt::format("{}|{}|{}|\n", one.no, one.pay_id, one.pay_id.empty() ? "" : Iso(one.date));
    }
    Same(when + " cheques of " + loan.id,
         bare_.Rows("SELECT ChqNo,PayID,PayDate FROM ChqMast WHERE LoanID=? ORDER BY SeqNo",
                    loan.id),
         all);
  }

  void CompareCompany(const std::string& when) {
    Sen lent = 0, balance = 0, topup = 0;
    std::map<std::string, std::string> numbers;
    for (const Loan& loan : company_.loans) {
      lent += loan.ledger.amount;
      balance += loan.ledger.balance;
      topup += loan.topup;
      if (loan.counted) numbers[loan.id] = fmt::format("{:03}", loan.next);
    }
    for (const auto& [key, at] : company_.counters) numbers[key] = std::to_string(at);
    Same(when + " customer",
         bare_.Rows("SELECT TotLoan \"$1\",TotLoanBal \"$2\",TotTopUpAmt \"$3\" FROM CustMast"),
         fmt::format("{}|{}|{}|\n", lent, balance, topup));
    std::string all;
    for (const auto& [key, at] : numbers) all += key + "|" + at + "|\n";
    Same(when + " counters", bare_.Rows("SELECT CustID,LoanNo FROM NumberMast ORDER BY CustID"),
         all);
  }

  static constexpr const char* kModes[] = {"New Payment", "New Payment", "Edit Payment",
                                           "Delete Payment"};

  Office office_{Office::State::patched};
  HistoryDesk desk_;
  BareFile bare_;
  Random random_{0};
  counter::Company company_;
  std::array<Clerk, 4> clerks_;
  std::vector<std::string> steps_;
  std::uint64_t number_ = 0;
  int serial_ = 0;
  bool held_ = true;
};

TEST(CounterPropertyTest, RandomHistoriesAtTheScreenKeepEveryRow) {
  const std::uint64_t one = FromEnvironment("KAUNTER_HISTORY", 0);
  const std::uint64_t count = FromEnvironment("KAUNTER_HISTORIES", 1'200);
  if (one != 0) {
    CounterHistory().Run(one, true);
    return;
  }
  const std::size_t offices = std::clamp<std::size_t>(std::thread::hardware_concurrency(), 1, 8);
  std::vector<std::unique_ptr<CounterHistory>> all;
  for (std::size_t i = 0; i < offices; ++i) all.push_back(std::make_unique<CounterHistory>());
  std::vector<std::thread> threads;
  for (std::size_t i = 0; i < offices; ++i) {
    threads.emplace_back([&, i] {
      int broken = 0;
      for (std::uint64_t number = i + 1; number <= count && broken < 2; number += offices) {
        if (!all[i]->Run(number, false)) ++broken;
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  Counted sum;
  for (const auto& office : all) {
    sum.histories += office->counted.histories;
    sum.typed += office->counted.typed;
    sum.pressed += office->counted.pressed;
    sum.refused += office->counted.refused;
    sum.stored += office->counted.stored;
    sum.changed += office->counted.changed;
    sum.deleted += office->counted.deleted;
    sum.taken_back += office->counted.taken_back;
    for (const auto& [told, times] : office->counted.told) sum.told[told] += times;
  }
  std::cout << fmt::format(
      "{} histories, {} boxes typed, {} presses: {} stored, {} changed, {} deleted, {} not\n",
      sum.histories, sum.typed, sum.pressed, sum.stored, sum.changed, sum.deleted, sum.refused);
  for (const auto& [told, times] : sum.told) std::cout << times << " " << told << "\n";
  std::cout << sum.taken_back << " taken back\n";
}

}  // namespace
}  // namespace kaunter
