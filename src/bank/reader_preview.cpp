#include "bank/reader_preview.h"

#include <fmt/format.h>

#include <stdexcept>
#include <utility>
#include <variant>

#include "bank/reader_doubts.h"
#include "bank/reader_sources.h"
#include "bank/take_payment.h"
#include "bank/taken_lines.h"
#include "collections/hold_loan.h"
#include "collections/ledger_loan.h"
#include "collections/payment_preview.h"
#include "collections/plain_payment.h"
#include "compliance/aml.h"
#include "core/amounts.h"
#include "core/values.h"

namespace kaunter {
namespace {

using Outlook = ReaderOutlook::Kind;

void Put(const Caption& before, Caption* text) {
  text->english = before.english + text->english;
  text->chinese = before.chinese + text->chinese;
}

// The rebuild of a loan ends with its customer: a program that ended there left his sums behind.
bool CustomerIsBehind(Connection& main, const std::string& cust_id) {
  const Recordset sums = main.Query(
      "SELECT TotLoanBal,(SELECT SUM(LoanBal) FROM LoanMast WHERE LoanMast.CustID="
      "CustMast.CustID) as Stored FROM CustMast WHERE CustID=" +
      QuoteStr(cust_id));
  return !sums.Eof() && Sen(sums, "TotLoanBal") != Sen(sums, "Stored");
}

// Behind all payments that are stored.
LedgerPayment AsStored(const Payment& payment, std::size_t number) {
  LedgerPayment stored;
  stored.payment.PayID = fmt::format("~{:05}", number);
  stored.payment.PayDate = DateTime::FromDisplay(payment.PayDate);
  stored.payment.InstalAmt = payment.InstalAmt;
  stored.PayAmt = payment.PayAmt;
  return stored;
}

}  // namespace

ReaderOutlook ReaderPreview::Look(ReaderRow& row) {
  ReaderOutlook outlook = LookAtLine(row);
  row.done = outlook.kind == Outlook::done;
  return outlook;
}

ReaderOutlook ReaderPreview::LookAtLine(ReaderRow& row) {
  if (row.fault) return {Outlook::refused, *row.fault};
  if (auto known = LookAtRecord(row)) return *std::move(known);
  if (row.CustID.empty()) {
    return {Outlook::refused,
            {fmt::format("\"{}\" is not a loan", row.LoanID),
             fmt::format("“{}”不是贷款编号", row.LoanID)}};
  }
  return LookAtPayment(row);
}

// What was done before.
std::optional<ReaderOutlook> ReaderPreview::LookAtRecord(ReaderRow& row) {
  const auto taken = ReadTakenLine(session_.Main(), row.RefNo);
  if (!taken) return std::nullopt;
  // A row of the schedule may be paid in several parts.
  if (row.source != ReaderSource::file && taken->Done()) return std::nullopt;
  if (taken->Pays() && taken->IsOther(row.fingerprint)) {
    return ReaderOutlook{Outlook::refused, OtherLineOfThisName(*taken)};
  }
  row.Remarks = taken->Remarks;
  row.PayID = taken->PayID;
  row.ErrMsg = taken->ErrMsg;
  if (!taken->Done()) return std::nullopt;
  if (!taken->payment_there) {
    row.Remarks.clear();
    return std::nullopt;
  }
  // A clerk may have put the loan right.
  if (!SameText(taken->LoanID, row.LoanID)) FindReaderLoan(session_, taken->LoanID, row);
  ReaderOutlook done{Outlook::done, {"Already done", "已处理"}};
  Connection& main = session_.Main();
  done.behind =
      !row.CustID.empty() && (LoanIsBehind(main, row.LoanID) || CustomerIsBehind(main, row.CustID));
  if (done.behind) {
    done.text = {"Already done, its balance is behind: Process rebuilds it",
                 "已处理，但结余尚未更新：按“处理”即重算"};
  }
  return done;
}

ReaderOutlook ReaderPreview::LookAtPayment(ReaderRow& row) {
  if (row.amount <= Money()) {
    return {Outlook::refused, {"There is no amount", "没有金额"}};
  }
  const ReaderDay day = PayDayOf(session_, desk_, row);
  if (day.refusal) return {Outlook::refused, *day.refusal};
  const std::string shown_day = ShowDate(day.day);
  std::vector<Payment>& planned = planned_[row.LoanID];
  Money before;
  for (const Payment& payment : planned) before += payment.PayAmt;
  auto made = PlainPayment(session_.Main(), row.LoanID, shown_day, row.amount);
  if (!planned.empty() && std::holds_alternative<Payment>(made)) {
    auto all = PlainPayment(session_.Main(), row.LoanID, shown_day, row.amount + before);
    if (std::holds_alternative<Caption>(all)) made = std::move(all);
  }
  if (const auto* reason = std::get_if<Caption>(&made)) return {Outlook::refused, *reason};
  const Payment& payment = std::get<Payment>(made);
  ReaderOutlook outlook{Outlook::pays, {}};
  bool settles = false;
  outlook.text = InWordsOf(payment, &settles);
  if (settles) Put({"Settles the loan. ", "结清贷款。"}, &outlook.text);
  if (row.due && *row.due != day.day) {
    Put({fmt::format("Due {}. ", ShowDate(*row.due)), fmt::format("到期 {}。", ShowDate(*row.due))},
        &outlook.text);
  }
  if (day.day != *row.date) {
    Put({fmt::format("On {}. ", shown_day), fmt::format("改为 {}。", shown_day)}, &outlook.text);
  }
  AddNotes(row, payment.CompCode, &outlook.text);
  if (const auto doubt = Doubt(row, day.day)) {
    outlook.kind = Outlook::doubted;
    Put({doubt->english + ". ", doubt->chinese + "。"}, &outlook.text);
    return outlook;
  }
  planned.push_back(payment);
  lines_.emplace(row.fingerprint, row.RefNo);
  return outlook;
}

// Why the money may have been taken already.
std::optional<Caption> ReaderPreview::Doubt(ReaderRow& row, const DateTime& day) {
  const std::string deleted = std::exchange(row.PayID, {});
  const std::vector<ReaderDoubt> doubts = DoubtsOf(session_.Main(), row, day);
  row.told_doubts.clear();
  for (const ReaderDoubt& doubt : doubts) row.told_doubts.push_back(doubt.about);
  if (!deleted.empty()) {
    return Caption{fmt::format("Its payment {} was deleted: tick it to take it again", deleted),
                   fmt::format("其付款 {} 已删除：如要再收请勾选", deleted)};
  }
  // A bank tells two payments apart, by their time or number, wherever it can.
  if (const auto same = lines_.find(row.fingerprint);
      !row.fingerprint.empty() && same != lines_.end()) {
    return Caption{fmt::format("The same line stands in this file as {}", same->second),
                   fmt::format("此文件中 {} 是同一行", same->second)};
  }
  if (doubts.empty()) return std::nullopt;
  return doubts.front().text;
}

Caption ReaderPreview::InWordsOf(const Payment& payment, bool* settles) {
  auto loan = ReadLedgerLoan(session_.Main(), payment.LoanID);
  if (!loan) return {};
  const std::vector<Payment>& planned = planned_[payment.LoanID];
  for (std::size_t i = 0; i < planned.size(); ++i) {
    loan->payments.push_back(AsStored(planned[i], i));
  }
  try {
    const PaymentPreview preview = PreviewPayment(*loan, payment);
    *settles = preview.last_balance <= Money();
    Caption text = PartsInWords(payment, preview);
    const bool part = !preview.rows.empty() && preview.rows.back().open > Money();
    if (part) {
      Put({"Part. ", "部分。"}, &text);
    } else if (!*settles) {
      Put({"In full. ", "足额。"}, &text);
    }
    return text;
  } catch (const std::runtime_error&) {
    // No rebuild comes through either; the check of the ledger tells why.
    return {"Its rows cannot be replayed: verify the ledger", "无法重算还款表：请核对账目"};
  }
}

void ReaderPreview::AddNotes(const ReaderRow& row, const std::string& comp_code, Caption* text) {
  if (!LoadAMLSettings(session_, comp_code)) return;
  if (JudgePayment(session_.aml, row.amount, "").act == ThresholdDecision::Act::nothing) return;
  text->english += " Above the AML/CFT threshold: enter its source of funds on the payment.";
  text->chinese += " 超过反洗钱限额：请在付款资料输入资金来源。";
}

RowTone ToneOf(ReaderOutlook::Kind kind) {
  switch (kind) {
    case Outlook::pays:
      return RowTone::plain;
    case Outlook::doubted:
      return RowTone::warn;
    case Outlook::refused:
      return RowTone::bad;
    case Outlook::done:
      break;
  }
  return RowTone::quiet;
}

}  // namespace kaunter
