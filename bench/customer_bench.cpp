// A customer on the screen: what loading one costs beside the statements that it sends, run by a
// plain program that keeps them prepared; and how it grows with the office. And the lists of the
// main window, which nobody may have to wait for.
#include <fmt/format.h>

#include <string>
#include <vector>

#include "app/menu_table.h"
#include "bench/large_office.h"
#include "bench/plain.h"
#include "bench/ratio.h"
#include "core/main_frm.h"
#include "customers/new_cust_frm.h"

namespace kaunter {
namespace {

constexpr const char* kCustomer = "C000500";
constexpr const char* kOther = "C000501";

// As a clerk does it: a key typed into the box, which is then left.
void LoadCustomer(NewCustFrm& screen, const char* customer) {
  screen.CustID.Enter();
  screen.CustID.SetText(customer);
  screen.CustID.Leave();
}

// In turn two customers, so that the screen loads each anew.
void LoadSome(NewCustFrm& screen) {
  for (int i = 0; i < 10; ++i) LoadCustomer(screen, i % 2 == 0 ? kCustomer : kOther);
}

// What a load sends, in SQLite's words.
std::vector<std::string> Sent(LargeOffice& office, NewCustFrm& screen, const char* customer) {
  std::vector<std::string> sent;
  office.session.Main().SetTrace(
      [&](std::string_view, std::string_view sql) { sent.emplace_back(sql); });
  LoadCustomer(screen, customer);
  office.session.Main().SetTrace({});
  return InPlainWords(sent, office.file());
}

bool CompareLoad(LargeOffice& office, NewCustFrm& screen) {
  Plain plain(office.file());
  std::vector<std::vector<sql::SqliteStatement>> sides;
  for (const char* customer : {kCustomer, kOther}) {
    sides.push_back(plain.Prepare(Sent(office, screen, customer)));
  }
  fmt::print("a load sends {} statements\n", sides[0].size());
  return Compare(
      {"load a customer, 10 times / plain", 2.0, 30}, [&] { LoadSome(screen); },
      [&] {
        for (std::size_t i = 0; i < 10; ++i) {
          for (const auto& statement : sides[i % 2]) plain.Query(statement.get());
        }
      });
}

// A signed-in main window whose lists have been asked for.
bool ReportLists(LargeOffice& office) {
  MainFrm main(office.session, office.desk, MenuTable(), [](std::string_view) { return true; });
  const bool good = Report("lists of the main window", 200, 3, [&] { main.RefreshMainLists(); });
  fmt::print("  {} rows due, {} without a stamp number\n", main.LS1.RowCount(),
             main.LS2.RowCount());
  return good;
}

bool Bench() {
  LargeOffice small(1'000, 2'000, 6);
  LargeOffice large(100'000, 200'000, 6);
  NewCustFrm small_screen(small.session, small.desk);
  NewCustFrm large_screen(large.session, large.desk);
  small_screen.Load();
  large_screen.Load();
  fmt::print("100,000 customers, 200,000 loans, 1,200,000 rows of schedules\n");
  bool good = CompareLoad(large, large_screen);
  good &= Compare(
      {"growth of a load from 1,000 customers", 1.2}, [&] { LoadSome(large_screen); },
      [&] { LoadSome(small_screen); });
  good &= ReportLists(large);
  return good;
}

}  // namespace
}  // namespace kaunter

int main() { return kaunter::RunBench(kaunter::Bench); }
