// A line of the payment reader: one payment to come, wherever it was read.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/date_time.h"
#include "platform/money.h"
#include "screen/caption.h"

namespace kaunter {

enum class ReaderSource {
  file,     // a line of a bank's file
  planned,  // a row of PaymentList
  due,      // an open row of a loan's schedule
};

struct ReaderRow {
  ReaderSource source = ReaderSource::file;
  std::string RefNo;  // its name in PaymentReader
  std::optional<DateTime> date;
  std::string LoanID;
  std::string CustID;
  std::string CustName;
  std::string CompCode;
  Money amount;
  int row = 0;                  // planned and due: of the schedule
  std::optional<DateTime> due;  // of that row

  // Of a file.
  std::string file;
  std::string fingerprint;
  std::string raw;
  std::optional<Caption> fault;  // why it cannot be a payment
  // What was told of it before it was ticked: reader_doubts.h.
  std::vector<std::string> told_doubts;

  // What became of it.
  std::string Remarks;
  std::string PayID;
  std::string ErrMsg;
  bool done = false;       // it pays: nothing takes it again
  bool processed = false;  // since it was read
};

}  // namespace kaunter
