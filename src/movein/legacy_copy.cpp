#include "movein/legacy_copy.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <map>
#include <set>
#include <stdexcept>

#include "core/amounts.h"
#include "core/schema_patches.h"
#include "core/staged_rows.h"
#include "core/values.h"
#include "loans/drawdown_store.h"
#include "loans/money_gate.h"
#include "loans/rebuild.h"
#include "loans/schedule_store.h"
#include "platform/sql/transaction.h"
#include "screen/text.h"

namespace kaunter {
namespace {

constexpr std::int64_t kTogether = 500;  // rows a transaction
constexpr std::size_t kMostTroubles = 20000;

// What stands for a column that an early file does not have yet.
struct StandIn {
  const char* table;
  const char* column;
  const char* from;   // another column of the file
  const char* value;  // or a text
};
constexpr StandIn kStandIns[] = {
    {"CustMast", "CustStatus", nullptr, "ACTIVE"},
    {"CustMast", "AreaCode", nullptr, "PERSONAL"},
    {"LoanMast", "DragLoan", nullptr, "0"},
    {"LoanMast", "LoanStatus", nullptr, "ACTIVE"},
    {"LoanMast", "LoanGroupID", nullptr, "PINJAMAN SEMASA"},
    {"LoanMast", "LoanTypeID", nullptr, "MONTH"},
    {"LoanMast", "SpecialSch", nullptr, "0"},
    {"LoanMast", "SchChanged", nullptr, "0"},
    {"LoanMast", "LoanAmt2", "LoanAmt", nullptr},
    {"LoanMast", "InsRate2", "InsRate", nullptr},
    {"LoanMast", "InstallmentAmt2", "InstallmentAmt", nullptr},
    {"LoanMast", "LastPayment2", "LastPayment", nullptr},
    {"PaymentMast", "InstalAmt", "PayAmt", nullptr},
    {"PaymentMast", "PaymentStatus", nullptr, "ACTIVE"},
    {"PaymentMast", "Settlement", nullptr, "0"},
};

// -1: none of that name.
int PlaceOf(const std::vector<Column>& columns, std::string_view name) {
  const auto found = std::find_if(columns.begin(), columns.end(), [name](const Column& column) {
    return SameText(column.name, name);
  });
  return found == columns.end() ? -1 : static_cast<int>(found - columns.begin());
}

std::string Empty(FieldType type) {
  return type == FieldType::kText ? "''" : type == FieldType::kDate ? "null" : "0";
}

std::optional<DateTime> DayIn(const std::string& cell) {
  constexpr std::size_t kDay = 10;
  if (const auto date = DateTime::FromCanonical(cell)) return date;
  if (const auto date = DateTime::FromCanonical(cell.substr(0, kDay))) return date;
  return DateTime::FromDisplay(cell);
}

// Whether a number of so many places goes into a column of money or of rates.
std::optional<std::string> NumberIn(const std::string& cell, const Column& column) {
  std::optional<Money> amount = Money::TryText(cell);
  if (!amount && IsNumeric(cell)) amount = Money::FromDouble(CDbl(cell));
  if (!amount) return std::nullopt;
  if (column.type != FieldType::kInteger) return amount->ToText();
  constexpr std::int64_t kUnit = 10000;
  if (amount->ten_thousandths() % kUnit != 0) return std::nullopt;
  return std::to_string(amount->ten_thousandths() / kUnit);
}

}  // namespace

// Where a column of the office comes from.
struct LegacyCopy::Pick {
  Column target;
  int source = -1;
  std::string literal;  // for all rows; "" where the source tells
};

// Rows of a table of the file as inserts, and what does not fit.
class LegacyCopy::TableReader {
 public:
  TableReader(const LegacyCopy& copy, const LegacyTable& table, const std::vector<Column>& columns)
      : copy_(copy), table_(table) {
    const auto find = [&columns](std::string_view name) { return PlaceOf(columns, name); };
    std::set<std::string> used;
    const Recordset shape = copy.main_.Query(fmt::format("SELECT * FROM {} WHERE 1=0", table.name));
    for (const Column& target : shape.columns()) {
      // The server numbers them.
      if (SameText(table.name, "PersonalExp") && SameText(target.name, "TrxID")) continue;
      Pick pick{target, find(target.name), ""};
      if (pick.source >= 0) used.insert(Upper(target.name));
      if (SameText(target.name, "CompCode")) pick.literal = QuoteStr(copy.company_);
      const bool loans = SameText(table.name, "LoanMast");
      if (loans && SameText(target.name, "LoanPurpose")) pick.literal = QuoteStr(copy.method_);
      if (pick.source < 0 && pick.literal.empty()) TakeStandIn(find, &pick);
      if (pick.source >= 0 || !pick.literal.empty()) picks_.push_back(std::move(pick));
    }
    for (const char* column : table.key) keys_.push_back(find(column));
    cust_ = find("CustID");
    loan_ = find("LoanID");
    for (const Column& column : columns) {
      if (!used.contains(Upper(column.name))) left_.push_back(column.name);
    }
    for (const Pick& pick : picks_) names_ += (names_.empty() ? "" : ",") + pick.target.name;
  }

