#include "core/shared_figures.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <concepts>
#include <utility>

#include "core/session.h"
#include "core/values.h"
#include "platform/digest.h"

namespace kaunter {
namespace {

// Another order or another field is another version.
constexpr std::string_view kVersion = "1";

// Fifty times as long as they took to read, so that an office spends at most a fiftieth of its time
// on them, and ten minutes at most.
long long GoodForSeconds(long long cost) { return std::min(cost * 50 / 1000, 600LL); }
// A desktop that has not finished by then has died.
long long ReadWithinSeconds(long long cost) { return std::max(cost * 3 / 1000, 30LL); }

// One field a line. Both directions go through the same functions, and so agree on the order.
class Lines {
 public:
  Lines() : writes_(true) {}
  explicit Lines(std::string_view text) : rest_(text) {}

  // All lines were there, were what they should be, and none is left.
  bool whole() const { return good_ && rest_.empty(); }
  std::string text;
  void Refuse() { good_ = false; }

  void Pass(std::string& field) {
    if (writes_) {
      for (const char c : field) text += c == '\n' ? ' ' : c;
      text += '\n';
      return;
    }
    const std::size_t end = rest_.find('\n');
    good_ &= end != std::string_view::npos;
    if (!good_) return;
    field = rest_.substr(0, end);
    rest_.remove_prefix(end + 1);
  }
  template <std::integral Number>
  void Pass(Number& field) {
    std::string line = writes_ ? std::to_string(field) : std::string();
    Pass(line);
    if (writes_ || !good_) return;
    long long number = 0;
    const char* const end = line.data() + line.size();
    const auto [last, error] = std::from_chars(line.data(), end, number);
    good_ = error == std::errc() && last == end && std::in_range<Number>(number);
    if (good_) field = static_cast<Number>(number);
  }
  void Pass(Money& field) {
    std::int64_t units = field.ten_thousandths();
    Pass(units);
    field = Money::FromTenThousandths(units);
  }
  template <typename Field>
  void Pass(std::vector<Field>& fields) {
    std::size_t count = fields.size();
    Pass(count);
    if (!good_ || count > 10'000) {
      good_ = false;
      return;
    }
    fields.resize(count);
    for (Field& field : fields) Fields(*this, field);
  }

 private:
  bool writes_ = false;
  bool good_ = true;
  std::string_view rest_;
};

void Fields(Lines& lines, Tally& tally) {
  lines.Pass(tally.count);
  lines.Pass(tally.amount);
}

void Fields(Lines& lines, OverdueLoan& loan) {
  lines.Pass(loan.loan_id);
  lines.Pass(loan.customer);
  lines.Pass(loan.days);
  lines.Pass(loan.amount);
}

void Fields(Lines& lines, CashPosition& one) {
  lines.Pass(one.CompCode);
  for (const auto member : kCashAmounts) {
    lines.Pass(one.*member);
  }
}

void Fields(Lines& lines, UnsentIncome& one) {
  lines.Pass(one.CompCode);
  Fields(lines, one.named);
  Fields(lines, one.consolidated);
}

void Fields(Lines& lines, HomeReading& reading) {
  std::string version(kVersion);
  lines.Pass(version);
  OfficeFigures& office = reading.office;
  int day = office.today.DayNumber();
  lines.Pass(day);
  // The months follow from the day.
  if (version != kVersion || day != office.today.DayNumber()) return lines.Refuse();
  int any_loan = office.any_loan ? 1 : 0;
  lines.Pass(any_loan);
  office.any_loan = any_loan != 0;
  for (Tally* tally : {&office.due_today, &office.due_week, &office.overdue}) {
    Fields(lines, *tally);
  }
  for (Tally& tally : office.by_age) Fields(lines, tally);
  for (Year* year : {&office.collected, &office.disbursed}) {
    for (MonthTally& month : *year) Fields(lines, month.sum);
  }
  lines.Pass(office.top);
  lines.Pass(reading.cash);
  lines.Pass(reading.unsent);
}

}  // namespace

std::string PackReading(HomeReading reading) {
  Lines lines;
  Fields(lines, reading);
  return std::move(lines.text);
}

std::optional<HomeReading> UnpackReading(std::string_view text, const DateTime& today) {
  Lines lines(text);
  HomeReading reading{EmptyFigures(today), {}, {}};
  Fields(lines, reading);
  if (!lines.whole()) return std::nullopt;
  return reading;
}

SharedFigures::SharedFigures(Session& session, std::string_view view)
    : session_(session), key_(DigestOf(Digest::Kind::sha256, view)) {}

SharedFigures::Found SharedFigures::Look(const DateTime& now) {
  Found found;
  const Recordset row = session_.Main().Query(fmt::format(
      "SELECT ReadAt,BegunAt,Cost,Figures FROM FiguresMast WHERE ViewKey={}", QuoteStr(key_)));
  kept_ = !row.Eof();
  if (!kept_) return found;
  const auto cost = static_cast<long long>(CDbl(row.Field("Cost").ToText()));
  // What was read or begun in the future was so by a clock that has been set back since.
  const auto within = [&](const DateTime* since, long long seconds) {
    return since != nullptr && *since <= now && now <= since->AddSeconds(seconds);
  };
  if (const DateTime* read_at = row.Field("ReadAt").AsDate()) {
    found.reading = UnpackReading(NullToEmpty(row.Field("Figures")), now);
    found.read_at = *read_at;
    found.fresh = found.reading && within(read_at, GoodForSeconds(cost));
  }
  if (found.fresh) return found;
  const DateTime* begun_at = row.Field("BegunAt").AsDate();
  found.being_read = within(begun_at, ReadWithinSeconds(cost));
  if (found.being_read) return found;
  // Of two that come at once, one has the row as it saw it.
  const std::string as_seen = begun_at == nullptr ? " IS NULL" : "=" + SqlDateTime(*begun_at);
  found.being_read = session_.Main().Execute(fmt::format(
                         "UPDATE FiguresMast SET BegunAt={} WHERE ViewKey={} AND BegunAt{}",
                         SqlDateTime(now), QuoteStr(key_), as_seen)) == 0;
  return found;
}

void SharedFigures::Keep(const DateTime& begun_at, double milliseconds, HomeReading reading) {
  const std::string text = QuoteStr(PackReading(std::move(reading)));
  const auto cost = static_cast<long long>(milliseconds);
  Connection& main = session_.Main();
  if (main.Execute(fmt::format("UPDATE FiguresMast SET ReadAt={},BegunAt=NULL,Cost={},Figures={} "
                               "WHERE ViewKey={}",
                               SqlDateTime(begun_at), cost, text, QuoteStr(key_))) == 0) {
    main.Execute(
        fmt::format("INSERT INTO FiguresMast (ViewKey,ReadAt,Cost,Figures) VALUES ({},{},{},{})",
                    QuoteStr(key_), SqlDateTime(begun_at), cost, text));
  }
  kept_ = true;
}

void SharedFigures::TakeAway() {
  if (!kept_) return;
  session_.Main().Execute("DELETE FROM FiguresMast WHERE ViewKey=" + QuoteStr(key_));
  kept_ = false;
}

}  // namespace kaunter
