// The books of an office that kept them in spreadsheets, made up: customers, their loans, what was
// paid, as three files of separated values.
#pragma once

#include <fmt/format.h>
#include <iconv.h>

#include <fstream>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "movein/move_in.h"
#include "platform/date_time.h"

namespace kaunter {

// How a spreadsheet writes.
struct Handwriting {
  char separator = ',';
  char decimal = '.';
  DayOrder days = DayOrder::day_month_year;
  const char* encoding = "UTF-8";
  std::string front;  // signs at the front of the file
  const char* line_end = "\r\n";
  bool chinese = true;
};

class OldBooks {
 public:
  OldBooks(std::string folder, int loans, unsigned seed, Handwriting hand = {})
      : folder_(std::move(folder)), hand_(std::move(hand)), random_(seed) {
    Row(0, {"Code", "Name", "NRIC", "Race", "Gender", "Address", "HP", "Income"});
    Row(1, {"Loan No", "Code", "Loan Date", "Loan Amount", "Rate", "Term", "Scheme", "Method"});
    Row(2, {"Loan No", "Receipt", "Pay Date", "Amount", "Late Interest", "Remark"});
    for (int i = 1; i <= loans; ++i) AddLoan(i);
    for (int file = 0; file < 3; ++file) Save(file);
  }

  std::string Path(MoveKind kind) const {
    return folder_ + "/" + std::string(MoveKindName(kind)) + ".csv";
  }
  // Mapped by the headings alone.
  MoveInJob Job(const std::string& company = "HQ") const {
    MoveInJob job;
    job.company = company;
    for (const MoveKind kind : kMoveKinds) {
      Mapping mapping = GuessMapping(kind, LookAt(Path(kind), Encoding::automatic, 0, 0).headings);
      mapping.days = hand_.days;
      mapping.decimal = hand_.decimal;
      job.sources[static_cast<std::size_t>(kind)] = MoveInSource{Path(kind), mapping};
    }
    return job;
  }

  int customers = 0;
  int loans = 0;
  int payments = 0;
  std::int64_t lent = 0;  // sen
  std::int64_t paid = 0;
  std::int64_t late = 0;

 private:
  int Draw(int least, int most) { return std::uniform_int_distribution(least, most)(random_); }

  std::string Amount(std::int64_t sen) const {
    std::string whole = std::to_string(sen / 100);
    for (auto at = static_cast<int>(whole.size()) - 3; at > 0; at -= 3) {
      whole.insert(static_cast<std::size_t>(at), 1, hand_.decimal == '.' ? ',' : '.');
    }
    return fmt::format("{}{}{:02}", whole, hand_.decimal, sen % 100);
  }
  std::string Day(const DateTime& day) const {
    switch (hand_.days) {
      case DayOrder::month_day_year:
        return fmt::format("{}/{}/{}", day.month, day.day, day.year);
      case DayOrder::year_month_day:
        return fmt::format("{}-{:02}-{:02}", day.year, day.month, day.day);
      case DayOrder::day_month_year:
        break;
    }
    return fmt::format("{:02}/{:02}/{}", day.day, day.month, day.year);
  }

  void AddCustomer(const std::string& code) {
    ++customers;
    const DateTime born = DateTime{1960, 1, 1}.AddDays(Draw(0, 15000));
    const std::string ic = fmt::format("{:02}{:02}{:02}-10-{:04}", born.year % 100, born.month,
                                       born.day, Draw(0, 9999));
    const std::string name = hand_.chinese ? fmt::format("陈大文 \"Ah {}\" O'Hara", customers)
                                           : fmt::format("Ren\xC3\xA9 {}, O'Hara", customers);
    Row(0, {code, name, ic, "CHINESE", Draw(0, 1) == 0 ? "M" : "FEMALE",
            "12, Jalan Besar\n43000 Kajang", fmt::format("012-{:07}", customers),
            "RM " + Amount(Draw(100000, 900000))});
  }

  void AddLoan(int number) {
    if (customers == 0 || Draw(0, 4) > 0) AddCustomer(fmt::format("C{:05}", customers + 1));
    ++loans;
    const DateTime day = DateTime{2021, 1, 1}.AddDays(Draw(0, 700));
    const int term = Draw(3, 24);
    const std::int64_t amount = Draw(5, 300) * 10000;
    const bool flexi = Draw(0, 4) == 0;
    lent += amount;
    const std::string id = fmt::format("L{:06}", number);
    Row(1,
        {id, fmt::format("C{:05}", customers), Day(day), Amount(amount), "12", std::to_string(term),
         flexi ? "Flexi Loan" : "Personal Loan", Draw(0, 1) == 0 ? "FLAT" : "REDUCING"});
    // No more than the capital comes back, and so never more than is owed.
    std::int64_t left = amount - 100;
    const int most = Draw(0, term < 10 ? term : 10);
    for (int i = 1; i <= most && left > 0; ++i) {
      std::int64_t sen = amount / term + Draw(-200, 300);
      if (sen > left) sen = left;
      left -= sen;
      const std::int64_t interest = Draw(0, 9) == 0 ? Draw(1, 999) : 0;
      ++payments;
      paid += sen;
      late += interest;
      Row(2, {id, fmt::format("OR{:07}", payments), Day(day.AddMonths(i)), Amount(sen + interest),
              interest == 0 ? "" : Amount(interest), "paid at the counter; thank you"});
    }
  }

  void Row(int file, const std::vector<std::string>& cells) {
    std::string& text = text_[file];
    for (std::size_t i = 0; i < cells.size(); ++i) {
      if (i > 0) text += hand_.separator;
      std::string cell = cells[i];
      if (cell.find_first_of("\"\n;,\t") != std::string::npos) {
        for (std::size_t at = 0; (at = cell.find('"', at)) != std::string::npos; at += 2) {
          cell.insert(at, 1, '"');
        }
        cell = "\"" + cell + "\"";
      }
      text += cell;
    }
    text += hand_.line_end;
  }

  void Save(int file) const {
    std::ofstream out(Path(kMoveKinds[static_cast<std::size_t>(file)]), std::ios::binary);
    std::string text = text_[file];
    std::string bytes(4 * text.size() + 16, '\0');
    char* from = text.data();
    char* to = bytes.data();
    std::size_t from_left = text.size();
    std::size_t to_left = bytes.size();
    const iconv_t converter = iconv_open(hand_.encoding, "UTF-8");
    iconv(converter, &from, &from_left, &to, &to_left);
    iconv_close(converter);
    out << hand_.front << bytes.substr(0, bytes.size() - to_left);
  }

  std::string folder_;
  Handwriting hand_;
  std::mt19937 random_;
  std::string text_[3];
};

}  // namespace kaunter
