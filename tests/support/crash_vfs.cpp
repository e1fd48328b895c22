#include "tests/support/crash_vfs.h"

#include <fcntl.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <map>
#include <random>
#include <string>
#include <vector>

namespace kaunter::test {
namespace {

constexpr std::size_t kSector = 512;

// One change of a file that no sync has made safe yet.
struct Change {
  sqlite3_int64 offset;
  std::vector<char> before;  // what the bytes were, as far as the file reached
  std::vector<char> after;   // empty for a truncation
  sqlite3_int64 size_before;
};

struct CrashFile {
  sqlite3_file base;
  std::vector<Change>* changes;  // null for a nameless temporary file
  sqlite3_file* real;
};

CrashPlan g_plan;
long g_count = 0;
sqlite3_vfs* g_real = nullptr;
std::map<std::string, std::vector<Change>> g_files;

CrashFile* Own(sqlite3_file* file) { return reinterpret_cast<CrashFile*>(file); }
sqlite3_file* Real(sqlite3_file* file) { return Own(file)->real; }

void WriteAt(int fd, const char* data, std::size_t size, sqlite3_int64 offset) {
  if (size > 0 && pwrite(fd, data, size, offset) != static_cast<ssize_t>(size)) _exit(3);
}

void Undo(int fd, const std::vector<Change>& changes) {
  for (auto change = changes.rbegin(); change != changes.rend(); ++change) {
    WriteAt(fd, change->before.data(), change->before.size(), change->offset);
    if (ftruncate(fd, change->size_before) != 0) _exit(3);
  }
}

void LetSomeThrough(int fd, const std::vector<Change>& changes, std::mt19937& random) {
  for (const Change& change : changes) {
    if (change.after.empty()) {
      if (random() % 2 == 0 && ftruncate(fd, change.offset) != 0) _exit(3);
      continue;
    }
    const unsigned mode = random() % 4;  // lost, whole, or torn
    for (std::size_t at = 0; at < change.after.size(); at += kSector) {
      if (mode == 0 || (mode > 1 && random() % 2 == 0)) continue;
      WriteAt(fd, change.after.data() + at, std::min(kSector, change.after.size() - at),
              change.offset + static_cast<sqlite3_int64>(at));
    }
  }
}

[[noreturn]] void LosePower() {
  std::mt19937 random(g_plan.seed);
  for (const auto& [path, changes] : g_files) {
    // The index of the log lives in memory only.
    unlink((path + "-shm").c_str());
    const int fd = open(path.c_str(), O_RDWR);
    if (fd < 0) continue;
    Undo(fd, changes);
    LetSomeThrough(fd, changes, random);
  }
  _exit(kCrashStatus);
}

void Count() {
  if (++g_count == g_plan.die_at) LosePower();
}

void Remember(sqlite3_file* file, sqlite3_int64 offset, const char* data, std::size_t size) {
  if (Own(file)->changes == nullptr) return;
  Change change;
  change.offset = offset;
  Real(file)->pMethods->xFileSize(Real(file), &change.size_before);
  const sqlite3_int64 end =
      data == nullptr ? change.size_before : offset + static_cast<sqlite3_int64>(size);
  const sqlite3_int64 known = std::min(end, change.size_before) - offset;
  if (known > 0) {
    change.before.resize(static_cast<std::size_t>(known));
    Real(file)->pMethods->xRead(Real(file), change.before.data(), static_cast<int>(known), offset);
  }
  if (data != nullptr) change.after.assign(data, data + size);
  Own(file)->changes->push_back(std::move(change));
}

int Close(sqlite3_file* f) { return Real(f)->pMethods->xClose(Real(f)); }
int Read(sqlite3_file* f, void* to, int size, sqlite3_int64 at) {
  return Real(f)->pMethods->xRead(Real(f), to, size, at);
}
int Write(sqlite3_file* f, const void* data, int size, sqlite3_int64 at) {
  Count();
  Remember(f, at, static_cast<const char*>(data), static_cast<std::size_t>(size));
  return Real(f)->pMethods->xWrite(Real(f), data, size, at);
}
int Truncate(sqlite3_file* f, sqlite3_int64 size) {
  Count();
  Remember(f, size, nullptr, 0);
  return Real(f)->pMethods->xTruncate(Real(f), size);
}
int Sync(sqlite3_file* f, int flags) {
  Count();
  if (Own(f)->changes != nullptr) Own(f)->changes->clear();
  return Real(f)->pMethods->xSync(Real(f), flags);
}
int FileSize(sqlite3_file* f, sqlite3_int64* size) {
  return Real(f)->pMethods->xFileSize(Real(f), size);
}
int Lock(sqlite3_file* f, int level) { return Real(f)->pMethods->xLock(Real(f), level); }
int Unlock(sqlite3_file* f, int level) { return Real(f)->pMethods->xUnlock(Real(f), level); }
int CheckReserved(sqlite3_file* f, int* out) {
  return Real(f)->pMethods->xCheckReservedLock(Real(f), out);
}
int Control(sqlite3_file* f, int op, void* argument) {
  return Real(f)->pMethods->xFileControl(Real(f), op, argument);
}
int SectorSize(sqlite3_file*) { return static_cast<int>(kSector); }
// Nothing is promised: no atomic writes, no order between them.
int Characteristics(sqlite3_file*) { return 0; }
int ShmMap(sqlite3_file* f, int page, int size, int extend, void volatile** out) {
  return Real(f)->pMethods->xShmMap(Real(f), page, size, extend, out);
}
int ShmLock(sqlite3_file* f, int offset, int n, int flags) {
  return Real(f)->pMethods->xShmLock(Real(f), offset, n, flags);
}
void ShmBarrier(sqlite3_file* f) { Real(f)->pMethods->xShmBarrier(Real(f)); }
int ShmUnmap(sqlite3_file* f, int remove) { return Real(f)->pMethods->xShmUnmap(Real(f), remove); }

const sqlite3_io_methods kMethods = {
    2,        Close,         Read,    Write,      Truncate,        Sync,   FileSize, Lock,
    Unlock,   CheckReserved, Control, SectorSize, Characteristics, ShmMap, ShmLock,  ShmBarrier,
    ShmUnmap, nullptr,       nullptr,
};

int Open(sqlite3_vfs*, const char* path, sqlite3_file* file, int flags, int* out_flags) {
  CrashFile* own = Own(file);
  own->real = reinterpret_cast<sqlite3_file*>(own + 1);
  own->changes = path == nullptr ? nullptr : &g_files[path];
  const int code = g_real->xOpen(g_real, path, own->real, flags, out_flags);
  own->base.pMethods = code == SQLITE_OK ? &kMethods : nullptr;
  return code;
}

int Delete(sqlite3_vfs*, const char* path, int sync_folder) {
  Count();
  g_files.erase(path);
  return g_real->xDelete(g_real, path, sync_folder);
}

}  // namespace

void PullThePlug() { LosePower(); }

void InstallCrashVfs(const CrashPlan& plan) {
  g_plan = plan;
  g_real = sqlite3_vfs_find(nullptr);
  static sqlite3_vfs own = *g_real;
  own.zName = "crash";
  own.szOsFile = static_cast<int>(sizeof(CrashFile)) + g_real->szOsFile;
  own.xOpen = Open;
  own.xDelete = Delete;
  own.pNext = nullptr;
  sqlite3_vfs_register(&own, 1);
}

}  // namespace kaunter::test
