// Session: what the process knows about itself and the person before it. One a process; it lives as
// long as the process does and is cleared field by field at sign-out.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "core/password_tries.h"
#include "core/settings.h"
#include "platform/clock.h"
#include "platform/money.h"
#include "platform/sql/connection.h"
#include "platform/sql/data_source.h"
#include "screen/caption.h"

namespace kaunter {

class LocalSettings;
class MainMenu;

// The money-laundering rules of one company, under the names of their columns in CompMast. Off as
// long as none has been loaded.
struct AMLSettings {
  bool AMLA = false;         // the company takes part; without it nothing else counts
  bool AMLACheckIC = false;  // identity numbers are looked up in the watch list
  Money AMLALoan;            // cash threshold of a loan
  Money AMLAPayment;         // cash threshold of a payment
  bool AMLAWarning = false;  // above the threshold: a warning; off: a reason is demanded
  bool DisableSTR = false;   // a suspicious transaction is not reported from a loan or payment
};

// A settlement quotation on its way to the payment screen, as its boxes show it. Empty when nothing
// is handed over.
struct SettlementQuote {
  std::string DragLoan;  // "0" personal loan, "1" flexi loan; "" when there is no quotation
  std::string SettledDate;
  std::string PayAmt;    // SettledAmt less OPayment
  std::string NPayment;  // towards the schedule
  std::string EPayment;  // personal: the discount; flexi: the extra capital
  std::string OPayment;  // late interest
  std::string ChargeAmt;
};

// A period as date boxes show it; an empty end is open.
struct DayRange {
  std::string from;
  std::string to;
  bool empty() const { return from.empty() && to.empty(); }
};

// CurrentLevel of the built-in logon ADMIN.
constexpr int kBuiltInLevel = 5;

class Session {
 public:
  // --- the program and this PC
  std::string AppPath;         // folder of the program, without a slash at its end
  std::string ConnAccount;     // local setting: account kind, "MainUser" or "2User" to "5User"
  std::string ConnDataSource;  // local setting: data source name
  std::string ConnDatabase;    // local setting: database and user name; empty takes ConnDataSource
  std::string ConnLinkAcc;     // local setting: "1" lets this PC use the accounting link
  std::string BackupFolder;    // local setting: where backups go; may be empty
  std::string PhotoPath;       // AppPath + "/Photo"
  std::string ProgramTitle = "Kaunter";
  std::string Camera;             // local setting: a part of its name, or a picture in its place
  std::string MyKadPath;          // setting: folder of the reader for the older way of reading
  std::string MyKadReaderFolder;  // local setting, or where MyKadReader.exe was found at connect;
                                  // "" when nowhere

  // --- the person
  std::string CurrentUserID;  // "" when nobody is signed in
  int CurrentLevel = 0;  // 0 nobody, 1 Clerk, 2 Supervisor, 3 Manager, 4 Admin, 5 built-in ADMIN
  std::string CurrentCompCode;
  std::string AllowedCompanies;  // "A","B" with the double quotes; "" means only the home company
  std::string CurrentCompDesc;
  std::string CompanyName;
  bool ChineseFlag = false;
  bool FollowUpFlag = false;
  bool AllowEdit = false;
  bool AllowDelete = false;
  bool AllowDisc = false;
  bool AllowCreditLimit = false;
  bool Special = false;
  bool OverrideOK = false;  // answer of the last ManagerOverride
  PasswordTries password_tries;

  // --- hand-over between screens
  std::string MsgText;
  std::string MsgTitle;
  std::string ReportFile;
  std::string CallerTag;
  std::string PickerName;
  std::string PickerExtra;
  std::string HandOverCustID;
  std::string HandOverLoanID;
  std::string HandOverSelection;  // what a list screen shows: a SELECT, or a line for each choice
  SettlementQuote HandOverQuote;
  DayRange HandOverDays;         // those whose rows a figure of the main window opens
  bool PaymentsChanged = false;  // a payment was saved or deleted: an open loan screen reloads

  // --- settings read at connect
  Settings settings;

  // --- of the company in work; LoadAMLSettings (compliance/aml.h) fills it
  AMLSettings aml;

  // --- named connections; null until opened
  std::unique_ptr<Connection> MainConn;
  std::unique_ptr<Connection> LogsConn;
  std::unique_ptr<Connection> AED;
  std::unique_ptr<Connection> smsconn;
  // Connection strings of those that are opened when needed.
  std::string MyKad64String;
  std::string LinkDBString;

  DataSources data_sources;
  bool MayCreateTables = false;     // the local settings let this PC fill an empty database
  Clock clock;                      // the PC's clock; the embedded server reads the same one
  bool RealTimeInLog = false;       // the clock was set from outside: LogSetClock (core/log.h)
  bool SetClockNeedsRight = false;  // it was, and only an administrator may work so, or practice
  Connection::TraceSink trace;
  // The menu of the main window with the rights of whoever is signed in; null while there is none.
  const MainMenu* menu = nullptr;
  // Puts a text on the status line of the main window; empty while there is none.
  std::function<void(std::string_view text)> status;

  // The main connection; a fault when it is not open.
  Connection& Main() const;
  // The text of the language in force.
  const std::string& In(const Caption& pair) const { return pair.In(ChineseFlag); }
};

}  // namespace kaunter
