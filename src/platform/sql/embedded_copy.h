// Copies of embedded databases that desks work on, the check of a copy, and the way back.
//
// Always by the engine: whoever else opens and closes a file takes away the locks that this process
// has on it, and another desktop would then throw its log away.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

struct sqlite3;

namespace kaunter {

// Where a copy or a check stands, in steps of its own; false ends it.
using EmbeddedGoOn = std::function<bool(std::int64_t done, std::int64_t total)>;

struct EmbeddedCloser {
  void operator()(sqlite3* db) const;
};

// The database as its last commit left it, held while desks go on saving. No save waits for it; the
// log of the file grows by what is saved meanwhile.
class EmbeddedSnapshot {
 public:
  // Throws SqlError.
  explicit EmbeddedSnapshot(const std::string& path);

  // How many rows each table has.
  std::map<std::string, std::int64_t> Rows() const;
  // Into a new file of its owner's alone, a portion at a time, and onto the disk. False when it was
  // ended; then, and when it throws SqlError, no file is left.
  bool CopyTo(const std::string& path, const EmbeddedGoOn& go_on) const;

 private:
  std::string path_;
  std::unique_ptr<sqlite3, EmbeddedCloser> db_;
};

// What the engine finds wrong in a file: a page, an index, a value that breaks a rule of its table.
// Nothing when it is sound. Throws SqlError for one that is not to be opened, or when it was ended.
std::vector<std::string> FaultsOfEmbedded(const std::string& path, const EmbeddedGoOn& go_on);

// Copies the file as its last commit left it, whole or not at all, while connections to it stay
// open. Throws SqlError.
void CopySqlite(const std::string& path, const std::string& copy);

// The only connection to a file as long as it lives: whoever else wants to open it waits.
class EmbeddedAlone {
 public:
  // Throws SqlError: 1222 while another connection is open, in this program or any other.
  explicit EmbeddedAlone(const std::string& path);

  // Whole or not at all. Throws SqlError.
  void CopyTo(const std::string& copy) const;
  // Takes over what another file holds, in one transaction: whatever ends it on the way, this
  // program included, leaves the file as it was. Throws SqlError.
  void Become(const std::string& other) const;

 private:
  std::string path_;
  std::unique_ptr<sqlite3, EmbeddedCloser> db_;
};

// For a file that is missing or cannot be opened: it gives way with its log and the log's index,
// which get `kept` as the beginning of their names, and a copy of `copy` takes its place. Cut on
// the way, the place holds what nobody takes for an office. Throws SqlError.
void PutInPlace(const std::string& copy, const std::string& path, const std::string& kept);

}  // namespace kaunter
