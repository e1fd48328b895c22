#include "core/connect_sequence.h"

#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <memory>
#include <string>

#include "core/data_access.h"
#include "core/einvoice_codes.h"
#include "core/log.h"
#include "core/new_office.h"
#include "core/office_figures.h"
#include "core/pickers.h"
#include "core/schema_patches.h"
#include "core/session.h"
#include "core/settings.h"
#include "core/shipped_codes.h"
#include "core/sms_database.h"
#include "core/sql_literals.h"
#include "core/startup.h"
#include "platform/sql/retry.h"
#include "platform/sql/transaction.h"
#include "screen/desk.h"

namespace kaunter {
namespace {

// Until a standby has taken over, or a server that was started again is ready, twice over.
constexpr std::chrono::seconds kStandbyTakesOver{90};

struct Start {
  Session& session;
  Desk& desk;
  std::string value;  // of the step's key

  Settings& settings() { return session.settings; }
  Connection& main() { return session.Main(); }
  void Patch(const Patch& patch, Existing existing = Existing::fails) {
    RunPatch(main(), patch, value, existing);
  }
};

struct Step {
  std::string_view name;  // announced; the key of its setting, except for a step of a table
  bool guard = false;     // the key guards a patch
  std::function<void(Start&)> run;
  bool has_setting = true;
};

// --- the kinds of steps

Step SwitchByOne(std::string_view key, bool Settings::*field) {
  return {key, false, [field](Start& start) { start.settings().*field = start.value == "1"; }};
}

Step SwitchByPresence(std::string_view key, bool Settings::*field) {
  return {key, false, [field](Start& start) { start.settings().*field = !start.value.empty(); }};
}

Step Text(std::string_view key, std::string Settings::*field) {
  return {key, false, [field](Start& start) { start.settings().*field = start.value; }};
}

Step Own(std::string_view key, void (*run)(Start&)) { return {key, false, run}; }

Step Table(std::string_view name, void (*run)(Start&)) { return {name, false, run, false}; }

// A patch that runs when its key is empty, with nothing else to do.
Step PatchOnce(const Patch& patch) {
  return {patch.key, true, [&patch](Start& start) {
            if (start.value.empty()) start.Patch(patch);
          }};
}

Step PatchWith(const Patch& patch, void (*run)(Start&)) { return {patch.key, true, run}; }

// --- connections

// A connection that does not open ends the start; the driver's words alone would not say where to
// look.
std::unique_ptr<Connection> OpenNamed(Session& session, std::string_view name,
                                      std::string_view setting, const std::string& text) {
  try {
    auto connection = OpenConnection(name, text, session.data_sources, session.clock);
    if (session.trace) connection->SetTrace(session.trace);
    return connection;
  } catch (const SqlError& error) {
    throw SqlError(error.number(), fmt::format("{} (connection {}, see the setting {})",
                                               error.what(), name, setting));
  }
}

void OpenAudit(Start& start) {
  Session& session = start.session;
  start.settings().TransLogs = start.value == "1";
  if (!start.settings().TransLogs) return;
  const std::string text = OfficeConnectionString(session, session.ConnDatabase + "-Logs");
  // The embedded engine has no administrator who would make the audit database.
  const auto file = EmbeddedFile(text, session.data_sources);
  if (file) MakeSqlite("LogsConn", *file, session.clock, CreateMissingAuditTables);
  session.LogsConn = OpenNamed(session, "LogsConn", "TransLogs", text);
  if (file || session.MayCreateTables) CreateMissingAuditTables(*session.LogsConn);
}

void ReadFtpHost(Start& start) {
  if (start.settings().ftpAcc.empty()) start.settings().ftpAcc = start.value;
}

void OpenAccountingLink(Start& start) {
  start.settings().LinkAcc = start.session.ConnLinkAcc == "1" ? start.value : "";
  if (start.settings().LinkAcc != "1") return;
  start.session.AED = OpenNamed(start.session, "AED", "LinkAcc",
                                "Provider=MSDASQL.1;Password=QDX518$;Persist Security "
                                "Info=True;User ID=aed;Data Source=AEDMTS");
}

// The office works on without it, and is told.
void OpenSms(Start& start) {
  start.settings().SMSServer = start.value;
  if (start.value.empty()) return;
  try {
    SmsDatabase(start.session);
  } catch (const SqlError& away) {
    LogRollback(start.session, "SMS database", away);
    start.desk.Message(
        MessageKind::warning, start.session.In({"SMS Database", "短讯资料库"}),
        start.session.In(
            {fmt::format("{}\nNo short message can be queued until it is there. Everything else "
                         "works.",
                         away.what()),
             fmt::format("{}\n在它恢复之前不能发送短讯，其他功能照常。", away.what())}));
  }
}

void SetLinkDB(Start& start) {
  start.settings().LinkDB = start.value;
  if (!start.value.empty()) start.session.LinkDBString = start.value;
}

// --- settings with a rule of their own

void ReadLowInt(Start& start) { start.settings().LowInt = start.value.empty() ? "0" : start.value; }

void ReadRoundedInstallment(Start& start) {
  start.settings().RoundedInstallment = RoundedInstallmentOf(start.value);
}

// --- patches that are more than their statements

// Each statement tells its own failure and the next one runs: the start goes on.
void DeleteOrphanedDrawdowns(Start& start) {
  if (!start.value.empty()) return;
  for (const std::string_view statement : patches::kDrawdown.statements) {
    ExecSql(start.session, start.desk, statement);
  }
}

// "1" is on, empty patches and is on, anything else is an office that has switched the feature off.
bool OnAfterPatch(Start& start, const Patch& patch) {
  if (start.value.empty()) start.Patch(patch);
  return start.value.empty() || start.value == "1";
}

void PatchAmla(Start& start) { start.settings().AMLA = OnAfterPatch(start, patches::kAmla); }

void PatchDataExport(Start& start) {
  start.settings().DataExportFlag = OnAfterPatch(start, patches::kDataExportFlag);
}

void PatchDisableSTR(Start& start) {
  if (start.value != "1") start.Patch(patches::kDisableSTR);
}

void PatchLampiranA(Start& start) {
  if (start.value.empty()) start.Patch(patches::kLampiranA);
  start.settings().LampiranA = start.value.empty() ? "1" : start.value;
}

void MakeHolidayMast(Start& start) {
  if (TableExists(start.main(), "HolidayMast")) return;
  try {
    start.main().Execute(patches::kHolidayMast);
  } catch (const SqlError&) {
    if (!TableExists(start.main(), "HolidayMast")) throw;  // else another desktop was quicker
  }
}

// The flag is read first, so it comes on at the start after the patch.
void PatchIdeal(Start& start) {
  start.settings().IDEAL = !start.value.empty();
  if (start.value.empty()) start.Patch(patches::kIdeal);
}

void PatchEInv(Start& start) {
  if (start.value != "1") {
    start.Patch(patches::kEInv);
    RefreshEInvoiceCodeTables(start.session, start.desk, {});
  } else {
    RefreshIfDue(start.session, start.desk);
  }
  start.settings().EInv = true;
}

void FillOrgDueDate(Start& start) {
  if (start.value.empty()) start.Patch(patches::kOrgDueDate2);
  WriteAgainUntilDone([&] { start.main().Execute(patches::kFillOrgDueDate); });
}

void PatchLHDNQR(Start& start) {
  if (!start.value.empty()) return;
  start.Patch(patches::kLHDNQR);
  RefreshEInvoiceCodeTables(start.session, start.desk, {});
}

void PatchUnlessThere(Start& start, const Patch& patch) {
  if (start.value.empty()) start.Patch(patch, Existing::stays);
}

void PatchChargeIndex(Start& start) { PatchUnlessThere(start, patches::kChargeIndex); }
void PatchCashBookOpening(Start& start) { PatchUnlessThere(start, patches::kCashBookOpening); }
void PatchEInvSending(Start& start) { PatchUnlessThere(start, patches::kEInvSending); }
void PatchBaseIndexes(Start& start) { PatchUnlessThere(start, patches::kBaseIndexes); }
void PatchYearIndexes(Start& start) { PatchUnlessThere(start, patches::kYearIndexes); }
// The columns came with the feature.
void PatchReasonIndexes(Start& start) {
  if (start.settings().AMLA) PatchUnlessThere(start, patches::kReasonIndexes);
}

// Of the engine, not of the office: one that moves to a server gets them there. Without them all is
// found as well, by reading everything.
void MakeEngineIndexes(Start& start) {
  const auto make = [&](const char* what, const auto& work) {
    try {
      work();
    } catch (const SqlError& failure) {
      LogRollback(start.session, what, failure);
    }
  };
  make("Search index", [&] { IndexInsideTexts(start.main(), IndexedTexts()); });
  make("Index of open instalments", [&] { IndexOpenRows(start.main(), kOpenInstalments); });
}

void PatchEInvCodes(Start& start) {
  if (!start.value.empty()) return;
  FillEmptyCodeTables(start.main());
  start.Patch(patches::kEInvCodes);
}

// --- the sequence. Some patches rely on earlier ones; the order never changes.

const std::vector<Step>& Steps() {
  static const std::vector<Step> steps = {
      Own("TransLogs", OpenAudit),
      Own("ftpAcc", ReadFtpHost),
      SwitchByPresence("CapLock", &Settings::CapLock),
      Text("IntRate", &Settings::IntRate),
      Text("DefaultLateCharge", &Settings::DefaultLateCharge),
      Own("LinkAcc", OpenAccountingLink),
      Own("SMSServer", OpenSms),
      Own("LowInt", ReadLowInt),
      Own("LinkDB", SetLinkDB),
      Text("CompCode2", &Settings::CompCode2),
      SwitchByOne("PaymentReader", &Settings::PaymentReader),
      Text("SchInt", &Settings::SchInt),
      PatchWith(patches::kDrawdown, DeleteOrphanedDrawdowns),
      SwitchByOne("PayToDate", &Settings::PayToDate),
      Own("RoundedInstallment", ReadRoundedInstallment),
      Text("OldReceipt", &Settings::OldReceipt),
      SwitchByOne("NoSignature", &Settings::NoSignature),
      PatchWith(patches::kAmla, PatchAmla),
      SwitchByOne("LockAMLAReasonCode", &Settings::LockAMLAReasonCode),
      PatchWith(patches::kDataExportFlag, PatchDataExport),
      PatchWith(patches::kDisableSTR, PatchDisableSTR),
      PatchWith(patches::kLampiranA, PatchLampiranA),
      SwitchByOne("ORYYMMDD", &Settings::ORYYMMDD),
      Table("HolidayMast", MakeHolidayMast),
      SwitchByOne("CheckHoliday", &Settings::CheckHoliday),
      SwitchByOne("AutoChangePayDate", &Settings::AutoChangePayDate),
      SwitchByOne("PaymentReaderOldMethod", &Settings::PaymentReaderOldMethod),
      PatchWith(patches::kIdeal, PatchIdeal),
      SwitchByOne("CalcAmt", &Settings::CalcAmt),
      PatchOnce(patches::kOrgDueDate),
      PatchWith(patches::kEInv, PatchEInv),
      Text("AutoProcessingFeeRate", &Settings::AutoProcessingFeeRate),
      Text("AutoStampingFeeRate", &Settings::AutoStampingFeeRate),
      Text("AutoLoanPurpose", &Settings::AutoLoanPurpose),
      PatchOnce(patches::kEInvCustName),
      PatchOnce(patches::kEInvCancel),
      PatchOnce(patches::kLocalClientSecret),
      PatchWith(patches::kOrgDueDate2, FillOrgDueDate),
      PatchWith(patches::kLHDNQR, PatchLHDNQR),
      PatchOnce(patches::kLastDownDate),
      PatchOnce(patches::kCreateSelfBillTable),
      PatchOnce(patches::kSuppCity),
      PatchOnce(patches::kLongDescription),
      PatchWith(patches::kChargeIndex, PatchChargeIndex),
      PatchOnce(patches::kCompanyPictures),
      PatchWith(patches::kCashBookOpening, PatchCashBookOpening),
      PatchWith(patches::kEInvSending, PatchEInvSending),
      PatchOnce(patches::kPaymentReaderLine),
      PatchWith(patches::kEInvCodes, PatchEInvCodes),
      PatchOnce(patches::kMoveIn),
      PatchOnce(patches::kWatchListCopy),
      PatchOnce(patches::kLongQR),
      Table("EngineIndexes", MakeEngineIndexes),
      PatchWith(patches::kBaseIndexes, PatchBaseIndexes),
      PatchOnce(patches::kSaveMark),
      PatchWith(patches::kYearIndexes, PatchYearIndexes),
      PatchWith(patches::kReasonIndexes, PatchReasonIndexes),
      PatchOnce(patches::kSharedFigures),
  };
  return steps;
}

// An empty value counts as missing, yet the insert of the key would meet the row and no start would
// ever pass.
void RemoveEmptyGuards(Connection& main) {
  std::string keys;
  for (const Step& step : Steps()) {
    if (!step.guard) continue;
    if (!keys.empty()) keys += ',';
    keys += QuoteStr(step.name);
  }
  WriteAgainUntilDone([&] {  // another desktop may be in the middle of a long patch
    main.Execute(fmt::format(
        "DELETE FROM Systemast WHERE Param IN ({}) AND ([Value]='' OR [Value] IS NULL)", keys));
  });
}

// The key of the newest patch, and behind it the version that brought it.
constexpr std::string_view kNewestPatch = "NewestPatch";

std::string NewestPatchOf(Connection& main) {
  const std::string named = ReadSetting(main, kNewestPatch);
  return named.substr(0, named.find(' '));
}

// Behind all patches: until they are all there, the office is one of the older program too.
void NameNewestPatch(Connection& main) {
  // A setting behind it is none: whoever does not know that one does no harm.
  const auto last =
      std::find_if(Steps().rbegin(), Steps().rend(), [](const Step& step) { return step.guard; });
  const std::string_view newest = last->name;
  if (NewestPatchOf(main) == newest) return;
  WriteAgainUntilDone([&] {
    Transaction transaction(main);
    main.Execute(fmt::format("DELETE FROM Systemast WHERE Param={}", QuoteStr(kNewestPatch)));
    main.Execute(fmt::format("INSERT INTO Systemast (Param,Value) VALUES ({},{})",
                             QuoteStr(kNewestPatch),
                             QuoteStr(fmt::format("{} {}", newest, RunningVersion()))));
    transaction.Commit();
  });
}

// The reader program installs itself into one of two places; the second wins when both are there.
// Where the settings of the PC name another folder, that one counts.
void FindMyKadReader(Session& session) {
  if (!session.MyKadReaderFolder.empty()) return;
  for (const char* folder :
       {"C:\\Program Files (x86)\\Secure Metric\\", "C:\\Program Files\\Secure Metric\\"}) {
    std::error_code unreadable;  // counts as not there
    if (std::filesystem::exists(std::string(folder) + "MyKadReader.exe", unreadable)) {
      session.MyKadReaderFolder = folder;
    }
  }
}

}  // namespace

void RunConnectSequence(Session& session, Desk& desk,
                        const std::function<void(std::string_view step)>& progress) {
  RemoveEmptyGuards(session.Main());
  for (const Step& step : Steps()) {
    progress(step.name);
    Start start{session, desk, ""};
    if (step.has_setting) start.value = ReadSetting(start.main(), step.name);
    step.run(start);
  }
  NameNewestPatch(session.Main());
  FindMyKadReader(session);
  session.Main().OutliveServer(kStandbyTakesOver);
}

std::optional<Caption> TooOldFor(Connection& main) {
  const std::string newest = NewestPatchOf(main);
  const auto known = [&](const Step& step) { return step.name == newest; };
  if (newest.empty() || std::any_of(Steps().begin(), Steps().end(), known)) return std::nullopt;
  const std::string brought = ReadSetting(main, kNewestPatch);
  const std::string version = brought.substr(std::min(brought.size(), newest.size() + 1));
  return Caption{
      fmt::format("This office was brought up to a newer version of Kaunter ({0}): its tables hold "
                  "\"{1}\", which this one ({2}) does not know. Nothing was changed.\nInstall the "
                  "newer version on this PC, then start again.",
                  version, newest, RunningVersion()),
      fmt::format("这个资料库已由较新版本的 Kaunter ({0}) 升级：其中的 “{1}” 是本版本 ({2}) "
                  "不认识的。没有改动任何资料。\n请在这台电脑安装较新版本，再重新启动。",
                  version, newest, RunningVersion())};
}

std::vector<std::string_view> ConnectSteps() {
  std::vector<std::string_view> names;
  for (const Step& step : Steps()) names.push_back(step.name);
  return names;
}

}  // namespace kaunter
