#include "platform/rolling_file.h"

#include <fmt/format.h>

#include <stdexcept>
#include <utility>

#include "platform/append_file.h"
#include "platform/private_file.h"

namespace kaunter {
namespace {

class Locked {
 public:
  explicit Locked(AppendFile& file) : file_(file) { file_.Lock(); }
  ~Locked() { file_.Unlock(); }
  Locked(const Locked&) = delete;
  Locked& operator=(const Locked&) = delete;

 private:
  AppendFile& file_;
};

}  // namespace

RollingFile::RollingFile(std::filesystem::path path, std::uintmax_t largest, int kept,
                         std::string head)
    : path_(std::move(path)), largest_(largest), kept_(kept), head_(std::move(head)) {}

RollingFile::~RollingFile() = default;

// Where the folder does not let it, the file goes on growing: no line is lost for it.
bool RollingFile::SetAside() const {
  const auto numbered = [this](int number) {
    return number == 0 ? path_.string() : fmt::format("{}.{}", path_.string(), number);
  };
  std::error_code failed;
  for (int number = kept_ - 1; number >= 0; --number) {
    std::filesystem::rename(numbered(number), numbered(number + 1), failed);
  }
  return !failed;  // of the last one, which is the file itself
}

bool RollingFile::AddTo(AppendFile& file, std::string_view text) const {
  const Locked locked(file);
  if (!file.IsAt(path_)) return false;  // another process has set it aside
  const std::uintmax_t size = file.Size();
  if (size > 0 && size + text.size() > largest_ && file.IsRegular() && SetAside()) return false;
  const std::string why = file.Append(size == 0 ? head_ + std::string(text) : std::string(text));
  if (why.empty()) return true;
  throw std::runtime_error(fmt::format("cannot write {}: {}", path_.string(), why));
}

void RollingFile::Add(std::string_view text) {
  for (;;) {
    if (file_ == nullptr) {
      if (!MakePrivateFile(path_)) KeepPrivate(path_);
      file_ = std::make_unique<AppendFile>(path_);
    }
    if (AddTo(*file_, text)) return;
    file_.reset();
  }
}

}  // namespace kaunter
