// Loans that no longer perform: those of a company whose group says so, by the year in which they
// were made. The return knows the years 2015 to 2020, and no others.
#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "compliance/returns.h"

namespace kaunter {

inline constexpr int kFirstNplYear = 2015;
inline constexpr std::size_t kNplYears = 6;
inline constexpr std::string_view kCurrentGroup = "PINJAMAN SEMASA";
inline constexpr std::string_view kDoubtfulGroup = "DALAM PROSES DAPAT BALIK";

struct NplYear {
  int loans = 0;
  Money balance;
};

// Throws SqlError.
std::array<NplYear, kNplYears> CountNpl(Connection& main, std::string_view company);
// All loans behind the figures: number, date, company, customer, group, balance.
std::string NplLoansStatement(std::string_view company, std::string_view and_also = {});
std::vector<ReturnLine> NplLines(Connection& main, const std::string& company);

// Moves the company's current loans that are overdue since `cut` to the group. One that has paid is
// judged by its last payment too. Gives the number of loans. Throws SqlError.
std::int64_t MoveOverdue(Connection& main, std::string_view company, const DateTime& cut,
                         std::string_view group);

}  // namespace kaunter
