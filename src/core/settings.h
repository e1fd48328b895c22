// The settings of the office. Systemast holds one text a key, shared by all PCs; a missing row and
// an empty value are the same. Most are read once, at connect, into a field that carries the name
// of its key; a change in the table takes effect at the next start. Some are read where they are
// used, through ReadSetting.
#pragma once

#include <string>
#include <string_view>

namespace kaunter {

class Connection;

struct Settings {
  bool TransLogs = false;         // audit records are written
  std::string ftpAcc;             // host of the file transfer
  bool CapLock = false;           // names are put in upper case
  std::string IntRate;            // no screen uses it
  std::string DefaultLateCharge;  // default rate of the late charge box
  std::string LinkAcc;            // "1" when the accounting link is on for this PC and session
  std::string SMSServer;          // not empty: the SMS database is open
  std::string LowInt = "0";
  std::string LinkDB;     // connection string of the linked database
  std::string CompCode2;  // prefix of customer numbers instead of the company code
  bool PaymentReader = false;
  std::string SchInt;
  bool PayToDate = false;
  int RoundedInstallment = 2;  // decimals of a computed instalment; 2 when not 0 to 4
  std::string OldReceipt;      // not empty picks the report file; also tested by CountsAsTrue
  bool NoSignature = false;    // no screen uses it
  bool AMLA = false;
  bool LockAMLAReasonCode = false;
  bool DataExportFlag = false;
  std::string LampiranA;
  bool ORYYMMDD = false;      // receipt numbers with a date prefix
  bool CheckHoliday = false;  // payment dates are tested against HolidayMast
  bool AutoChangePayDate = false;
  bool PaymentReaderOldMethod = false;
  bool IDEAL = false;
  bool CalcAmt = false;
  bool EInv = false;
  std::string AutoProcessingFeeRate;
  std::string AutoStampingFeeRate;
  std::string AutoLoanPurpose;
};

// The value of a key, "" when it has none. Throws SqlError.
std::string ReadSetting(Connection& main, std::string_view key);

// A text as a truth value: "True" or a number other than 0.
bool CountsAsTrue(std::string_view value);

// The value of RoundedInstallment: a number as it stands, rounded to a whole one; 2 for anything
// else.
int RoundedInstallmentOf(std::string_view value);

}  // namespace kaunter
