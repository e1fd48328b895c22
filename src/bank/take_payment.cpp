#include "bank/take_payment.h"

#include <fmt/format.h>

#include <algorithm>
#include <exception>
#include <variant>

#include "bank/reader_doubts.h"
#include "bank/taken_lines.h"
#include "collections/hold_loan.h"
#include "collections/pay_day.h"
#include "collections/plain_payment.h"
#include "core/amounts.h"
#include "core/log.h"
#include "core/telling.h"
#include "core/values.h"
#include "platform/sql/retry.h"
#include "platform/sql/transaction.h"
#include "screen/caption_error.h"

namespace kaunter {
namespace {

const Caption kLoanNotFound{"Loan record not found", "找不到贷款资料"};

// The line cannot be taken, and nothing went wrong.
struct Refused : CaptionError {
  using CaptionError::CaptionError;
};

// Another desktop, or an earlier run, has taken the line.
struct AlreadyTaken {
  std::string PayID;
};

class Take {
 public:
  Take(Session& session, Desk& desk, const ReaderRow& row)
      : session_(session), main_(session.Main()), desk_(desk), row_(row) {}

  // The payment's id. Throws Refused, AlreadyTaken, SqlError.
  std::string Run() {
    CheckLine();
    std::string id;
    WriteAgainUntilDone([&] { id = Store(); });
    return id;
  }

 private:
  void CheckLine() {
    if (row_.fault) throw Refused(*row_.fault);
    if (row_.amount <= Money()) {
      throw Refused({"Payment amount required on loan ID " + row_.LoanID,
                     "请输入贷款 " + row_.LoanID + " 的付款额"});
    }
    const ReaderDay day = PayDayOf(session_, desk_, row_);
    if (day.refusal) throw Refused(*day.refusal);
    day_ = day.day;
    // None was found that the person may use, whatever the reference says.
    if (row_.CustID.empty()) throw Refused(kLoanNotFound);
  }

  std::string Store() {
    Transaction transaction(main_);
    HoldLine(main_, row_.RefNo);
    HoldLoan(main_, row_.LoanID);
    CheckSource();
    CheckDoubts();
    Payment payment = Made();
    CreatePayment(session_, payment);
    WriteTakenLine(main_,
                   {.RefNo = row_.RefNo,
                    .Remarks = std::string(kPaymentDone),
                    .PayID = payment.PayID,
                    .LineHash = row_.fingerprint},
                   session_.CurrentUserID);
    if (row_.source == ReaderSource::planned) MarkPlanned(payment.PayID);
    transaction.Commit();
    return payment.PayID;
  }

  // What the line pays may have been paid since it was listed.
  void CheckSource() {
    switch (row_.source) {
      case ReaderSource::file: {
        const auto taken = ReadTakenLine(main_, row_.RefNo);
        if (taken && taken->Pays()) {
          if (taken->IsOther(row_.fingerprint)) throw Refused(OtherLineOfThisName(*taken));
          throw AlreadyTaken{taken->PayID};
        }
        return;
      }
      case ReaderSource::planned:
        if (const std::string id = ScalarQuery(
                main_, fmt::format("SELECT p.PayID FROM PaymentList as l INNER JOIN PaymentMast as "
                                   "p on p.PayID=l.PayID WHERE l.LoanID={} AND l.SeqNo={}",
                                   QuoteStr(row_.LoanID), row_.row));
            !id.empty()) {
          throw AlreadyTaken{id};
        }
        return;
      case ReaderSource::due: {
        const Recordset open = main_.Query(
            fmt::format("SELECT PayableAmt-Payment as [Open] FROM SchMast WHERE LoanID={} AND "
                        "SchID={}",
                        QuoteStr(row_.LoanID), row_.row));
        if (open.Eof() || Sen(open, "Open") < row_.amount) {
          throw Refused({fmt::format("Instalment {} was paid meanwhile", row_.row),
                         fmt::format("第 {} 期已在其间付款", row_.row)});
        }
        return;
      }
    }
  }

  // What has come up since the person was told.
  void CheckDoubts() {
    for (const ReaderDoubt& doubt : DoubtsOf(main_, row_, day_)) {
      if (std::ranges::find(row_.told_doubts, doubt.about) != row_.told_doubts.end()) continue;
      throw Refused(
          {"Since it was listed: " + doubt.text.english + ". Read the list again to decide on it",
           "列出之后：" + doubt.text.chinese + "。请重新读取列表再决定"});
    }
  }

