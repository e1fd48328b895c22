// The settings of the office, read once at connect from Systemast. A field carries the name of its
// key.
#pragma once

#include <string>

namespace kaunter {

struct Settings {
  bool TransLogs = false;
  std::string ftpAcc;
  bool CapLock = false;
  std::string IntRate;
  std::string DefaultLateCharge;
  std::string LinkAcc;  // "1" when the accounting link is on for this PC and session
  std::string SMSServer;
  std::string LowInt = "0";
  std::string LinkDB;
  std::string CompCode2;
  bool PaymentReader = false;
  std::string SchInt;
  bool PayToDate = false;
  int RoundedInstallment = 2;
  std::string OldReceipt;
  bool NoSignature = false;
  bool AMLA = false;
  bool LockAMLAReasonCode = false;
  bool DataExportFlag = false;
  std::string LampiranA;
  bool ORYYMMDD = false;
  bool CheckHoliday = false;
  bool AutoChangePayDate = false;
  bool PaymentReaderOldMethod = false;
  bool IDEAL = false;
  bool CalcAmt = false;
  bool EInv = false;
  std::string AutoProcessingFeeRate;
  std::string AutoStampingFeeRate;
  std::string AutoLoanPurpose;
};

}  // namespace kaunter