  bool HasKey() const { return std::find(keys_.begin(), keys_.end(), -1) == keys_.end(); }
  const std::vector<std::string>& left() const { return left_; }
  std::vector<std::string> Key(const OdbcSource::Cells& cells) const {
    std::vector<std::string> key;
    for (const int column : keys_) key.push_back(Cell(cells, column));
    if (SameText(table_.name, "CompMast")) key = {copy_.company_};
    if (SameText(table_.name, "NumberMast")) key[0] = Renamed(key[0]);
    return key;
  }
  std::string Customer(const OdbcSource::Cells& cells) const { return Cell(cells, cust_); }
  std::string Loan(const OdbcSource::Cells& cells) const { return Cell(cells, loan_); }

  // The insert of the row; nothing, with the trouble, for one that does not fit.
  std::optional<std::string> Insert(const OdbcSource::Cells& cells, LegacyTrouble* trouble) const {
    std::string values;
    for (const Pick& pick : picks_) {
      const auto literal = Literal(pick, cells, trouble);
      if (!literal) return std::nullopt;
      if (&pick != &picks_.front()) values += ",";
      values += *literal;
    }
    return fmt::format("INSERT INTO {} ({}) VALUES ({})", table_.name, names_, values);
  }

 private:
  static std::string Cell(const OdbcSource::Cells& cells, int column) {
    return column < 0 ? std::string() : cells[static_cast<std::size_t>(column)].value_or("");
  }

  template <typename Find>
  void TakeStandIn(const Find& find, Pick* pick) const {
    for (const StandIn& stand_in : kStandIns) {
      if (!SameText(stand_in.table, table_.name)) continue;
      if (!SameText(stand_in.column, pick->target.name)) continue;
      if (stand_in.from != nullptr) {
        pick->source = find(stand_in.from);
      } else {
        pick->literal = QuoteStr(stand_in.value);
      }
    }
  }

  // A counter of the company counts for the new one.
  std::string Renamed(const std::string& key) const {
    const std::string& old = copy_.old_company_;
    if (old.empty()) return key;
    if (SameText(key, old)) return copy_.company_;
    if (SameText(std::string_view(key).substr(0, old.size() + 1), old + "#")) {
      return copy_.company_ + key.substr(old.size());
    }
    return key;
  }

