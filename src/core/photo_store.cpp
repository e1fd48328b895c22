#include "core/photo_store.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <stdexcept>
#include <utility>

#include "core/identity.h"
#include "core/log.h"
#include "core/session.h"
#include "core/telling.h"
#include "core/values.h"
#include "core/waiting_picture.h"
#include "platform/sql/data_source.h"
#include "platform/sql/odbc/odbc_source.h"
#include "screen/hourglass.h"
#include "screen/screen.h"

namespace kaunter {
namespace {

constexpr const char* kSource = "photo";

struct StoreColumn {
  const char* name;
  CardField field;
};
constexpr StoreColumn kColumns[] = {{"IC", CardField::new_ic},
                                    {"Name", CardField::name},
                                    {"Gender", CardField::gender},
                                    {"Religion", CardField::religion},
                                    {"Citizenship", CardField::citizenship},
                                    {"Add1", CardField::add1},
                                    {"Add2", CardField::add2},
                                    {"Add3", CardField::add3},
                                    {"PostCode", CardField::postcode},
                                    {"City", CardField::city},
                                    {"State", CardField::state}};

std::string Digits(std::string_view ic) {
  std::string digits;
  std::ranges::copy_if(ic, std::back_inserter(digits), [](char c) { return c >= '0' && c <= '9'; });
  return digits;
}

// Debian's driver for such files only reads them, and knows too little for a connection.
std::optional<std::string> ReadOnlySource(const Session& session) {
  const auto source = session.data_sources.Find(kSource);
  if (!source || source->kind != DataSource::Kind::kOdbc) return std::nullopt;
  if (Lower(source->target).find("mdbtools") == std::string::npos) return std::nullopt;
  return source->target;
}

std::unique_ptr<Connection> OpenStore(const Session& session) {
  auto store = OpenConnection(kSource, fmt::format("Data Source={}", kSource), session.data_sources,
                              session.clock);
  if (session.trace) store->SetTrace(session.trace);
  return store;
}

// A row, whatever reads it, by the names of its columns.
using RowTexts = std::function<std::string(std::string_view column)>;

void TakeNewer(const RowTexts& text, const std::string& ic, std::optional<CardReading>* newest) {
  if (Digits(text("IC")) != Digits(ic)) return;
  std::string kept_on = text("DateTime");
  if (*newest && kept_on < (*newest)->kept_on) return;
  CardReading kept;
  for (const auto& [column, field] : kColumns) kept.values[field] = text(column);
  kept.values.Tidy();
  kept.photo = PictureBytes(text("CustPhoto"));
  kept.kept_on = std::move(kept_on);  // year first, so that the later is the greater
  *newest = std::move(kept);
}

std::string BinaryLiteral(const std::string& bytes) {
  if (bytes.empty()) return "null";
  std::string literal = "0x";
  for (const char c : bytes) literal += fmt::format("{:02X}", static_cast<unsigned char>(c));
  return literal;
}

void AddRow(Session& session, const CardReading& reading) {
  if (ReadOnlySource(session)) {
    throw std::runtime_error(
        session.In({"The driver of the data source photo only reads. Name another in the settings "
                    "of this PC.",
                    "数据源 photo 的驱动程序只能读取。请在本机设定中换另一个。"}));
  }
  const auto store = OpenStore(session);
  store->Query("SELECT IC FROM CustPhoto");
  std::string columns;
  std::string values;
  for (const auto& [column, field] : kColumns) {
    columns += fmt::format("{},", column);
    values += QuoteStr(reading.values[field]) + ",";
  }
  store->Execute(fmt::format("INSERT INTO CustPhoto ({}[DateTime],CustPhoto) VALUES ({}{},{})",
                             columns, values, SqlDateTime(ServerTime(session.Main())),
                             BinaryLiteral(reading.photo)));
}

}  // namespace

bool HasPhotoStore(const Session& session) {
  return session.data_sources.Find(kSource).has_value();
}

std::optional<CardReading> FindInPhotoStore(const Session& session, const std::string& ic) {
  const std::string masked = MaskNewIc(Digits(ic));
  if (!IsNewIc(masked)) return std::nullopt;
  std::optional<CardReading> newest;
  if (const auto kept_only = ReadOnlySource(session)) {
    OdbcSource source(*kept_only);
    std::vector<std::string> names;
    const auto take = [&](const OdbcSource::Cells& cells) {
      const auto text = [&](std::string_view column) {
        for (std::size_t i = 0; i < cells.size(); ++i) {
          if (SameText(names[i], column)) return cells[i].value_or("");
        }
        return std::string();
      };
      TakeNewer(text, ic, &newest);
      return true;
    };
    source.Read(
        "CustPhoto",
        [&](const std::vector<Column>& columns) {
          for (const Column& column : columns) names.push_back(column.name);
          return true;
        },
        take, true);
    return newest;
  }
  Recordset rows = OpenStore(session)->Query(fmt::format(
      "SELECT * FROM CustPhoto WHERE IC={} OR IC={}", QuoteStr(masked), QuoteStr(Digits(ic))));
  for (; !rows.Eof(); rows.MoveNext()) {
    TakeNewer([&](std::string_view column) { return rows.Field(column).ToText(); }, ic, &newest);
  }
  return newest;
}

void KeepInPhotoStore(Session& session, const Screen& screen, const CardReading& reading) {
  if (!HasPhotoStore(session)) return;
  try {
    const Hourglass busy(screen.desk());
    AddRow(session, reading);
  } catch (const std::exception& failure) {
    WriteLog(session, LogLine(session, fmt::format("Photo store - {}", failure.what())));
    screen.desk().Message(
        MessageKind::critical, session.In({"MyKad Information", "身份证资料"}),
        session.In(FailedOrRefused(
            {"an error occur during saving customer photo", "储存顾客照片时发生错误"}, failure)));
  }
}

}  // namespace kaunter
