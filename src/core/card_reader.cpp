#include "core/card_reader.h"

#include <fmt/format.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "core/log.h"
#include "core/photo_store.h"
#include "core/read_mykad_frm.h"
#include "core/session.h"
#include "core/settings.h"
#include "core/telling.h"
#include "core/values.h"
#include "core/waiting_picture.h"
#include "platform/private_file.h"
#include "platform/sql/data_source.h"
#include "screen/hourglass.h"
#include "screen/screen.h"

namespace kaunter {
namespace {

namespace fs = std::filesystem;
using Time = std::chrono::steady_clock;
using std::chrono::milliseconds;

const Caption kReader{"Card Reader", "读卡器"};
const Caption kFailed{"An error occur during reading myKad info", "读取身份证资料时发生错误"};

std::string Bytes(const fs::path& path, std::uintmax_t most) {
  std::error_code error;
  if (!fs::is_regular_file(path, error) || fs::file_size(path, error) > most) return {};
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

// The program of the reader in its folder.
std::string ReaderIn(const fs::path& folder) {
  std::error_code error;
  const fs::path plain = folder / "MyKadReader";
  return fs::is_regular_file(plain, error) ? plain.string() : (folder / "MyKadReader.exe").string();
}

// A file of which nobody knows when its writer is done: it is when it stands still, and at once
// when it looks whole.
class Growing {
 public:
  explicit Growing(fs::path path) : path_(std::move(path)) {}
  const fs::path& path() const { return path_; }
  bool exists() const {
    std::error_code error;
    return fs::exists(path_, error);
  }
  template <typename Whole>
  bool Done(const Whole& is_whole) {
    constexpr auto kStill = milliseconds(300);
    constexpr auto kGivenUp = milliseconds(1500);
    std::error_code error;
    const auto size = fs::file_size(path_, error);
    if (size != size_) {
      size_ = size;
      since_ = Time::now();
    }
    const auto still = Time::now() - since_;
    return still >= kGivenUp || (still >= kStill && is_whole());
  }

 private:
  fs::path path_;
  std::optional<std::uintmax_t> size_;  // nothing before the first look
  Time::time_point since_ = Time::now();
};

// The program of the reader's maker: "MyKadReader.exe Read" leaves MyKad.txt and Photo.jpg in its
// folder. What lies there from an earlier card goes before it runs, and what it wrote goes when it
// has been read, or given up: nobody gets the data of the customer before.
class VendorProgram : public CardSource {
 public:
  explicit VendorProgram(const Session& session)
      : session_(session),
        text_(fs::path(session.MyKadReaderFolder) / "MyKad.txt"),
        photo_(fs::path(session.MyKadReaderFolder) / "Photo.jpg") {}

  std::optional<CardReading> Read(ReadMyKadfrm& wait) override {
    const std::vector<CardField> lines = MyKadLines(session_.AppPath);
    RemoveFirst(text_.path());
    RemoveFirst(photo_.path());
    const Gone gone{*this};
    if (!wait.Run(ReaderIn(session_.MyKadReaderFolder), {"Read"})) return std::nullopt;
    wait.WaitFor([this] { return text_.exists(); }, milliseconds(1000));
    if (!text_.exists()) return std::nullopt;
    wait.WaitFor([&] { return Written(lines.size()); }, milliseconds(5000));
    if (wait.given_up()) return std::nullopt;
    CardReading reading;
    reading.values = CardValuesOf(Bytes(text_.path(), kMostText), lines);
    reading.photo = PictureBytes(Bytes(photo_.path(), kMostPhoto));
    if (reading.values.empty()) return std::nullopt;
    wait.TellRead();
    return reading;
  }

 private:
  static constexpr std::uintmax_t kMostText = 64U * 1024;
  static constexpr std::uintmax_t kMostPhoto = 8U * 1024 * 1024;

  struct Gone {
    const VendorProgram& source;
    ~Gone() {
      std::error_code error;
      fs::remove(source.text_.path(), error);
      fs::remove(source.photo_.path(), error);
    }
  };

  static void RemoveFirst(const fs::path& path) {
    std::error_code error;
    fs::remove(path, error);
    if (!fs::exists(path, error)) return;
    throw CardTrouble{
        {"MyKad Reader", "身份证读卡器"},
        {fmt::format("an error occur reading MyKad detail file\n{} of an earlier card cannot be "
                     "deleted. It must not be taken for the next one: have this folder made "
                     "writable for you.",
                     path.string()),
         fmt::format("读取身份证资料文件时发生错误\n无法删除上一张身份证的 {}。"
                     "为免误作下一张，请让您有权写入此文件夹。",
                     path.string())}};
  }

  bool Written(std::size_t lines) {
    return text_.Done([&] { return CardLines(Bytes(text_.path(), kMostText)).size() >= lines; }) &&
           (!photo_.exists() ||
            photo_.Done([&] { return !PictureBytes(Bytes(photo_.path(), kMostPhoto)).empty(); }));
  }

  const Session& session_;
  Growing text_;
  Growing photo_;
};

// The older program fills the table JPNInfo of the connection MyKad64.
class JpnInfoTable : public CardSource {
 public:
  JpnInfoTable(Session& session) : session_(session) {}

  std::optional<CardReading> Read(ReadMyKadfrm& wait) override {
    const auto table =
        OpenConnection("MyKad64", session_.MyKad64String, session_.data_sources, session_.clock);
    if (session_.trace) table->SetTrace(session_.trace);
    table->Execute("DELETE FROM JPNInfo");
    std::error_code error;
    const bool ended =
        wait.Run(fs::is_directory(session_.MyKadPath, error) ? ReaderIn(session_.MyKadPath)
                                                             : session_.MyKadPath,
                 {});
    const Recordset rows = ended ? table->Query("SELECT * FROM JPNInfo") : Recordset();
    table->Execute("DELETE FROM JPNInfo");
    if (rows.Eof()) return std::nullopt;
    // Another PC on the same table reads at the same time: whose row is whose cannot be told.
    if (rows.rows().size() > 1) {
      throw CardTrouble{kReader,
                        {"An error occur during reading myKad info\nTwo cards were read at the "
                         "same time. Read yours again.",
                         "读取身份证资料时发生错误\n同时读了两张身份证，请再读一次。"}};
    }
    return ReadingOf(rows);
  }

 private:
  static CardReading ReadingOf(const Recordset& row) {
    CardReading reading;
    const auto text = [&](const char* column) { return NullToEmpty(row.Field(column)); };
    const struct {
      const char* column;
      CardField field;
    } columns[] = {{"NewIC", CardField::new_ic},      {"NameOriginal", CardField::name},
                   {"Gender", CardField::gender},     {"OldIC", CardField::old_ic},
                   {"Race", CardField::race},         {"Add1", CardField::add1},
                   {"Add2", CardField::add2},         {"Add3", CardField::add3},
                   {"Postcode", CardField::postcode}, {"City", CardField::city},
                   {"State", CardField::state}};
    for (const auto& [column, field] : columns) reading.values[field] = text(column);
    if (Trim(reading.values[CardField::name]).empty()) {
      reading.values[CardField::name] = text("NameGMPC");
    }
    reading.values.Tidy();
    reading.photo = PictureBytes(text("photo"));
    return reading;
  }

  Session& session_;
};

// What an earlier edition kept of this person's card, read when it was there.
class PhotoStore : public CardSource {
 public:
  PhotoStore(const Session& session, std::string ic) : session_(session), ic_(std::move(ic)) {}

  std::optional<CardReading> Read(ReadMyKadfrm&) override {
    return FindInPhotoStore(session_, ic_);
  }

 private:
  const Session& session_;
  std::string ic_;
};

std::optional<CardReading> FirstReading(Session& session, const Screen& screen,
                                        const std::string& ic, bool* given_up) {
  ReadMyKadfrm wait(session, screen);
  for (const auto& source : CardSources(session, ic)) {
    auto reading = source->Read(wait);
    if (reading && !reading->values.empty()) return reading;
    *given_up = wait.given_up();
    if (*given_up) break;
  }
  return std::nullopt;
}

// Without a card in the reader the person must know that this is an old reading.
void TellKept(const Session& session, const Screen& screen, const std::string& kept_on) {
  const auto time = DateTime::FromCanonical(kept_on);
  const std::string shown = time ? ShowDateTime(Value(*time)) : kept_on;
  screen.desk().Message(
      MessageKind::information, session.In({"MyKad Information", "身份证资料"}),
      session.In({fmt::format("There is no card in the reader. These details are those of the "
                              "photo store, read on {}.",
                              shown),
                  fmt::format("读卡器中没有身份证。这些是照片库的资料，读取于 {}。", shown)}));
}

void WritePhoto(const std::string& bytes, const std::string& path) {
  auto file = OpenPrivate(path, std::ios::trunc);
  file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  file.close();
  if (!file) throw std::runtime_error(fmt::format("{} cannot be written.", path));
}

}  // namespace

std::vector<std::unique_ptr<CardSource>> CardSources(Session& session, const std::string& ic) {
  std::vector<std::unique_ptr<CardSource>> sources;
  if (!session.MyKadReaderFolder.empty())
    sources.push_back(std::make_unique<VendorProgram>(session));
  if (ReadSetting(session.Main(), "MyKAD") == "0") {
    sources.push_back(std::make_unique<JpnInfoTable>(session));
  }
  if (HasPhotoStore(session) && !Trim(ic).empty()) {
    sources.push_back(std::make_unique<PhotoStore>(session, ic));
  }
  return sources;
}

bool ReadMyKad(Session& session, const Screen& screen, const std::string& ic, CardValues& values,
               const std::string& photo_file) {
  const auto tell = [&](MessageKind kind, const Caption& title, const Caption& text) {
    screen.desk().Message(kind, session.In(title), session.In(text));
  };
  try {
    bool given_up = false;
    const auto reading = FirstReading(session, screen, ic, &given_up);
    if (!reading) {
      if (!given_up) {
        tell(MessageKind::information, kReader,
             {"No Info Obtained From The Device", "没找到身份证资料"});
      }
      return false;
    }
    if (!reading->kept_on.empty()) TellKept(session, screen, reading->kept_on);
    if (!reading->photo.empty() && !photo_file.empty()) WritePhoto(reading->photo, photo_file);
    values = reading->values;
    if (reading->kept_on.empty()) KeepInPhotoStore(session, screen, *reading);
    return true;
  } catch (const CardTrouble& trouble) {
    // What stands behind its first line may be a person's.
    const std::string& text = trouble.text.english;
    WriteLog(session, LogLine(session, "Card Reader - " + text.substr(0, text.find('\n'))));
    tell(MessageKind::critical, trouble.title, trouble.text);
  } catch (const std::exception& failure) {
    WriteLog(session, LogLine(session, fmt::format("Card Reader - {}", failure.what())));
    tell(MessageKind::critical, kReader, FailedOrRefused(kFailed, failure));
  }
  return false;
}

}  // namespace kaunter