  std::optional<std::string> Literal(const Pick& pick, const OdbcSource::Cells& cells,
                                     LegacyTrouble* trouble) const {
    if (!pick.literal.empty()) return pick.literal;
    std::string cell = Cell(cells, pick.source);
    if (SameText(table_.name, "NumberMast") && SameText(pick.target.name, "CustID")) {
      cell = Renamed(cell);
    }
    if (cell.empty()) return Empty(pick.target.type);
    const auto refuse = [&](Caption reason) -> std::optional<std::string> {
      trouble->column = pick.target.name;
      trouble->value = cell;
      trouble->reason = std::move(reason);
      return std::nullopt;
    };
    switch (pick.target.type) {
      case FieldType::kText: {
        const auto width = static_cast<std::size_t>(pick.target.width);
        if (width > 0 && CharacterCount(cell) > width) {
          return refuse({fmt::format("is longer than {} letters", width),
                         fmt::format("多于 {} 个字", width)});
        }
        return QuoteStr(cell);
      }
      case FieldType::kDate: {
        const auto date = DayIn(cell);
        if (!date) return refuse({"is no date", "不是日期"});
        return SqlDateTime(*date);
      }
      case FieldType::kMoney:
      case FieldType::kInteger:
      case FieldType::kDouble: {
        const auto number = NumberIn(cell, pick.target);
        if (!number) return refuse({"is no number that fits", "不是合适的数字"});
        return StripCommaOrZero(*number);
      }
    }
    return std::nullopt;
  }

