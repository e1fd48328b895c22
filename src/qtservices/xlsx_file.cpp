#include "qtservices/xlsx_file.h"

#include <fmt/format.h>
#include <xlsxwriter.h>

#include <QTemporaryFile>
#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <optional>
#include <stdexcept>
#include <utility>
#include <vector>

#include "core/values.h"
#include "platform/disk.h"
#include "platform/private_file.h"
#include "reports/report_texts.h"

namespace kaunter {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kMostText = 32767;  // signs that a cell of a workbook takes
constexpr double kWidest = 60;

[[noreturn]] void Refuse(const std::string& path, const std::string& why) {
  throw std::runtime_error(
      fmt::format("{} cannot be written: {}. Is the folder there, and is there room on the disk? "
                  "What was there before stays as it was.",
                  path, why));
}

// How many columns of a plain font a text takes: a Chinese sign takes two.
double WidthOf(std::string_view text) {
  double width = 0;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if ((byte & 0xC0) != 0x80) width += byte >= 0xE0 ? 2 : 1;
  }
  return width;
}

// No longer than a cell takes, and no letter cut apart. A cell's line ends with one sign.
std::string ForCell(std::string text) {
  for (auto at = text.find('\r'); at != std::string::npos; at = text.find('\r', at)) {
    if (at + 1 < text.size() && text[at + 1] == '\n') {
      text.erase(at, 1);
    } else {
      text[at] = '\n';
    }
  }
  if (text.size() <= kMostText) return text;
  std::size_t end = kMostText;
  while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80) --end;
  return text.substr(0, end);
}

// The parts of a workbook are written before they are packed, and nobody tells when the disk is
// full meanwhile: the room is asked for before. Names, signs that are written out, and frames of a
// cell included this is more than is needed.
void AskForRoom(const ReportRows& rows, const std::string& path) {
  constexpr std::size_t kFrame = 128;
  constexpr std::size_t kMostForASign = 7;
  std::size_t needed = 1 << 16;
  for (const auto& row : rows.rows) {
    for (const Value& value : row) needed += kFrame + kMostForASign * value.ToText().size();
  }
  QTemporaryFile probe(QString::fromStdString(path + ".XXXXXX"));
  if (!probe.open()) Refuse(path, probe.errorString().toStdString());
  const std::string failure = ReserveRoom(probe.fileName().toStdString(), needed);
  if (!failure.empty()) Refuse(path, failure);
}

class Workbook {
 public:
  Workbook(const std::string& path, const std::string& folder) : folder_(folder) {
    lxw_workbook_options options = {};
    options.tmpdir = folder_.data();
    book_ = workbook_new_opt(path.c_str(), &options);
    if (book_ == nullptr) throw std::bad_alloc();
    head_ = Form("");
    format_set_bold(head_);
    format_set_bottom(head_, LXW_BORDER_THIN);
    money_ = Form("#,##0.00");
    rate_ = Form("0.00##");
    integer_ = Form("0");
    date_ = Form("dd-mm-yyyy");
  }
  ~Workbook() {
    if (book_ != nullptr) lxw_workbook_free(book_);
  }
  Workbook(const Workbook&) = delete;
  Workbook& operator=(const Workbook&) = delete;

  void Fill(const ReportRows& rows) {
    sheet_ = workbook_add_worksheet(book_, SheetName(rows.title).c_str());
    // A name that a workbook does not take leaves the sheet without one of its own.
    if (sheet_ == nullptr) sheet_ = workbook_add_worksheet(book_, nullptr);
    for (std::size_t i = 0; i < rows.columns.size(); ++i) Column(rows, i);
    const auto last = static_cast<lxw_row_t>(rows.rows.size());
    worksheet_freeze_panes(sheet_, 1, 0);
    if (!rows.columns.empty()) {
      Told(worksheet_autofilter(sheet_, 0, 0, last,
                                static_cast<lxw_col_t>(rows.columns.size() - 1)));
    }
    Told(fault_);
  }

  void Close() {
    const lxw_error error = workbook_close(book_);
    book_ = nullptr;
    Told(error);
  }

 private:
  static void Told(lxw_error error) {
    if (error != LXW_NO_ERROR) throw std::runtime_error(lxw_strerror(error));
  }

  // The first failure counts.
  void Note(lxw_error error) {
    if (fault_ == LXW_NO_ERROR) fault_ = error;
  }

  lxw_format* Form(const char* numbers) {
    lxw_format* form = workbook_add_format(book_);
    if (*numbers != '\0') format_set_num_format(form, numbers);
    return form;
  }

