// A whole company out of the data file of the earlier edition: what of it fits, and the copy.
#pragma once

#include <functional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "core/session.h"
#include "movein/legacy_file.h"
#include "screen/caption.h"

namespace kaunter {

struct LegacyTrouble {
  std::string table;
  std::int64_t row = 0;  // in the file, from 1; 0 for the table as a whole
  std::string key;
  std::string column;
  std::string value;
  Caption reason;
  enum class Kind { note, left_out, stops } kind = Kind::note;
};

struct LegacyCount {
  std::string table;
  std::int64_t rows = 0;
  std::int64_t good = 0;
  std::int64_t skipped = 0;  // codes that the office has
  std::int64_t left_out = 0;
  std::string columns;  // of the file, which the office has no place for
};

struct LegacyReport {
  std::vector<LegacyCount> counts;
  std::vector<LegacyTrouble> troubles;
  std::int64_t left_out = 0;
  bool stops = false;
  bool complete = true;
};

struct LegacyProgress {
  std::string what;  // a table, or what is done behind them
  int step = 0;      // which of the steps, from 0
  int steps = 0;
  std::int64_t done = 0;
  std::int64_t total = 0;
};
using LegacyGoOn = std::function<bool(const LegacyProgress&)>;

class LegacyCopy {
 public:
  // `expenses_only`: PersonalExp alone. Throws FileTrouble, SqlError.
  LegacyCopy(Session& session, OdbcSource& source, std::string company, bool expenses_only);

  // Counts, and lists what will not fit. With `cleared` the office counts as empty. Nothing is
  // written. Throws SqlError.
  LegacyReport Check(bool cleared, const LegacyGoOn& go_on);

  // Copies what fits, some hundred rows in a transaction; a failure stops it where it is, and
  // nothing is undone. Then each loan gets its release and is rebuilt, and each customer is summed.
  // False when the person stopped it. Throws SqlError, std::runtime_error.
  bool Run(const LegacyGoOn& go_on);

 private:
  struct Pick;
  class TableReader;
  bool InFile(std::string_view table) const;
  std::vector<const LegacyTable*> Tables() const;
  void CheckTable(const LegacyTable& table, bool cleared, const LegacyGoOn& go_on,
                  LegacyProgress progress, LegacyReport* report);
  void NoteBelonging(const LegacyTable& table, const std::string& customer, const std::string& loan,
                     const std::function<void(Caption)>& note);
  bool CopyTable(const LegacyTable& table, const LegacyGoOn& go_on, LegacyProgress progress);
  void AddCounters();
  bool Release(const LegacyGoOn& go_on, LegacyProgress progress);
  bool Rebuild(const LegacyGoOn& go_on, LegacyProgress progress);
  std::string InterestMethod();
  std::string OldCompany();
  bool InOffice(const LegacyTable& table, const std::vector<std::string>& key);

  Session& session_;
  Connection& main_;
  OdbcSource& source_;
  std::string company_;
  bool expenses_only_;
  std::vector<std::string> tables_;  // of the file
  std::string method_;               // of the interest of all loans
  std::string old_company_;
  std::set<std::string> customers_;  // of the file, as the check has met them
  std::set<std::string> loans_;
};

}  // namespace kaunter
