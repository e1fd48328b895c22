// An office in a folder of its own, gone with the test: a session on an embedded database and a
// desk that nobody sits at.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <initializer_list>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

#include "core/connect_sequence.h"
#include "core/log.h"
#include "core/new_office.h"
#include "core/session.h"
#include "core/values.h"
#include "platform/sql/data_source.h"
#include "tests/screen/silent_desk.h"

namespace kaunter {

// The rows of a table of texts.
template <std::size_t N>
using TextRows = std::initializer_list<std::array<const char*, N>>;

// In memory where the machine has such a place: these tests do not ask what a lost disk does, and
// some start an office hundreds of times.
class TempFolder {
 public:
  TempFolder() {
    const std::filesystem::path memory = "/dev/shm";
    const auto place =
        access(memory.c_str(), W_OK) == 0 ? memory : std::filesystem::temp_directory_path();
    std::string name = (place / "kaunter-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("no temporary folder");
    path_ = name;
  }
  ~TempFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;
  std::string File(std::string_view name) const { return (path_ / name).string(); }
  std::string path() const { return path_.string(); }

 private:
  std::filesystem::path path_;
};

// A row a line, with `behind` behind each field.
inline std::string LinesOf(const Recordset& rows, std::string_view behind = " ") {
  std::string text;
  for (const auto& row : rows.rows()) {
    for (const Value& field : row) text.append(field.ToText()).append(behind);
    text += "\n";
  }
  return text;
}

// Behind the words of a read that FailAt stopped.
inline const std::string kReadAgain = "\nthe disk is full\nMend the cause and read it again.";

class Office {
 public:
  enum class State { base, patched };  // base tables only; or as a first connect leaves it

  explicit Office(State state) {
    session.AppPath = folder.path();
    session.ConnAccount = "MainUser";
    session.ConnDataSource = session.ConnDatabase = "Office";
    session.CurrentUserID = "AMY";
    session.clock.Set({2024, 1, 31, 14, 5, 9});
    session.data_sources.Add("Office", {DataSource::Kind::kEmbedded, folder.File("office.db")});
    MakeLogFolder(session);
    std::filesystem::copy_file(Template(state), folder.File("office.db"));
    Open();
  }

  // A fresh connection to the same file, as a restart of the program has it.
  void Open() {
    session.LogsConn.reset();
    session.MainConn.reset();
    session.MainConn = OpenSqlite("MainConn", folder.File("office.db"), false, session.clock);
    session.settings = {};
  }

  void Connect() {
    RunConnectSequence(session, desk,
                       [this](std::string_view step) { steps.push_back(std::string(step)); });
  }

  std::string Scalar(std::string_view sql) { return ScalarQuery(session.Main(), sql); }
  void Run(std::string_view sql) { session.Main().Execute(sql); }
  std::string Lines(const std::string& sql, std::string_view behind = " ") {
    return LinesOf(session.Main().Query(sql), behind);
  }

  // Fails statement `at` of the act, once or from there on; true when that was reached. A rollback
  // fails with a cut line only.
  enum class Failure { passes, stays, line_cut };
  bool FailAt(int at, Failure how, const std::function<void()>& act) {
    int count = 0;
    bool hit = false;
    bool kept = false;
    const std::uint64_t before = session.Main().kept();
    committed = false;
    session.Main().SetFaultHook([&](std::string_view sql) {
      if (sql.starts_with("ROLLBACK") && how != Failure::line_cut) return;
      ++count;
      if (count == at || (how != Failure::passes && count > at)) {
        if (!std::exchange(hit, true)) kept = session.Main().kept() != before;
        throw SqlError(1105, "the disk is full");
      }
      committed = committed || sql.starts_with("COMMIT");
    });
    SilentDesk::listener = [&](std::string_view text) {
      if (hit) CheckTold(text, kept, session.Main().kept() != before);
    };
    act();
    SilentDesk::listener = {};
    session.Main().SetFaultHook({});
    return hit;
  }
  // Whoever tells of the failure names its cause, what was kept before it or since, and what to do.
  static void CheckTold(std::string_view text, bool before, bool since) {
    const auto has = [text](std::string_view part) { return text.find(part) != text.npos; };
    if (!has(" occur") && !has("the disk is full")) return;
    EXPECT_TRUE(has("the disk is full") && (has("Mend the cause") || has("排除原因"))) << text;
    EXPECT_FALSE(before && has("Nothing of it was kept")) << text;
    EXPECT_FALSE(!since && has("stays saved")) << text;
  }
  bool committed = false;  // the act of FailAt had come past a commit

  // The audit is on, in a file of its own.
  void OpenAudit() {
    session.settings.TransLogs = true;
    session.LogsConn = OpenSqlite("LogsConn", folder.File("logs.db"), true, session.clock);
    CreateMissingAuditTables(*session.LogsConn);
  }

  // All tables with their columns, in order.
  std::map<std::string, std::vector<std::string>> Shape() {
    std::map<std::string, std::vector<std::string>> shape;
    Recordset tables = session.Main().Query(
        "SELECT TABLE_NAME FROM INFORMATION_SCHEMA.TABLES WHERE TABLE_TYPE='BASE TABLE'");
    for (; !tables.Eof(); tables.MoveNext()) {
      const std::string table = tables.Field(0).ToText();
      const Recordset empty = session.Main().Query("SELECT * FROM [" + table + "] WHERE 1=0");
      for (const Column& column : empty.columns()) shape[table].push_back(column.name);
    }
    return shape;
  }

  // The lines of the text log of the set day.
  std::vector<std::string> Log() {
    std::ifstream file(folder.File("logs/log31-01-2024.log"));
    std::vector<std::string> lines;
    for (std::string line; std::getline(file, line);) lines.push_back(line);
    return lines;
  }

  TempFolder folder;
  Session session;
  SilentDesk desk;
  std::vector<std::string> steps;

 private:
  // Made once a test program: a copy of a file is quicker than a walk through all patches.
  static std::string Template(State state) {
    static TempFolder templates;
    static Clock clock;
    const std::string base = templates.File("base.db");
    const std::string patched = templates.File("patched.db");
    if (!std::filesystem::exists(base)) {
      CreateEmptyOffice(*OpenSqlite("MainConn", base, true, clock));
    }
    if (state == State::base) return base;
    if (!std::filesystem::exists(patched)) {
      Office office(State::base);
      office.Connect();
      office.session.MainConn.reset();
      std::filesystem::copy_file(office.folder.File("office.db"), patched);
    }
    return patched;
  }
};

}  // namespace kaunter