  static std::string SheetName(const std::string& title) {
    constexpr std::size_t kMost = 31;
    std::string name;
    std::size_t signs = 0;
    for (const char c : title) {
      const bool begins = (static_cast<unsigned char>(c) & 0xC0) != 0x80;
      if (begins && ++signs > kMost) break;
      name += std::string_view("[]:*?/\\'").find(c) != std::string_view::npos ? ' ' : c;
    }
    return Trim(name).empty() ? "Report" : Trim(name);
  }

  void Column(const ReportRows& rows, std::size_t column) {
    const CellKind kind = rows.columns[column].kind;
    const auto at = static_cast<lxw_col_t>(column);
    Note(worksheet_write_string(sheet_, 0, at, rows.columns[column].heading.c_str(), head_));
    double width = WidthOf(rows.columns[column].heading) + 3;  // the sign of the filter
    for (std::size_t row = 0; row < rows.rows.size(); ++row) {
      const Value& value = rows.rows[row][column];
      Cell(static_cast<lxw_row_t>(row + 1), at, value, kind);
      width = std::max(width, WidthOf(ShowCell(value, kind)) + 1);
    }
    Note(worksheet_set_column(sheet_, at, at, std::min(width, kWidest), nullptr));
  }

  void Cell(lxw_row_t row, lxw_col_t column, const Value& value, CellKind kind) {
    if (value.IsNull()) return;
    constexpr int kFirstYear = 1900;  // of the calendar that a workbook counts days by
    const DateTime* date = value.AsDate();
    if (date != nullptr && date->year >= kFirstYear) {
      lxw_datetime day = {date->year, date->month, date->day, 0, 0, 0};
      Note(worksheet_write_datetime(sheet_, row, column, &day, date_));
      return;
    }
    const std::string text = ShowCell(value, kind);
    if (text.empty()) return;
    const bool is_text = date != nullptr || value.AsText() != nullptr;
    if (is_text && (date != nullptr || kind == CellKind::text || kind == CellKind::date ||
                    !IsNumeric(*value.AsText()))) {
      Note(worksheet_write_string(sheet_, row, column, ForCell(text).c_str(), nullptr));
      return;
    }
    // A workbook knows no other figures than binary ones; these have the same fifteen digits.
    Note(worksheet_write_number(sheet_, row, column, CDbl(value.ToText()), Form(value, kind)));
  }

  lxw_format* Form(const Value& value, CellKind kind) const {
    if (kind == CellKind::money) return money_;
    if (kind == CellKind::rate) return rate_;
    if (kind == CellKind::integer || value.AsInteger() != nullptr) return integer_;
    return value.AsMoney() != nullptr ? money_ : nullptr;
  }

  std::string folder_;
  lxw_workbook* book_ = nullptr;
  lxw_worksheet* sheet_ = nullptr;
  lxw_format* head_ = nullptr;
  lxw_format* money_ = nullptr;
  lxw_format* rate_ = nullptr;
  lxw_format* integer_ = nullptr;
  lxw_format* date_ = nullptr;
  lxw_error fault_ = LXW_NO_ERROR;
};

// The list of its parts stands at the end of a workbook, 22 bytes long.
bool IsWhole(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  file.seekg(-22, std::ios::end);
  char sign[4] = {};
  file.read(sign, sizeof sign);
  return file && std::memcmp(sign, "PK\5\6", sizeof sign) == 0;
}

}  // namespace

void WriteXlsx(const ReportRows& rows, const std::string& path) {
  if (rows.rows.size() >= LXW_ROW_MAX) {
    Refuse(path,
           fmt::format("a sheet of a workbook takes {} rows, the report has {}; choose fewer, "
                       "or save it as CSV",
                       LXW_ROW_MAX - 1, rows.rows.size()));
  }
  AskForRoom(rows, path);
  // Beside its place until it is whole; left behind it goes.
  std::optional<QTemporaryFile> place(std::in_place, QString::fromStdString(path + ".XXXXXX"));
  if (!place->open()) Refuse(path, place->errorString().toStdString());
  const std::string written = place->fileName().toStdString();
  const std::string folder = fs::path(written).parent_path().string();
  try {
    Workbook book(written, folder.empty() ? "." : folder);
    book.Fill(rows);
    book.Close();
  } catch (const std::runtime_error& error) {
    Refuse(path, error.what());
  }
  if (!IsWhole(written)) Refuse(path, "it did not become whole");
  // Windows renames no file that is open, and a temporary one stays open until it is gone.
  place->setAutoRemove(false);
  place.reset();
  SyncFile(written);
  MakePrivate(written);
  std::error_code error;
  fs::rename(written, path, error);
  if (!error) return;
  std::error_code ignored;
  fs::remove(written, ignored);
  Refuse(path, error.message());
}

}  // namespace kaunter
