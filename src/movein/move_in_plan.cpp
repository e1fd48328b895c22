#include "movein/move_in_plan.h"

#include <fmt/format.h>

#include <map>
#include <utility>

#include "compliance/aml.h"
#include "core/amounts.h"
#include "core/identity.h"
#include "core/values.h"
#include "customers/customer_checks.h"
#include "customers/customer_store.h"
#include "loans/calc_payment.h"
#include "loans/loan_checks.h"
#include "loans/step_date.h"

namespace kaunter {
namespace {

constexpr std::size_t kMostTroubles = 100000;

// A loan that stands in no boxes.
class LoanOfTexts : public LoanTexts {
 public:
  explicit LoanOfTexts(Texts& texts) : texts_(texts) {}
  std::string Get(std::string_view column) const override { return TextOf(texts_, column); }
  void Set(std::string_view column, std::string_view text) override {
    texts_[std::string(column)] = text;
  }

 private:
  Texts& texts_;
};

void FillBlank(Texts* texts, const std::string& column, const std::string& text) {
  if (!text.empty()) texts->try_emplace(column, text);
}

LoanTerms TermsOf(const Texts& texts) {
  const auto text = [&texts](std::string_view column) { return TextOf(texts, column); };
  LoanTerms terms = TermsByColumn(text);
  terms.DragLoan =
      SameText(text("DragLoan"), "Flexi Loan") ? LoanScheme::kFlexi : LoanScheme::kPersonal;
  terms.NextDueDate = DateTime::FromDisplay(text("NextDueDate")).value_or(DateTime());
  return terms;
}

// Names in capitals, where the office wants them so; remarks and addresses of mail stay.
void CapNames(const Session& session, MoveKind kind, Texts* texts) {
  for (const TargetField& field : TargetFields(kind)) {
    const std::string_view column = field.column;
    if (!field.stored || field.kind != TargetKind::text || *field.list != '\0') continue;
    if (column == "email" || column == "Remark" || column == "Memo1") continue;
    if (const auto found = texts->find(column); found != texts->end()) {
      found->second = ApplyCapLock(session, found->second);
    }
  }
}

// Letters and seven digits, or digits alone: a number of the time before.
bool IsOldIc(std::string_view text) {
  if (!text.empty() && text.front() >= 'A' && text.front() <= 'Z') text.remove_prefix(1);
  return text.size() >= 6 && text.size() <= 8 &&
         text.find_first_not_of("0123456789") == std::string_view::npos;
}

}  // namespace

void MoveReport::Add(LineTrouble trouble) {
  if (troubles.size() < kMostTroubles) {
    troubles.push_back(std::move(trouble));
  } else {
    ++untold;
  }
}

MovePlanner::MovePlanner(Session& session, std::string company, Staging& staging,
                         MoveReport& report)
    : session_(session),
      main_(session.Main()),
      company_(std::move(company)),
      staging_(staging),
      report_(report),
      aml_(LoadAMLSettings(session, company_)),
      today_(ServerNow(main_, false)) {}

// --- what is said of a line

bool MovePlanner::Refuse(const StagedLine& line, std::string field, Caption reason) {
  const std::string value = TextOf(line.texts, field);
  report_.Add({line.kind, line.line, std::move(field), value, std::move(reason), true});
  return false;
}

bool MovePlanner::Refuse(const StagedLine& line, const Refusal& refusal) {
  return Refuse(line, FindTarget(line.kind, refusal.field) != nullptr ? refusal.field : "",
                refusal.text);
}

void MovePlanner::Note(const StagedLine& line, std::string field, Caption reason) {
  const std::string value = TextOf(line.texts, field);
  report_.Add({line.kind, line.line, std::move(field), value, std::move(reason), false});
}

void MovePlanner::NoteIf(const StagedLine& line, const char* field,
                         const std::optional<Caption>& odd) {
  if (odd) Note(line, field, *odd);
}

void MovePlanner::Keep(const std::vector<StagedLine>& lines) {
  for (const StagedLine& line : lines) {
    MoveCounts& counts = report_.Of(line.kind);
    ++(line.refused ? counts.refused : counts.waiting);
  }
}

void MovePlanner::RefuseAll(const std::vector<StagedLine>& lines, const Caption& reason) {
  for (const StagedLine& line : lines) {
    ++report_.Of(line.kind).refused;
    if (!line.refused) Refuse(line, "", reason);
  }
}

std::string MovePlanner::TakenAs(MoveKind kind, std::string_view key, bool* again) const {
  const Recordset row = main_.Query(fmt::format(
      "SELECT m.NewID,r.{0} FROM MoveInMast as m LEFT OUTER JOIN {1} as r ON r.{0}=m.NewID WHERE "
      "m.Kind={2} AND m.CompCode={3} AND m.OldCode={4}",
      KeyOf(kind), TableOf(kind), QuoteStr(MoveKindName(kind)), QuoteStr(company_), QuoteStr(key)));
  if (row.Eof()) return {};
  const bool gone = row.Field(1).IsNull() && kind != MoveKind::payments;
  if (again != nullptr) *again = gone;
  return gone ? std::string() : NullToEmpty(row.Field(0));
}

// --- customers

CustomerPlan MovePlanner::OfLine(const StagedLine& line) {
  CustomerPlan plan;
  plan.line = line.line;
  plan.key = line.key;
  MoveCounts& counts = report_.Of(MoveKind::customers);
  if (const auto earlier = staging_.Earlier(line)) {
    // A list of loans tells its customer on each line.
    ++counts.known;
    if (!line.refused && earlier->texts != line.texts) {
      Note(line, "TheirCode",
           {fmt::format("is the same customer as line {}, which tells something else and is taken",
                        earlier->line),
            fmt::format("与第 {} 行是同一顾客但内容不同，以该行为准", earlier->line)});
    }
    return plan;  // the loans come with the earlier line
  }
  if (!line.key.empty()) plan.cust_id = TakenAs(MoveKind::customers, line.key, &plan.again);
  bool comes = true;
  if (!plan.cust_id.empty()) {
    ++counts.known;
  } else {
    comes = CheckCustomer(line, &plan);
    ++(comes ? counts.good : counts.refused);
    if (!comes) plan.texts.clear();
  }
  if (line.key.empty()) return plan;
  const bool first_of_ic = !staging_.EarlierIc(line);
  TakeLoans(staging_.LoansOf(line.key, first_of_ic ? line.ic : ""), comes, &plan);
  return plan;
}

bool MovePlanner::CheckCustomer(const StagedLine& line, CustomerPlan* plan) {
  if (line.refused) return false;  // told where its cells were read
  if (line.key.empty()) {
    return Refuse(line, "TheirCode",
                  {"a customer needs a code or an identity number, by which the next run knows it",
                   "顾客须有编号或身份证，下次才能认出"});
  }
  Texts& texts = plan->texts = line.texts;
  CapNames(session_, line.kind, &texts);
  texts["CompCode"] = company_;
  FillBlank(&texts, "TrxDate", today_);
  FillBlank(&texts, "CustStatus", "ACTIVE");
  std::string ic = TextOf(texts, "CustNIC");
  if (!ic.empty() && !IsNewIc(ic) && IsOldIc(Upper(ic)) && TextOf(texts, "CustOIC").empty()) {
    Note(line, "CustNIC", {"is taken as an old IC", "当作旧身份证"});
    texts["CustOIC"] = Upper(ic);
    texts.erase("CustNIC");
    ic.clear();
  }
  if (const auto refusal = CheckNewIc("CustNIC", ic)) return Refuse(line, *refusal);
  if (const auto refusal = CheckNewIc("CustSpouseNIC", TextOf(texts, "CustSpouseNIC"))) {
    return Refuse(line, *refusal);
  }
  if (!ic.empty()) {
    FillBlank(&texts, "DOB", *BirthDateOfIc(ic));
    // The last digit of a man is odd.
    FillBlank(&texts, "CustGender", (ic.back() - '0') % 2 == 1 ? "MALE" : "FEMALE");
  }
  FillBlank(&texts, "AreaCode",
            ic.empty() && !TextOf(texts, "CompNo").empty() ? "COMPANY" : "PERSONAL");
  const RecordTexts text = [&texts](std::string_view column) { return TextOf(texts, column); };
  if (const auto refusal = CheckCustomerBoxes(text)) return Refuse(line, *refusal);
  if (const auto refusal = CheckCustomerNumbers(text)) return Refuse(line, *refusal);
  for (const BlankFigure& blank : kCustomerBlanks) {
    FillBlank(&texts, std::string(blank.column), std::string(blank.value));
  }
  if (const auto refusal = CheckIdealBoxes(session_.settings, text)) return Refuse(line, *refusal);
  NoteDuplicates(line, texts);
  return true;
}

void MovePlanner::NoteDuplicates(const StagedLine& line, const Texts& texts) {
  const std::pair<const char*, Caption> numbers[] = {{"CustNIC", {"New IC", "新身份证"}},
                                                     {"CustOIC", {"Old IC", "旧身份证"}},
                                                     {"CustOthIC", {"Other IC", "其他证件"}}};
  for (const auto& [column, name] : numbers) {
    const std::string value = TextOf(texts, column);
    if (value.empty()) continue;
    if (const auto holder = FindOtherHolder(main_, column, value, "", company_)) {
      Note(line, column,
           {fmt::format("{} {} is belong to {} customer {}", name.english, value, holder->company,
                        holder->name),
            fmt::format("{} {} 是属于 {} 顾客 {}", name.chinese, value, holder->company,
                        holder->name)});
    }
  }
  if (const auto earlier = staging_.EarlierIc(line)) {
    Note(line, "CustNIC",
         {fmt::format("the same IC stands on line {}", *earlier),
          fmt::format("第 {} 行有同一身份证", *earlier)});
  }
}

// A customer of the office: by an earlier run, by the own code, by an identity number.
std::string MovePlanner::CustomerNamed(const std::string& key, std::string* status) {
  const std::string quoted = QuoteStr(key);
  std::string where = "CustID=" + QuoteStr(TakenAs(MoveKind::customers, key));
  for (const char* column : {"", "CustID", "CustNIC", "CustOIC", "CustOthIC"}) {
    if (*column != '\0') where = fmt::format("{}={}", column, quoted);
    const Recordset row = main_.Query(
        fmt::format("SELECT CustID,CustStatus FROM CustMast WHERE {} AND CompCode={} ORDER BY "
                    "CustID",
                    where, QuoteStr(company_)));
    if (row.Eof()) continue;
    *status = NullToEmpty(row.Field(1));
    return NullToEmpty(row.Field(0));
  }
  return {};
}

CustomerPlan MovePlanner::OfStranger(MoveKind kind, const std::string& key) {
  CustomerPlan plan;
  if (kind == MoveKind::payments) {
    const std::vector<StagedLine> lines = staging_.PaymentsOf(key);
    std::string loan_id = TakenAs(MoveKind::loans, key);
    for (const char* column : {"LoanID", "OldLoanCode"}) {
      if (!loan_id.empty() || key.empty()) break;
      loan_id =
          ScalarQuery(main_, fmt::format("SELECT LoanID FROM LoanMast WHERE {}={} AND CompCode={}",
                                         column, QuoteStr(key), QuoteStr(company_)));
    }
    if (!loan_id.empty()) {
      TakeStoredLoan(loan_id, key, lines, &plan);
      return plan;
    }
    RefuseAll(lines, {fmt::format("there is no loan {} in the files, and none in the office", key),
                      fmt::format("文件和公司里都没有贷款 {}", key)});
    return plan;
  }
  const std::vector<StagedLine> lines = staging_.LoansOf(key, "");
  std::string status;
  if (!key.empty()) plan.cust_id = CustomerNamed(key, &status);
  if (plan.cust_id.empty()) {
    RefuseAll(lines,
              {fmt::format("there is no customer {} in the files, and none in the office", key),
               fmt::format("文件和公司里都没有顾客 {}", key)});
    for (const StagedLine& line : lines) {
      if (!staging_.Earlier(line)) Keep(staging_.PaymentsOf(line.key));
    }
    return plan;
  }
  if (!SameText(status, "ACTIVE") && !lines.empty()) {
    Note(lines.front(), "Customer",
         {fmt::format("{} customer, Please take note", status),
          fmt::format("{} 顾客，请注意", status)});
  }
  TakeLoans(lines, true, &plan);
  return plan;
}

// --- loans

void MovePlanner::TakeLoans(const std::vector<StagedLine>& lines, bool customer_comes,
                            CustomerPlan* plan) {
  for (const StagedLine& line : lines) TakeLoan(line, customer_comes, plan);
}

void MovePlanner::TakeLoan(const StagedLine& line, bool customer_comes, CustomerPlan* plan) {
  MoveCounts& counts = report_.Of(MoveKind::loans);
  LoanPlan loan;
  loan.line = line.line;
  loan.key = line.key;
  if (const auto earlier = staging_.Earlier(line)) {
    ++counts.refused;
    if (line.refused) return;
    Refuse(line, "OldLoanCode",
           {fmt::format("is the same loan as line {}", earlier->line),
            fmt::format("与第 {} 行是同一贷款", earlier->line)});
    return;
  }
  if (!line.key.empty()) loan.loan_id = TakenAs(MoveKind::loans, line.key, &loan.again);
  if (!loan.loan_id.empty()) {
    ++counts.known;
    TakeStoredLoan(loan.loan_id, line.key, staging_.PaymentsOf(line.key), plan);
    return;
  }
  if (!customer_comes) {
    ++(line.refused ? counts.refused : counts.waiting);
    if (!line.refused) {
      Refuse(line, "Customer",
             {fmt::format("its customer on line {} stays behind", plan->line),
              fmt::format("第 {} 行的顾客没有搬入", plan->line)});
    }
    Keep(staging_.PaymentsOf(line.key));
    return;
  }
  if (!CheckLoan(line, &loan)) {
    ++counts.refused;
    if (!line.key.empty()) Keep(staging_.PaymentsOf(line.key));
    return;
  }
  LoanBook book(loan.terms);
  const Money amount = AmountOf(loan.texts, "LoanAmt");
  if (!TakePayments(&loan, &book, TextOf(loan.texts, "TrxDate"), amount)) {
    ++counts.waiting;
    Refuse(line, "",
           {"a loan comes with all its payments or stays behind: one of them is refused",
            "贷款须连同全部付款搬入：其中一笔被拒"});
    return;
  }
  const std::string told = TextOf(loan.texts, "Balance");
  if (!told.empty() && Money::FromText(told) != book.balance()) {
    Note(line, "Balance",
         {fmt::format("by the loan's terms and its payments the balance is {}",
                      ShowMoney(book.balance())),
          fmt::format("按条款和付款计算的结余是 {}", ShowMoney(book.balance()))});
  }
  ++counts.good;
  counts.amount += amount;
  plan->loans.push_back(std::move(loan));
}

void MovePlanner::FillLoan(Texts* texts) const {
  FillBlank(texts, "LoanTypeID", "MONTH");
  FillBlank(texts, "LoanType", "Unsecured");
  FillBlank(texts, "LoanStatus", "ACTIVE");
  FillBlank(texts, "LoanPurpose", "FLAT");
  FillBlank(texts, "LoanTerm2", "0");
  FillBlank(texts, "LoanTerm3", TextOf(*texts, "LoanTerm"));
  FillBlank(texts, "LateChargePerDay", session_.settings.DefaultLateCharge);
  FillBlank(texts, "LateChargePerDay", TextOf(*texts, "InsRate"));
  const auto date = DateTime::FromDisplay(TextOf(*texts, "TrxDate"));
  const std::string code = TextOf(*texts, "LoanTypeID");
  if (date && IsRepaymentCode(code)) {
    FillBlank(texts, "NextDueDate", Format(StepDate(code, *date, false), "dd-mm-yyyy"));
  }
}

// The figures of the terms; an instalment that the file tells stands, and the last one takes what
// is left.
bool MovePlanner::FillFigures(const StagedLine& line, LoanPlan* plan) {
  Texts& texts = plan->texts;
  const std::string told = TextOf(texts, "InstallmentAmt");
  const auto outcome = CalcPayment(TermsOf(texts), session_.settings.RoundedInstallment);
  if (const auto* refusal = std::get_if<Refusal>(&outcome)) return Refuse(line, *refusal);
  const auto& figures = std::get<PaymentFigures>(outcome);
  texts["LoanBal"] = figures.LoanBal;
  texts["InstallmentAmt"] = figures.InstallmentAmt;
  texts["LastPayment"] = figures.LastPayment;
  texts["FirstPayment"] = figures.FirstPayment.value_or(figures.InstallmentAmt);
  if (told.empty() || !Money::TryText(told)) return true;
  const Money instalment = Money::FromText(told);
  texts["InstallmentAmt"] = texts["FirstPayment"] = instalment.ToText();
  if (TermsOf(texts).DragLoan == LoanScheme::kFlexi) return true;
  const std::int64_t others = TermOf(TermsOf(texts)) - 1;
  const Money last = Money::FromText(figures.LastPayment) +
                     others * (Money::FromText(figures.InstallmentAmt) - instalment);
  texts["LastPayment"] = last.ToText();
  if (last >= Money()) return true;
  return Refuse(line, "InstallmentAmt",
                {fmt::format("{} instalments of {} come to more than the loan with its interest",
                             others, ShowMoney(instalment)),
                 fmt::format("{} 期 {} 已多于贷款加利息", others, ShowMoney(instalment))});
}

bool MovePlanner::CheckLoan(const StagedLine& line, LoanPlan* plan) {
  if (line.refused) return false;
  if (line.key.empty()) {
    return Refuse(line, "OldLoanCode",
                  {"a loan needs their number, by which its payments and the next run know it",
                   "贷款须有原编号，付款和下次搬入才能认出"});
  }
  Texts& texts = plan->texts = line.texts;
  CapNames(session_, line.kind, &texts);
  texts["CompCode"] = company_;
  FillBlank(&texts, "CustID", TextOf(texts, "Customer"));
  FillLoan(&texts);
  const bool terms_told = !TextOf(texts, "LoanAmt").empty() && !TextOf(texts, "InsRate").empty() &&
                          !TextOf(texts, "LoanTerm").empty() && TextOf(texts, "LoanTerm") != "0";
  if (terms_told && !FillFigures(line, plan)) return false;
  LoanOfTexts loan(texts);
  if (const auto refusal = CheckLoanBoxes(loan)) return Refuse(line, *refusal);
  if (const auto refusal = CheckAlternateCode(main_, line.key, "", company_)) {
    return Refuse(line, *refusal);
  }
  plan->terms = TermsOf(texts);
  if (const auto refusal = CheckLoanFigures(loan, plan->terms)) return Refuse(line, *refusal);
  if (const auto refusal = CheckSchedule(plan->terms)) return Refuse(line, *refusal);
  NoteIf(line, "InsRate", OddLowestRate(session_.settings, loan));
  NoteIf(line, "InstallmentAmt", OddInstalmentTotal(loan));
  NoteIf(line, "InsRate", OddTotalRate(loan));
  return JudgeThreshold(line, &texts);
}

bool MovePlanner::JudgeThreshold(const StagedLine& line, Texts* texts) {
  if (!aml_) return true;
  const std::string& usual = session_.settings.AutoLoanPurpose;
  const ThresholdDecision decision =
      JudgeLoan(session_.aml, AmountOf(*texts, "LoanAmt"), TextOf(*texts, "AMLACode"), usual);
  using Act = ThresholdDecision::Act;
  if (decision.act == Act::take_default) FillBlank(texts, "AMLACode", usual);
  if (decision.act == Act::warn) Note(line, "LoanAmt", {decision.text});
  return decision.act != Act::demand_reason || Refuse(line, "AMLACode", {decision.text});
}

}  // namespace kaunter
