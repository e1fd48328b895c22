// A large office on a PostgreSQL server with many desktops at once, beside a small one with a
// single desktop: how long 95 of 100 payment saves, picker pages, openings of a loan and home
// pages take at most. Each desktop is a process of its own and rests between two actions, as a
// busy clerk does.
//   bench_load_postgresql [LOANS [DESKTOPS [SECONDS]]]   of the large side
// Without a server (script/with-postgresql starts one) nothing is measured. An office that is there
// from an earlier run on the same server is measured as it is, whatever its number of loans.
#include <fmt/format.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <memory>
#include <random>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "app/catalogue.h"
#include "app/menu_table.h"
#include "bench/ratio.h"
#include "bench/strict_desk.h"
#include "collections/payment_frm.h"
#include "core/connect_sequence.h"
#include "core/log.h"
#include "core/main_frm.h"
#include "core/new_office.h"
#include "core/popup_frm.h"
#include "core/values.h"
#include "loans/new_loan_frm.h"
#include "platform/sql/data_source.h"

namespace kaunter {
namespace {

namespace fs = std::filesystem;

constexpr int kInstalments = 12;
constexpr int kPaid = 6;  // of an open loan, each with a payment
constexpr int kPart = 50'000;

struct Load {
  const char* database;
  int loans;
  int desktops;
  int seconds;
};

enum Action { kSave, kPage, kSearch, kOpen, kHome, kRefresh, kActions };
constexpr std::array<const char*, kActions> kNames = {
    "payment save", "picker page", "search", "loan opened", "home page", "home refreshed"};
using Durations = std::array<std::vector<double>, kActions>;  // milliseconds

// Says yes; what is told beside the save stands in the way of the measure and ends it.
class ClerksDesk : public StrictDesk {
 public:
  bool Ask(std::string_view, std::string_view) override { return true; }
  void Message(MessageKind kind, std::string_view title, std::string_view text) override {
    if (text.starts_with("Payment ID ") && text.ends_with(" Saved")) {
      ++saved;
      return;
    }
    if (text.starts_with("Payment already made on the month")) return;
    StrictDesk::Message(kind, title, text);
  }
  int saved = 0;
};

// The office's clock goes on with the machine's, from the same morning for all: what desktops share
// grows old by it.
const auto kMorning = std::chrono::steady_clock::now();
void SetClock(Session& session) {
  const auto gone = std::chrono::steady_clock::now() - kMorning;
  session.clock.Set(DateTime{2024, 1, 31, 9, 0, 0}.AddSeconds(
      std::chrono::duration_cast<std::chrono::seconds>(gone).count()));
}

std::string Server() { return std::getenv("KAUNTER_POSTGRESQL"); }

void Run(const std::string& command) {
  if (std::system(command.c_str()) != 0) throw std::runtime_error(command + " fails");
}

void OpenOffice(Session& session, Desk& desk, const Load& load, const fs::path& folder,
                bool create) {
  session.AppPath = folder.string();
  SetClock(session);
  session.CurrentUserID = "AMY";
  session.CurrentLevel = 4;
  session.CurrentCompCode = "HQ";
  session.AllowEdit = true;
  MakeLogFolder(session);
  session.MainConn = OpenOdbc("MainConn", Server() + ";Database=" + load.database, session.clock);
  if (create) CreateEmptyOffice(session.Main());
  RunConnectSequence(session, desk, [](std::string_view) {});
}

// The texts of a number N: customers have two loans each.
std::string Key(std::string_view number) {
  return fmt::format("'C'+right('000000'+convert(varchar(10),{}),7)", number);
}
constexpr const char* kCompany = "(case N/2%3 when 0 then 'HQ' when 1 then 'AB' else 'CD' end)";

// One loan in three is settled. The others have paid half of their schedule, but for one in fifty,
// which has paid five instalments and is behind with the sixth.
void FillPart(Connection& main) {
  main.Execute(fmt::format(
      "INSERT INTO CustMast (CustID,CustName,CustNIC,CompCode,TrxDate,CustStatus,TotLoan,"
      "TotLoanBal,TotLoanAmt2,TotTopUpAmt) SELECT {0},(case N/2%5 when 0 then 'Tan Ah Kow ' when 1 "
      "then 'Siti binti Rosnah ' when 2 then 'Muthu a/l Raju ' when 3 then 'Lim Siew Lan ' else "
      "'Wong Mei Ling ' end)+convert(varchar(10),N/2%9973),right('000000'+convert(varchar(10),"
      "N/2*7%1000000),6)+'-10-'+right('0000'+convert(varchar(10),N/2%10000),4),{1},'2023-07-15',"
      "'ACTIVE',2400,1344,2400,0 FROM BenchNumbers WHERE N%2=0",
      Key("N/2"), kCompany));
  main.Execute(fmt::format(
      "INSERT INTO NumberMast (CustID,LoanNo,PaymentNo) SELECT {},'002','{:03}' FROM BenchNumbers "
      "WHERE N%2=0",
      Key("N/2"), 2 * kInstalments));
  main.Execute(fmt::format(
      "INSERT INTO LoanMast (LoanID,CustID,CompCode,TrxDate,NextDueDate,LoanAmt,LoanAmt2,LoanTerm,"
      "InstallmentAmt,InsRate,LoanBal,PayOutAmt,LoanGroupID,LoanTypeID,DragLoan,LoanType,"
      "LoanStatus,OldLoanCode,AgreementNo,OrgDueDate,TotCollectorAmt,TotInt) SELECT "
      "{0}+'-00'+convert(varchar("
      "1),N%2+1),{0},{1},'2023-07-15',(case when N%50=1 then '2024-01-15' else '2024-02-15' end),"
      "1200,1200,'12',112,12,(case when N%3=0 then 0 else 1344-112*{2} end)+(case when N%50=1 AND "
      "N%3<>0 then 112 else 0 end),1200,'PINJAMAN SEMASA','MONTH','0','Unsecured','ACTIVE','OLD'+"
      "convert(varchar(10),N),'S'+convert(varchar(10),N),'2023-08-15',0,0 FROM BenchNumbers",
      Key("N/2"), kCompany, kPaid));
  for (int row = 1; row <= kInstalments; ++row) {
    const std::string paid = fmt::format("(N%3=0{})", row < kPaid    ? " OR 1=1"
                                                      : row == kPaid ? " OR N%50<>1"
                                                                     : "");
    main.Execute(fmt::format(
        "INSERT INTO SchMast (SchID,LoanID,CustID,DueDate,PayableAmt,CapitalAmt,InterestAmt,"
        "Payment) SELECT {0},{1}+'-00'+convert(varchar(1),N%2+1),{1},DATEADD(month,{0},"
        "'2023-07-15'),112,100,12,(case when {2} then 112 else 0 end) FROM BenchNumbers",
        row, Key("N/2"), paid));
    main.Execute(fmt::format(
        "INSERT INTO PaymentMast (PayID,LoanID,CustID,CompCode,PayDate,PayAmt,InstalAmt,"
        "PaymentStatus,ReceiptNo) SELECT {1}+'-00'+convert(varchar(1),N%2+1)+'-{0:03}',{1}+'-00'+"
        "convert(varchar(1),N%2+1),{1},{2},DATEADD(month,{0},'2023-07-14'),112,112,'ACTIVE','R'+"
        "convert(varchar(10),N)+'-{0}' FROM BenchNumbers WHERE {3}",
        row, Key("N/2"), kCompany, paid));
  }
}

void Fill(Session& session, const Load& load) {
  Connection& main = session.Main();
  for (const char* company : {"AB", "CD"}) {
    main.Execute(fmt::format(
        "INSERT INTO CompMast (CompCode,CompDesc) VALUES ('{0}','Company {0}')", company));
  }
  main.Execute("CREATE TABLE BenchNumbers (N int NOT NULL PRIMARY KEY)");
  const int part = std::min(kPart, load.loans);
  main.Execute("INSERT INTO BenchNumbers (N) VALUES (0)");
  for (int count = 1; count < part; count *= 2) {
    main.Execute(
        fmt::format("INSERT INTO BenchNumbers (N) SELECT N+{0} FROM BenchNumbers WHERE "
                    "N+{0}<{1}",
                    count, part));
  }
  for (int from = 0; from < load.loans; from += part) {
    main.BeginTrans();
    FillPart(main);
    main.Execute(fmt::format("UPDATE BenchNumbers SET N=N+{}", 1'000'000'000));
    main.Execute(fmt::format("UPDATE BenchNumbers SET N=N-{}", 1'000'000'000 - part));
    main.CommitTrans();
  }
  main.Execute("DROP TABLE BenchNumbers");
}

// --- a desktop

class Desktop {
 public:
  Desktop(const Load& load, const fs::path& folder, int number)
      : load_(load), random_(static_cast<unsigned>(number)) {
    OpenOffice(session_, desk_, load, folder, false);
    main_ = std::make_unique<MainFrm>(session_, desk_, MenuTable(), ScreenExists);
    main_->FillAtStart();
    // A person who may see all, and so reads all figures.
    for (MenuEntry& entry : main_->menu().entries()) entry.visible = true;
    HomeFigures& home = main_->home();
    home.later = [this](HomeFigures::When when, std::function<void()> part) {
      when_ = when;
      part_ = std::move(part);
    };
    home.worth_sharing = 500;
    home.SignedIn();
    WaitForFigures();
    loan_ = std::make_unique<NewLoanFrm>(session_, desk_);
    loan_->Load();
  }

  void Do(Action action) {
    SetClock(session_);
    switch (action) {
      case kSave:
        return SavePayment();
      case kPage:
        return ReadPage("");
      case kSearch:
        return ReadPage(Sought());
      case kOpen:
        return OpenLoan();
      case kHome:
        return ReadHome([this] { main_->home().Returned(); });
      default:
        return ReadHome([this] { main_->home().Refresh(); });
    }
  }
  // What took place in `action` alone.
  double last_ms() const { return last_ms_; }

 private:
  int Any(int below) { return std::uniform_int_distribution<int>(0, below - 1)(random_); }
  std::string AnyLoan() {
    const int n = Any(load_.loans);
    return fmt::format("C{:07}-{:03}", n / 2, n % 2 + 1);
  }
  std::string AnyOpenLoan() {
    int n = Any(load_.loans);
    while (n % 3 == 0) n = Any(load_.loans);
    return fmt::format("C{:07}-{:03}", n / 2, n % 2 + 1);
  }
  void Measure(const std::function<void()>& work) {
    const auto begin = std::chrono::steady_clock::now();
    work();
    last_ms_ =
        std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - begin).count();
  }
  static void Put(TextBox& box, const std::string& text) {
    box.Enter();
    if (!box.Type(text)) throw std::runtime_error("a box does not take " + text);
    box.Leave();
  }

  void SavePayment() {
    session_.CallerTag = "New Payment";
    session_.HandOverLoanID = AnyOpenLoan();
    session_.PickerExtra.clear();
    PaymentFrm screen(session_, desk_);
    screen.Load();
    Put(screen.PayDate, "31-01-2024");
    Put(screen.TotPay, "10");
    const int saved = desk_.saved;
    Measure([&] { screen.Guard([&] { screen.SaveCmd.Click(); }); });
    if (desk_.saved != saved + 1) throw std::runtime_error("a payment was not saved");
  }
  // Part of a code, of a name, or the figures of an identity card.
  std::string Sought() {
    const int customer = Any(load_.loans / 2);
    switch (Any(3)) {
      case 0:
        return fmt::format("{:07}", customer);
      case 1:
        return fmt::format("Mei Ling {}", customer % 9973 / 5 * 5 + 4);
      default:
        return fmt::format("{:06}10{:04}", customer * 7 % 1000000, customer % 10000);
    }
  }
  void ReadPage(const std::string& sought) {
    session_.PickerName = Any(2) == 0 ? "CustPop" : "LoanPop";
    session_.CallerTag = sought;
    Measure([&] {
      PopupFrm popup(session_, desk_);
      popup.Load();
      if (sought.empty() && popup.DG.RowCount() == 0) throw std::runtime_error("a page is empty");
    });
  }
  void OpenLoan() {
    const std::string loan = AnyLoan();
    Measure([&] { Put(loan_->LoanID, loan); });
    if (loan_->vsd3.RowCount() != kInstalments) throw std::runtime_error(loan + " is not there");
  }
  void ReadHome(const std::function<void()>& begin) {
    Measure([&] {
      begin();
      WaitForFigures();
    });
  }
  // Until the page shows all its figures; the while for which a window is left alone before it
  // begins is not waited for by anybody, the figures of another desktop are.
  void WaitForFigures() {
    HomeFigures& home = main_->home();
    bool begun = false;
    while (part_) {
      if (begun && when_ == HomeFigures::When::in_a_while) {
        if (home.Known(home.AgeDG)) break;
        std::this_thread::sleep_for(std::chrono::seconds(5));
        SetClock(session_);
      }
      begun = true;
      std::exchange(part_, nullptr)();
    }
    part_ = nullptr;
    if (home.failed() || !home.Known(home.AgeDG) || !home.Known(home.CollectDG)) {
      throw std::runtime_error("the figures cannot be read");
    }
  }

  const Load& load_;
  std::mt19937 random_;
  Session session_;
  ClerksDesk desk_;
  std::unique_ptr<MainFrm> main_;
  HomeFigures::When when_ = HomeFigures::When::soon;
  std::function<void()> part_;
  std::unique_ptr<NewLoanFrm> loan_;
  double last_ms_ = 0;
};

// Twenty actions a minute, and of two hundred: sixty payments, thirty-eight first pages,
// thirty-eight searches, sixty loans, three returns to the home page, and once somebody has it read
// anew.
Action Drawn(std::mt19937& random) {
  const int n = std::uniform_int_distribution<int>(0, 199)(random);
  return n < 60    ? kSave
         : n < 98  ? kPage
         : n < 136 ? kSearch
         : n < 196 ? kOpen
         : n < 199 ? kHome
                   : kRefresh;
}

void Work(const Load& load, const fs::path& folder, int number, int out) {
  Desktop desktop(load, folder, number);
  for (int action = 0; action < kActions; ++action) desktop.Do(static_cast<Action>(action));
  std::mt19937 random(static_cast<unsigned>(1000 + number));
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(load.seconds);
  std::string lines;
  while (std::chrono::steady_clock::now() < end) {
    const Action action = Drawn(random);
    desktop.Do(action);
    lines += fmt::format("{} {:.3f}\n", static_cast<int>(action), desktop.last_ms());
    std::this_thread::sleep_for(std::chrono::milliseconds(
        load.desktops == 1 ? 100 : std::uniform_int_distribution<int>(1500, 4500)(random)));
  }
  if (write(out, lines.data(), lines.size()) != static_cast<ssize_t>(lines.size())) {
    throw std::runtime_error("the times cannot be told");
  }
}

Durations Play(const Load& load, const fs::path& folder) {
  std::vector<std::pair<pid_t, fs::path>> children;
  std::cout.flush();
  for (int number = 1; number <= load.desktops; ++number) {
    const fs::path own = folder / fmt::format("pc{}", number);
    fs::create_directories(own);
    const pid_t child = fork();
    if (child == 0) {
      int status = 0;
      try {
        FILE* out = std::fopen((own / "times").c_str(), "w");
        Work(load, own, number, fileno(out));
        std::fclose(out);
      } catch (const std::exception& failure) {
        std::cerr << "desktop " << number << ": " << failure.what() << '\n';
        status = 1;
      }
      std::_Exit(status);
    }
    children.emplace_back(child, own / "times");
  }
  Durations all;
  for (const auto& [child, times] : children) {
    int status = 0;
    waitpid(child, &status, 0);
    if (status != 0) throw std::runtime_error("a desktop fails");
    std::ifstream lines(times);
    std::size_t action = 0;
    for (double ms = 0; lines >> action >> ms;) all.at(action).push_back(ms);
  }
  return all;
}

double Within(std::vector<double>& times, double share) {
  if (times.empty()) return 0;
  std::ranges::sort(times);
  const auto at = static_cast<std::size_t>(share * static_cast<double>(times.size()));
  return times[std::min(at, times.size() - 1)];
}

Durations Measured(const Load& load) {
  const fs::path folder =
      fs::current_path() / fmt::format("bench_load-{}-{}", getpid(), load.loans);
  fs::create_directories(folder);
  if (std::system(fmt::format("psql -q -d {} -c '' 2>/dev/null", load.database).c_str()) != 0) {
    Run(fmt::format("createdb -T template0 -E UTF8 {}", load.database));
    const Times filled = Time([&] {
      Session session;
      StrictDesk desk;
      OpenOffice(session, desk, load, folder, true);
      Fill(session, load);
    });
    Run(fmt::format("psql -q -d {} -c 'VACUUM ANALYZE'", load.database));
    fmt::print("{} loans filled in {:.0f} s\n", load.loans, filled.wall / 1000);
  }
  Durations all = Play(load, folder);
  std::error_code ignored;
  fs::remove_all(folder, ignored);
  for (std::size_t action = 0; action < kActions; ++action) {
    fmt::print("  {:<13} {:>5} times: half within {:.1f} ms, 95 % within {:.1f} ms, all {:.1f}\n",
               kNames[action], all[action].size(), Within(all[action], 0.5),
               Within(all[action], 0.95), Within(all[action], 1));
  }
  return all;
}

int Number(int argc, char** argv, int at, int otherwise) {
  return argc > at ? std::max(1, std::atoi(argv[at])) : otherwise;
}

// What a person waits for at most, in 95 of 100 cases, with all desktops at work.
constexpr std::array<double, kActions> kLimits = {1000, 1000, 1000, 1000, 3000, 30000};

bool Bench(int argc, char** argv) {
  if (std::getenv("KAUNTER_POSTGRESQL") == nullptr) {
    std::cout << "no PostgreSQL server: script/with-postgresql starts one\n";
    return true;
  }
  const Load small{"load_small", 10'000, 1, 30};
  const Load large{"load_large", Number(argc, argv, 1, 1'000'000), Number(argc, argv, 2, 30),
                   Number(argc, argv, 3, 120)};
  Durations one = Measured(small);
  Durations many = Measured(large);
  bool good = true;
  for (std::size_t action = 0; action < kActions; ++action) {
    const double before = Within(one[action], 0.95);
    const double now = Within(many[action], 0.95);
    const bool held = now <= kLimits[action];
    fmt::print(
        "{:<13} 95 %: {:.1f} ms among {} loans, {:.1f} ms among {} with {} desktops: {:.1f} "
        "times{}\n",
        kNames[action], before, small.loans, now, large.loans, large.desktops, now / before,
        held ? "" : "  ABOVE THE LIMIT");
    good &= held;
  }
  return good;
}

}  // namespace
}  // namespace kaunter

int main(int argc, char** argv) {
  return kaunter::RunBench([&] { return kaunter::Bench(argc, argv); });
}
