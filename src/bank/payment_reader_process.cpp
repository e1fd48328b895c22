// Processing, and what stays behind it: the paper and the file of failed lines.
#include <fmt/format.h>

#include <filesystem>

#include "bank/payment_reader_frm.h"
#include "bank/reader_paper.h"
#include "bank/take_payment.h"
#include "core/log.h"
#include "core/values.h"
#include "loans/rebuild_and_tell.h"
#include "platform/whole_file.h"
#include "screen/hourglass.h"
#include "screen/stop_bar.h"

namespace kaunter {

void PaymentReaderfrm::Process() {
  if (Ticked().empty() && behind_.empty()) {
    Refuse(DG, {"Please tick the payments to process", "请先勾选要处理的付款"});
    return;
  }
  if (!Confirm({"Confirm to process payment ?", "确定处理付款？"})) return;
  if (!ConfirmDoubted()) return;
  ProcessTicked();
}

// What looks as if it had been taken is taken only by a second word.
bool PaymentReaderfrm::ConfirmDoubted() {
  std::vector<std::size_t> doubted;
  for (const std::size_t i : Ticked()) {
    if (outlooks_[i].kind == ReaderOutlook::Kind::doubted) doubted.push_back(i);
  }
  if (doubted.empty()) return true;
  const std::size_t count = doubted.size();
  if (ConfirmLoss(
          {fmt::format(
               "{} of the ticked lines look as if they had been taken already. Take them too ?",
               count),
           fmt::format("勾选的行中有 {} 行可能已收取过。也要收取吗？", count)})) {
    return true;
  }
  for (const std::size_t i : doubted) DG.SetTicked(static_cast<int>(i), false);
  ShowTotal();
  return !Ticked().empty() || !behind_.empty();
}

void PaymentReaderfrm::ProcessTicked() {
  const std::vector<std::size_t> ticked = Ticked();
  std::size_t done = 0;
  {
    const Hourglass busy(desk());
    StopBar progress(*this);
    RebuildBehind();
    for (const std::size_t i : ticked) {
      if (progress.Stopped()) break;
      ReaderRow& row = rows_[i];
      progress.GoOn(done, ticked.size(), row.RefNo);
      if (TakePayment(session(), desk(), row) == TakeOutcome::paid) {
        session().PaymentsChanged = true;
        Rebuild(row);
        WriteLog(session(),
                 LogLine(session(), fmt::format("{} - {} - Collection ID {} Saved",
                                                session().MsgTitle, row.RefNo, row.PayID)));
      }
      ++done;
      if (row.done) DG.SetTicked(static_cast<int>(i), false);
      ShowRow(i);
    }
  }
  ShowTotal();
  if (done < ticked.size()) {
    Tell(MessageKind::information,
         {fmt::format("Stopped after {} of {} payments", done, ticked.size()),
          fmt::format("已停止，处理了 {} / {} 笔付款", done, ticked.size())});
    return;
  }
  Tell(MessageKind::information, {"Process completed", "处理完毕"});
}

// A program that ended between the payment and the rebuild left its loan behind.
void PaymentReaderfrm::RebuildBehind() {
  for (std::size_t i = 0; i < Count() && !behind_.empty(); ++i) {
    if (!outlooks_[i].behind) continue;
    outlooks_[i].behind = false;
    outlooks_[i].text = {"Already done", "已处理"};
    if (behind_.erase(rows_[i].LoanID) > 0) Rebuild(rows_[i]);
    ShowRow(i);
  }
}

void PaymentReaderfrm::Rebuild(const ReaderRow& row) {
  RebuildAndTell(session(), desk(), row.LoanID, row.CustID);
}

// Each line, whatever became of it: the paper and the bank's file have one total.
void PaymentReaderfrm::Print() {
  std::vector<ReaderPaperLine> lines;
  for (std::size_t i = 0; i < Count(); ++i) {
    const ReaderRow& row = rows_[i];
    ReaderPaperLine line{&row, ReaderFate::left_out, session().In(outlooks_[i].text)};
    if (row.done) {
      line = {&row, row.processed ? ReaderFate::taken : ReaderFate::done_before, {}};
    } else if (row.processed) {
      line = {&row, ReaderFate::failed, row.ErrMsg};
    } else if (outlooks_[i].kind == ReaderOutlook::Kind::refused) {
      line.fate = ReaderFate::failed;
    }
    lines.push_back(std::move(line));
  }
  PrintReaderPaper(session(), desk(), source_, lines);
}

// --- the lines that failed

// Of a file, and neither taken nor left out by the person's will.
bool PaymentReaderfrm::CannotStand(const ReaderRow& row, std::size_t index) const {
  if (row.source != ReaderSource::file || row.done) return false;
  return row.processed || outlooks_[index].kind == ReaderOutlook::Kind::refused;
}

void PaymentReaderfrm::WriteFailedLines() {
  const std::string folder =
      desk().PickFolder(session().In({"Choose a Folder", "请选择文件夹"}), folder_);
  if (folder.empty()) return;
  const std::string path =
      (std::filesystem::path(folder) / FailedLinesName(path_, session().clock.Now())).string();
  int count = 0;
  try {
    const Hourglass busy(desk());
    WriteWholeFile(path, [&](std::ostream& out) {
      out << head_;
      for (std::size_t i = 0; i < Count(); ++i) {
        if (!CannotStand(rows_[i], i)) continue;
        out << rows_[i].raw;
        ++count;
      }
    });
  } catch (const std::exception& failure) {
    LogRollback(session(), "Payment Reader", failure);
    Refuse({failure.what(), failure.what()});
    return;
  }
  WriteLog(session(),
           LogLine(session(),
                   fmt::format("Payment Reader - {} failed lines written to {}", count, path)));
  Tell(MessageKind::information,
       {fmt::format("{} lines at {}", count, path), fmt::format("{} 行已写入 {}", count, path)});
}

}  // namespace kaunter
