#include "platform/ftp_line.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <utility>

#include "platform/disk.h"
#include "platform/private_file.h"
#include "platform/whole_file.h"

namespace kaunter {
namespace {

namespace fs = std::filesystem;
using End = FtpResult::End;

constexpr long kConnectSeconds = 10;
constexpr long kSilentSeconds = 30;        // without a byte or an answer
constexpr long kTidySeconds = 3;           // for taking away what is of no use any more
constexpr std::size_t kLongestName = 255;  // bytes, on most disks
// One is lost to the file that has the name, and one at most to each other PC that gives it in the
// same moment.
constexpr int kRenames = 12;

bool HasControls(std::string_view text) {
  return std::any_of(text.begin(), text.end(), [](char c) {
    return static_cast<unsigned char>(c) < ' ' || c == 0x7F ||
           static_cast<unsigned char>(c) == 0xFF;
  });
}

// In an address; numbers of documents hold a "#", which would end it.
std::string AddressPart(std::string_view text) {
  std::string part;
  for (const char c : text) {
    const bool plain = (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') ||
                       c == '-' || c == '_' || c == '.';
    part += plain ? std::string(1, c) : fmt::format("%{:02X}", static_cast<unsigned char>(c));
  }
  return part;
}

// Commands for the server, each a line.
class Commands {
 public:
  explicit Commands(const std::vector<std::string>& lines) {
    for (const std::string& line : lines) {
      curl_slist* longer = curl_slist_append(list_, line.c_str());
      if (longer == nullptr) throw std::bad_alloc();
      list_ = longer;
    }
  }
  ~Commands() { curl_slist_free_all(list_); }
  Commands(const Commands&) = delete;
  Commands& operator=(const Commands&) = delete;
  curl_slist* get() const { return list_; }

 private:
  curl_slist* list_ = nullptr;
};

std::size_t Take(char* bytes, std::size_t size, std::size_t count, void* file) {
  auto& stream = *static_cast<std::ofstream*>(file);
  stream.write(bytes, static_cast<std::streamsize>(size * count));
  return stream ? size * count : CURL_WRITEFUNC_ERROR;
}

std::size_t TakeNothing(char*, std::size_t size, std::size_t count, void*) { return size * count; }

std::size_t Give(char* bytes, std::size_t size, std::size_t count, void* file) {
  auto& stream = *static_cast<std::ifstream*>(file);
  stream.read(bytes, static_cast<std::streamsize>(size * count));
  return stream.bad() ? CURL_READFUNC_ABORT : static_cast<std::size_t>(stream.gcount());
}

int Moved(void* watch, curl_off_t down_total, curl_off_t down, curl_off_t up_total, curl_off_t up) {
  static_cast<const FtpWatch*>(watch)->moved(down + up, down_total + up_total);
  return 0;
}

// What a code of the library says about the server.
End EndOf(CURLcode code) {
  switch (code) {
    case CURLE_OK:
      return End::done;
    case CURLE_REMOTE_FILE_NOT_FOUND:
    case CURLE_REMOTE_ACCESS_DENIED:  // no such folder
    case CURLE_FTP_COULDNT_RETR_FILE:
      return End::absent;
    case CURLE_QUOTE_ERROR:
    case CURLE_UPLOAD_FAILED:
    case CURLE_READ_ERROR:
    case CURLE_WRITE_ERROR:
      return End::refused;
    default:
      return End::away;
  }
}

// A line may have been there.
bool Connected(CURLcode code) {
  return code != CURLE_COULDNT_RESOLVE_HOST && code != CURLE_COULDNT_CONNECT &&
         code != CURLE_LOGIN_DENIED && code != CURLE_USE_SSL_FAILED;
}

FtpResult Unusable(std::string_view name) {
  std::string shown(name);
  std::replace_if(
      shown.begin(), shown.end(),
      [](char c) {
        return HasControls({&c, 1});
      },
      '?');
  return {End::refused, fmt::format("\"{}\" cannot be the name of a file", shown)};
}

const std::string* FirstUnusable(const std::vector<std::string>& folders, const std::string& name) {
  for (const std::string& folder : folders) {
    if (!IsPlainFileName(folder)) return &folder;
  }
  return IsPlainFileName(name) ? nullptr : &name;
}

}  // namespace

bool IsPlainFileName(std::string_view name) {
  return !name.empty() && name != "." && name != ".." && name.size() <= kLongestName &&
         name.find_first_of("/\\") == std::string_view::npos && !HasControls(name);
}

// The account goes with the options, never with the address: no list of processes, message or trace
// shows it.
void FtpLine::Prepare(const std::vector<std::string>& folders, std::string_view name,
                      const FtpWatch& watch) {
  if (HasControls(server_.user) || HasControls(server_.password) || HasControls(server_.host)) {
    throw std::runtime_error("host, account or password holds a line end");
  }
  std::string address = fmt::format("ftp://{}/", server_.host);
  for (const std::string& folder : folders) address += AddressPart(folder) + "/";
  address += AddressPart(name);
  line_.Begin();
  line_.Set(CURLOPT_URL, address.c_str());
  line_.Set(CURLOPT_PROTOCOLS_STR, "ftp");
  line_.Set(CURLOPT_PROXY, "");
  line_.Set(CURLOPT_USERNAME, server_.user.c_str());
  line_.Set(CURLOPT_PASSWORD, server_.password.c_str());
  const bool strict = server_.must_encrypt || !server_.key.empty();
  line_.Set(CURLOPT_USE_SSL, static_cast<long>(strict ? CURLUSESSL_ALL : CURLUSESSL_TRY));
  const bool trusted = strict && server_.key.empty();
  line_.Set(CURLOPT_SSL_VERIFYPEER, trusted ? 1L : 0L);
  line_.Set(CURLOPT_SSL_VERIFYHOST, trusted ? 2L : 0L);
  if (!server_.key.empty()) {
    line_.Set(CURLOPT_PINNEDPUBLICKEY, fmt::format("sha256//{}", server_.key).c_str());
  }
  line_.Set(CURLOPT_CONNECTTIMEOUT, kConnectSeconds);
  line_.Set(CURLOPT_SERVER_RESPONSE_TIMEOUT, kSilentSeconds);
  line_.Set(CURLOPT_LOW_SPEED_LIMIT, 1L);
  line_.Set(CURLOPT_LOW_SPEED_TIME, kSilentSeconds);
  line_.Set(CURLOPT_WRITEFUNCTION, TakeNothing);
  line_.Set(CURLOPT_NOPROGRESS, 0L);
  line_.Set(CURLOPT_XFERINFOFUNCTION, Moved);
  line_.Set(CURLOPT_XFERINFODATA, &watch);
}

FtpResult FtpLine::Run(const FtpWatch& watch) {
  const auto code = line_.Run(watch.stop_asked);
  if (!code) return {End::stopped, {}};
  if (*code == CURLE_OK) return {};
  return {EndOf(*code), line_.Cause(*code)};
}

// Commands alone, sent in the folder.
FtpResult FtpLine::Act(const std::vector<std::string>& folders,
                       const std::vector<std::string>& commands, long seconds,
                       const FtpWatch& watch) {
  Prepare(folders, {}, watch);
  const Commands list(commands);
  line_.Set(CURLOPT_NOBODY, 1L);
  line_.Set(CURLOPT_POSTQUOTE, list.get());
  line_.Set(CURLOPT_TIMEOUT, seconds);
  return Run(watch);
}

FtpResult FtpLine::CheckSent(const std::vector<std::string>& folders, const std::string& part,
                             std::int64_t size, const FtpWatch& watch) {
  Prepare(folders, part, watch);
  line_.Set(CURLOPT_NOBODY, 1L);
  const FtpResult asked = Run(watch);
  if (asked.end != End::done) return asked;
  curl_off_t there = -1;  // of a server that tells no sizes
  curl_easy_getinfo(line_.easy(), CURLINFO_CONTENT_LENGTH_DOWNLOAD_T, &there);
  if (there < 0 || there == size) return {};
  return {End::away, fmt::format("the server kept {} of {} bytes", there, size)};
}

// Some servers give no name that is taken. The file that has it goes first then, and a desk that
// sends the same one at that moment may be quicker.
FtpResult FtpLine::GiveName(const std::vector<std::string>& folders, const std::string& part,
                            const std::string& name, const FtpWatch& watch) {
  FtpResult given;
  for (int i = 0; i < kRenames; ++i) {
    std::vector<std::string> commands = {"RNFR " + part, "RNTO " + name};
    if (i > 0) commands.insert(commands.begin(), "*DELE " + name);
    given = Act(folders, commands, kSilentSeconds, watch);
    if (given.end != End::refused) return given;
  }
  return given;
}

FtpResult FtpLine::Send(const std::vector<std::string>& folders, const std::string& name,
                        const std::string& source, const FtpWatch& watch) {
  if (const std::string* bad = FirstUnusable(folders, name)) return Unusable(*bad);
  std::ifstream file(source, std::ios::binary);
  std::error_code error;
  const auto size = static_cast<std::int64_t>(fs::file_size(source, error));
  if (!file || error) return {End::refused, fmt::format("{} cannot be read", source)};
  const std::string part = FreeFileName();
  const Commands unicode({"*OPTS UTF8 ON"});
  Prepare(folders, part, watch);
  line_.Set(CURLOPT_QUOTE, unicode.get());
  line_.Set(CURLOPT_FTP_CREATE_MISSING_DIRS, static_cast<long>(CURLFTP_CREATE_DIR_RETRY));
  line_.Set(CURLOPT_UPLOAD, 1L);
  line_.Set(CURLOPT_INFILESIZE_LARGE, static_cast<curl_off_t>(size));
  line_.Set(CURLOPT_READFUNCTION, Give);
  line_.Set(CURLOPT_READDATA, &file);
  const auto code = line_.Run(watch.stop_asked);
  FtpResult sent;
  if (!code) {
    sent.end = End::stopped;
  } else if (*code != CURLE_OK) {
    // The file is there: what the server has no folder or no right for is the server's.
    sent = {EndOf(*code) == End::absent ? End::away : EndOf(*code), line_.Cause(*code)};
  }
  if (sent.end == End::done) sent = CheckSent(folders, part, size, watch);
  if (sent.end == End::done) sent = GiveName(folders, part, name, watch);
  if (sent.end != End::done && (!code || Connected(*code))) {
    Act(folders, {"*DELE " + part}, kTidySeconds, {});
  }
  return sent;
}

FtpResult FtpLine::Fetch(const std::vector<std::string>& folders, const std::string& name,
                         const std::string& place, const std::string& beside,
                         const FtpWatch& watch) {
  if (const std::string* bad = FirstUnusable(folders, name)) return Unusable(*bad);
  std::error_code error;
  FtpResult fetched;
  {
    std::ofstream file = OpenPrivate(beside, std::ios::binary | std::ios::trunc);
    if (!file) return {End::refused, fmt::format("{} cannot be written", beside)};
    const Commands unicode({"*OPTS UTF8 ON"});
    Prepare(folders, name, watch);
    line_.Set(CURLOPT_QUOTE, unicode.get());
    line_.Set(CURLOPT_WRITEFUNCTION, Take);
    line_.Set(CURLOPT_WRITEDATA, &file);
    fetched = Run(watch);
    file.close();
    if (fetched.end == End::done && !file) {
      fetched = {End::refused, fmt::format("{} cannot be written", beside)};
    }
  }
  if (fetched.end == End::done && fs::file_size(beside, error) == 0) {
    fetched = {End::absent, "the file is empty there"};
  }
  if (fetched.end == End::done) {
    try {
      SyncFile(beside);
      TakeName(beside, place);
      return fetched;
    } catch (const std::exception& failure) {
      fetched = {End::refused, failure.what()};
    }
  }
  fs::remove(beside, error);
  return fetched;
}

}  // namespace kaunter