  const LegacyCopy& copy_;
  const LegacyTable& table_;
  std::vector<Pick> picks_;
  std::vector<int> keys_;
  int cust_ = -1;
  int loan_ = -1;
  std::vector<std::string> left_;
  std::string names_;
};

LegacyCopy::LegacyCopy(Session& session, OdbcSource& source, std::string company,
                       bool expenses_only)
    : session_(session),
      main_(session.Main()),
      source_(source),
      company_(std::move(company)),
      expenses_only_(expenses_only),
      tables_(source.Tables()),
      method_(InterestMethod()),
      old_company_(OldCompany()) {}

// One for all loans of the file: the setting SOD.
std::string LegacyCopy::InterestMethod() {
  std::string method = "FLAT";
  if (!InFile("Systemast")) return method;
  int param = -1;
  int value = -1;
  source_.Read(
      "Systemast",
      [&](const std::vector<Column>& columns) {
        param = PlaceOf(columns, "Param");
        value = PlaceOf(columns, "Value");
        return param >= 0 && value >= 0;
      },
      [&](const OdbcSource::Cells& cells) {
        if (!SameText(cells[static_cast<std::size_t>(param)].value_or(""), "SOD")) return true;
        if (cells[static_cast<std::size_t>(value)] == "1") method = "REDUCING";
        return false;
      });
  return method;
}

std::string LegacyCopy::OldCompany() {
  std::string code;
  int column = -1;
  source_.Read(
      "CompMast",
      [&](const std::vector<Column>& columns) {
        column = PlaceOf(columns, "CompCode");
        return column >= 0;
      },
      [&](const OdbcSource::Cells& cells) {
        code = cells[static_cast<std::size_t>(column)].value_or("");
        return false;
      });
  return code;
}

bool LegacyCopy::InFile(std::string_view table) const {
  return std::any_of(tables_.begin(), tables_.end(),
                     [table](const std::string& name) { return SameText(name, table); });
}

std::vector<const LegacyTable*> LegacyCopy::Tables() const {
  std::vector<const LegacyTable*> tables;
  for (const LegacyTable& table : LegacyTables()) {
    if (!expenses_only_ || SameText(table.name, "PersonalExp")) tables.push_back(&table);
  }
  return tables;
}

bool LegacyCopy::InOffice(const LegacyTable& table, const std::vector<std::string>& key) {
  std::vector<std::string> conditions;
  for (std::size_t i = 0; i < key.size(); ++i) {
    conditions.push_back(fmt::format("{}={}", table.key[i], QuoteStr(key[i])));
  }
  return !main_
              .Query(fmt::format("SELECT {} FROM {} WHERE {}", table.key[0], table.name,
                                 fmt::join(conditions, " AND ")))
              .Eof();
}

// --- what fits

LegacyReport LegacyCopy::Check(bool cleared, const LegacyGoOn& go_on) {
  LegacyReport report;
  const auto tables = Tables();
  for (std::size_t i = 0; i < tables.size() && report.complete; ++i) {
    CheckTable(*tables[i], cleared, go_on,
               {tables[i]->name, static_cast<int>(i), static_cast<int>(tables.size())}, &report);
  }
  return report;
}

void LegacyCopy::CheckTable(const LegacyTable& table, bool cleared, const LegacyGoOn& go_on,
                            LegacyProgress progress, LegacyReport* report) {
  LegacyCount count;
  count.table = table.name;
  using Kind = LegacyTrouble::Kind;
  const auto tell = [&](LegacyTrouble trouble) {
    trouble.table = table.name;
    report->stops = report->stops || trouble.kind == Kind::stops;
    if (report->troubles.size() < kMostTroubles) report->troubles.push_back(std::move(trouble));
  };
  const auto of_table = [&](Caption reason, Kind kind) {
    LegacyTrouble trouble;
    trouble.reason = std::move(reason);
    trouble.kind = kind;
    tell(std::move(trouble));
  };
  if (!InFile(table.name)) {
    of_table({"the file has no such table", "文件没有此表格"}, Kind::note);
    report->counts.push_back(std::move(count));
    return;
  }
  progress.total = source_.Count(table.name);
  if (!go_on(progress)) {
    report->complete = false;
    return;
  }
  std::optional<TableReader> reader;
  std::set<std::vector<std::string>> seen;
  const auto not_fitting = [&](const OdbcSource::Cells& cells, LegacyTrouble trouble) {
    trouble.row = count.rows;
    trouble.key = fmt::format("{}", fmt::join(reader->Key(cells), " "));
    if (trouble.kind == Kind::left_out) {
      ++count.left_out;
      ++report->left_out;
    }
    tell(std::move(trouble));
  };
  source_.Read(
      table.name,
      [&](const std::vector<Column>& columns) {
        reader.emplace(*this, table, columns);
        count.columns = fmt::format("{}", fmt::join(reader->left(), ", "));
        if (reader->HasKey()) return true;
        of_table({fmt::format("the file's table lacks its key ({})", fmt::join(table.key, ", ")),
                  fmt::format("文件的表格没有键（{}）", fmt::join(table.key, "、"))},
                 Kind::stops);
        return false;
      },
      [&](const OdbcSource::Cells& cells) {
        ++count.rows;
        progress.done = count.rows;
        if (count.rows % kTogether == 0 && !go_on(progress)) {
          report->complete = false;
          return false;
        }
        LegacyTrouble trouble;
        trouble.kind = Kind::left_out;
        if (!table.key.empty()) {
          const std::vector<std::string> key = reader->Key(cells);
          if (!seen.insert(key).second) {
            trouble.reason = {"the same key stands in an earlier row", "与前面某行的键相同"};
            not_fitting(cells, std::move(trouble));
            return true;
          }
          if (!cleared && InOffice(table, key)) {
            if (table.kind == LegacyKeys::codes) {
              ++count.skipped;
              return true;
            }
            trouble.kind = Kind::stops;
            trouble.reason = {"this key exists in the office", "公司里已有此键"};
            not_fitting(cells, std::move(trouble));
            return true;
          }
        }
        if (!reader->Insert(cells, &trouble)) {
          not_fitting(cells, std::move(trouble));
          return true;
        }
        ++count.good;
        NoteBelonging(table, reader->Customer(cells), reader->Loan(cells), [&](Caption reason) {
          LegacyTrouble note;
          note.reason = std::move(reason);
          not_fitting(cells, std::move(note));
        });
        return true;
      });
  if (report->complete && count.rows != progress.total && reader && reader->HasKey()) {
    of_table({fmt::format("{} rows are told, and {} could be read: the file is damaged",
                          progress.total, count.rows),
              fmt::format("应有 {} 行，只能读取 {} 行：文件已损坏", progress.total, count.rows)},
             Kind::left_out);
    ++report->left_out;
  }
  report->counts.push_back(std::move(count));
}

// A row of nobody is copied, and seen nowhere.
void LegacyCopy::NoteBelonging(const LegacyTable& table, const std::string& customer,
                               const std::string& loan, const std::function<void(Caption)>& note) {
  if (SameText(table.name, "CustMast")) customers_.insert(Upper(customer));
  if (SameText(table.name, "LoanMast")) {
    loans_.insert(Upper(loan));
    if (!customers_.contains(Upper(customer))) {
      note({fmt::format("belongs to no customer of the file ({})", customer),
            fmt::format("不属于文件中的任何顾客（{}）", customer)});
    }
  }
  if (SameText(table.name, "PaymentMast") || SameText(table.name, "SchMast")) {
    if (!loans_.contains(Upper(loan))) {
      note({fmt::format("belongs to no loan of the file ({})", loan),
            fmt::format("不属于文件中的任何贷款（{}）", loan)});
    }
  }
}

// --- the copy

bool LegacyCopy::Run(const LegacyGoOn& go_on) {
  const auto tables = Tables();
  const int steps = static_cast<int>(tables.size()) + (expenses_only_ ? 0 : 2);
  int step = 0;
  if (expenses_only_) {
    main_.Execute("DELETE FROM PersonalExp WHERE CompCode=" + QuoteStr(company_));
  }
  for (const LegacyTable* table : tables) {
    if (!CopyTable(*table, go_on, {table->name, step++, steps})) return false;
  }
  if (!expenses_only_) {
    AddCounters();
    if (!Release(go_on, {"DrawDownMast", step++, steps})) return false;
    if (!Rebuild(go_on, {"Rebuild Loan Record(s)", step, steps})) return false;
  }
  main_.Execute(fmt::format("UPDATE UserMast SET CompCode={} WHERE UserID={}", QuoteStr(company_),
                            QuoteStr(session_.CurrentUserID)));
  return true;
}

bool LegacyCopy::CopyTable(const LegacyTable& table, const LegacyGoOn& go_on,
                           LegacyProgress progress) {
  if (!InFile(table.name)) return true;
  progress.total = source_.Count(table.name);
  if (!go_on(progress)) return false;
  std::optional<TableReader> reader;
  std::set<std::vector<std::string>> seen;
  bool goes_on = true;
  std::optional<Transaction> transaction;
  Batch batch;
  source_.Read(
      table.name,
      [&](const std::vector<Column>& columns) {
        reader.emplace(*this, table, columns);
        return reader->HasKey();
      },
      [&](const OdbcSource::Cells& cells) {
        if (!transaction) transaction.emplace(main_);
        LegacyTrouble trouble;
        const bool comes =
            table.key.empty() ||
            (seen.insert(reader->Key(cells)).second &&
             (table.kind != LegacyKeys::codes || !InOffice(table, reader->Key(cells))));
        const auto insert = comes ? reader->Insert(cells, &trouble) : std::optional<std::string>();
        if (insert) batch.Add(*insert);
        batch.SendWhenFull(main_);
        if (++progress.done % kTogether != 0) return true;
        batch.Send(main_);
        transaction->Commit();
        transaction.reset();
        goes_on = go_on(progress);
        return goes_on;
      });
  if (transaction) {
    batch.Send(main_);
    transaction->Commit();
  }
  return goes_on;
}

// Without a counter a customer gets no further loan: where the file has none, it goes on behind the
// loans that he has.
void LegacyCopy::AddCounters() {
  std::map<std::string, std::int32_t> next;
  for (Recordset row = main_.Query(
           "SELECT c.CustID,l.LoanID FROM CustMast as c LEFT OUTER JOIN LoanMast as l ON "
           "l.CustID=c.CustID WHERE c.CompCode=" +
           QuoteStr(company_) +
           " AND NOT EXISTS (SELECT n.CustID FROM NumberMast as n WHERE n.CustID=c.CustID)");
       !row.Eof(); row.MoveNext()) {
    const std::string customer = NullToEmpty(row.Field(0));
    const std::string loan = NullToEmpty(row.Field(1));
    std::int32_t& number = next[customer];
    if (!SameText(loan.substr(0, customer.size() + 1), customer + "-")) continue;
    const std::string tail = loan.substr(customer.size() + 1);
    if (IsNumeric(tail)) number = std::max(number, CLng(tail) + 1);
  }
  Transaction transaction(main_);
  for (const auto& [customer, number] : next) {
    main_.Execute(
        fmt::format("INSERT INTO NumberMast (CustID,LoanNo,PaymentNo) VALUES ({},'{:03}','000')",
                    QuoteStr(customer), number));
  }
  transaction.Commit();
}

// What was paid out of a loan, as one release on its day; a file that does not tell means all.
bool LegacyCopy::Release(const LegacyGoOn& go_on, LegacyProgress progress) {
  Recordset loans = main_.Query(
      "SELECT l.LoanID,l.CustID,l.TrxDate,l.LoanAmt,l.PayOutAmt,l.Bank,c.CustName FROM LoanMast as "
      "l LEFT OUTER JOIN CustMast as c ON c.CustID=l.CustID WHERE l.CompCode=" +
      QuoteStr(company_) + " ORDER BY l.LoanID");
  progress.total = static_cast<std::int64_t>(loans.RowCount());
  const std::string now = SqlDateTime(ServerTime(main_));
  while (!loans.Eof()) {
    if (!go_on(progress)) return false;
    Transaction transaction(main_);
    for (std::int64_t i = 0; i < kTogether && !loans.Eof(); ++i, loans.MoveNext()) {
      const std::string id = NullToEmpty(loans.Field("LoanID"));
      const DateTime* const day = loans.Field("TrxDate").AsDate();
      const Money paid_out = Sen(loans, "PayOutAmt");
      AddOldRelease(main_,
                    {id, NullToEmpty(loans.Field("CustID")), company_,
                     day != nullptr ? SqlDate(*day) : "null",
                     paid_out.IsZero() ? Sen(loans, "LoanAmt") : paid_out,
                     NullToEmpty(loans.Field("CustName")), NullToEmpty(loans.Field("Bank"))},
                    session_.CurrentUserID, now);
      // The rows as they were agreed on, before a rebuild derives them anew.
      CopySchedule(main_, id, /*update_rows=*/false, /*to_backup=*/true);
      RefillPaymentList(main_, id);
      ++progress.done;
    }
    transaction.Commit();
  }
  main_.Execute(patches::kFillOrgDueDate);
  return true;
}

bool LegacyCopy::Rebuild(const LegacyGoOn& go_on, LegacyProgress progress) {
  Recordset loans =
      main_.Query("SELECT LoanID,CustID FROM LoanMast WHERE CompCode=" + QuoteStr(company_) +
                  " ORDER BY LoanID");
  progress.total = static_cast<std::int64_t>(loans.RowCount());
  std::set<std::string> customers;
  for (; !loans.Eof(); loans.MoveNext()) {
    if (progress.done % kTogether == 0 && !go_on(progress)) return false;
    ++progress.done;
    const std::string id = NullToEmpty(loans.Field(0));
    customers.insert(NullToEmpty(loans.Field(1)));
    Transaction transaction(main_);
    LockLoan(main_, id);
    const Rebuilt rebuilt = RebuildLoan(main_, id);
    if (rebuilt.error) std::rethrow_exception(rebuilt.error);
    transaction.Commit();
  }
  for (const std::string& customer : customers) {
    Transaction transaction(main_);
    SumLoansOfCustomer(main_, customer);
    transaction.Commit();
  }
  return true;
}

}  // namespace kaunter