  Payment Made() {
    const std::string loan_id = QuoteStr(row_.LoanID);
    const Recordset due = main_.Query(
        "Select TOP 2 SchID,DueDate,PayableAmt-Payment as [PayableAmt] from SchMast where LoanID=" +
        loan_id + " AND PayableAmt-Payment > 0 ORDER BY SchID");
    const Recordset loan = main_.Query(
        "Select CustID,LoanAmt,LoanBal,CompCode,PayOutAmt from LoanMast where LoanID=" + loan_id);
    if (loan.Eof()) throw Refused(kLoanNotFound);
    if (Sen(loan, "PayOutAmt").IsZero()) {
      throw Refused({"Loan not fully drawdown", "贷款尚未全部放款"});
    }
    auto made = PlainPayment(main_, row_.LoanID, ShowDate(day_), row_.amount);
    if (const auto* reason = std::get_if<Caption>(&made)) throw Refused(*reason);
    Payment payment = std::get<Payment>(std::move(made));
    TakeDueRows(due, payment);
    return payment;
  }

  // The first and the next open row, by their numbers.
  static void TakeDueRows(Recordset due, Payment& payment) {
    if (due.Eof()) return;
    payment.SchID = due.Field("SchID").ToText();
    payment.PayableAmt = Sen(due, "PayableAmt");
    payment.LastDueDate = payment.NextDueDate = ShowDate(due.Field("DueDate"));
    due.MoveNext();
    if (!due.Eof()) payment.NextDueDate = ShowDate(due.Field("DueDate"));
  }

  void MarkPlanned(const std::string& pay_id) {
    main_.Execute(fmt::format(
        "UPDATE PaymentList SET PayID={},DateCreated={},UserID={} WHERE LoanID={} AND SeqNo={}",
        QuoteStr(pay_id), SqlDateTime(ServerTime(main_)), QuoteStr(session_.CurrentUserID),
        QuoteStr(row_.LoanID), row_.row));
  }

  Session& session_;
  Connection& main_;
  Desk& desk_;
  const ReaderRow& row_;
  DateTime day_;
};

// What was refused is kept for the next reading; a line that pays meanwhile keeps its own record.
void NoteFailure(Session& session, const ReaderRow& row) {
  try {
    Connection& main = session.Main();
    Transaction transaction(main);
    HoldLine(main, row.RefNo);
    const auto taken = ReadTakenLine(main, row.RefNo);
    if (taken && taken->Done()) return;
    WriteTakenLine(main,
                   {.RefNo = row.RefNo,
                    .Remarks = row.ErrMsg,
                    .ErrMsg = row.ErrMsg,
                    .LineHash = row.fingerprint},
                   session.CurrentUserID);
    transaction.Commit();
  } catch (const std::exception& failure) {
    LogRollback(session, session.MsgTitle + " - " + row.RefNo, failure);
  }
}

void Fail(Session& session, ReaderRow& row, const std::exception& failure, const Caption& told) {
  LogRollback(session, fmt::format("{} - {} - Loan ID {}", session.MsgTitle, row.RefNo, row.LoanID),
              failure);
  row.Remarks = row.ErrMsg = session.In(told);
  NoteFailure(session, row);
}

}  // namespace

ReaderDay PayDayOf(Session& session, Desk& desk, const ReaderRow& row) {
  if (!row.date) return {{}, Caption{"Date is required", "请输入日期"}};
  constexpr int kFarthest = 60;
  DateTime day = *row.date;
  for (int moved = 0; IsHolidayBlocked(session, desk, ShowDate(day), false, false); ++moved) {
    if (!session.settings.AutoChangePayDate || moved == kFarthest) {
      const std::string date = ShowDate(*row.date);
      return {day,
              Caption{fmt::format("Payment date {} is Sunday or Public Holiday on loan ID {}", date,
                                  row.LoanID),
                      fmt::format("贷款 {} 的付款日期 {} 是星期日或公共假期", row.LoanID, date)}};
    }
    day = day.AddDays(1);
  }
  return {day, std::nullopt};
}

TakeOutcome TakePayment(Session& session, Desk& desk, ReaderRow& row) {
  row.processed = true;
  try {
    row.PayID = Take(session, desk, row).Run();
    row.done = true;
    row.Remarks = kPaymentDone;
    row.ErrMsg.clear();
    return TakeOutcome::paid;
  } catch (const AlreadyTaken& taken) {
    row.done = true;
    row.PayID = taken.PayID;
    row.Remarks = kPaymentDone;
    return TakeOutcome::already;
  } catch (const Refused& refused) {
    Fail(session, row, refused, refused.text);
  } catch (const std::exception& failure) {
    Fail(session, row, failure,
         Failed({fmt::format("An error occurs during saving payment - {}", failure.what()),
                 fmt::format("储存付款时发生错误 - {}", failure.what())},
                failure));
  }
  return TakeOutcome::failed;
}

}  // namespace kaunter
