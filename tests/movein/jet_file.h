// Writes a Jet 4 data file, as far as a reader of its tables needs one: a page of definition, the
// catalogue MSysObjects, a definition and data pages for each table. No indexes, no relations. What
// it writes was laid out from what is generally known of the format and is read by Debian's MDB
// tools; no program of the format's maker has seen it.
#pragma once

#include <array>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <map>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kaunter {

enum class JetType : std::uint8_t {
  boolean = 1,
  small = 3,
  integer = 4,
  money = 5,
  real = 7,
  date = 8,
  text = 10,
  memo = 12,
  ole = 11
};

struct JetColumn {
  std::string name;
  JetType type = JetType::text;
};

// A cell as the file keeps it: nothing, or the bytes.
class JetCell {
 public:
  JetCell() = default;
  static JetCell Text(std::string_view utf8) {
    JetCell cell;
    cell.null_ = false;
    for (const char32_t letter : Letters(utf8)) {
      if (letter < 0x10000) {
        cell.Put16(static_cast<std::uint16_t>(letter));
      } else {
        cell.Put16(static_cast<std::uint16_t>(0xD800 + ((letter - 0x10000) >> 10)));
        cell.Put16(static_cast<std::uint16_t>(0xDC00 + ((letter - 0x10000) & 0x3FF)));
      }
    }
    return cell;
  }
  static JetCell Integer(std::int32_t number) { return Of(&number, sizeof number); }
  static JetCell Small(std::int16_t number) { return Of(&number, sizeof number); }
  static JetCell Money(std::int64_t ten_thousandths) {
    return Of(&ten_thousandths, sizeof ten_thousandths);
  }
  static JetCell Real(double number) { return Of(&number, sizeof number); }
  // Days since the end of 1899.
  static JetCell Day(int days) { return Real(days); }
  static JetCell Bytes(const std::string& bytes) { return Of(bytes.data(), bytes.size()); }

  bool null() const { return null_; }
  const std::string& bytes() const { return bytes_; }

 private:
  static JetCell Of(const void* from, std::size_t size) {
    JetCell cell;
    cell.null_ = false;
    cell.bytes_.assign(static_cast<const char*>(from), size);
    return cell;
  }
  static std::vector<char32_t> Letters(std::string_view utf8) {
    std::vector<char32_t> letters;
    for (std::size_t at = 0; at < utf8.size();) {
      const auto lead = static_cast<unsigned char>(utf8[at]);
      const std::size_t length = lead < 0x80 ? 1 : lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
      char32_t letter = length == 1 ? lead : lead & (0x7F >> length);
      for (std::size_t i = 1; i < length; ++i) {
        letter = (letter << 6) | (static_cast<unsigned char>(utf8[at + i]) & 0x3F);
      }
      letters.push_back(letter);
      at += length;
    }
    return letters;
  }
  void Put16(std::uint16_t number) {
    bytes_.push_back(static_cast<char>(number & 0xFF));
    bytes_.push_back(static_cast<char>(number >> 8));
  }

  bool null_ = true;
  std::string bytes_;
};

class JetFile {
 public:
  using Row = std::vector<JetCell>;

  JetFile() {
    pages_.resize(3);  // of definition, of free pages, of the catalogue
    AddTable("MSysObjects",
             {{"Id", JetType::integer},
              {"ParentId", JetType::integer},
              {"Name", JetType::text},
              {"Type", JetType::small},
              {"Flags", JetType::integer},
              {"LvProp", JetType::ole}},
             2);
  }

  void AddTable(const std::string& name, std::vector<JetColumn> columns) {
    pages_.emplace_back();
    AddTable(name, std::move(columns), static_cast<std::uint32_t>(pages_.size() - 1));
  }
  void AddRow(const std::string& table, const Row& cells) {
    Table& into = tables_.at(table);
    const std::string row = RowBytes(into, cells);
    if (into.data.empty() || !Fits(pages_[into.data.back()], row)) {
      pages_.push_back(DataPage(into.definition));
      into.data.push_back(static_cast<std::uint32_t>(pages_.size() - 1));
    }
    Append(pages_[into.data.back()], row);
    ++into.rows;
  }

  void Save(const std::string& path) {
    for (const auto& [name, table] : tables_) {
      AddRow("MSysObjects", {JetCell::Integer(static_cast<std::int32_t>(table.definition)),
                             JetCell::Integer(0x0F000001), JetCell::Text(name), JetCell::Small(1),
                             JetCell::Integer(name == "MSysObjects" ? INT32_MIN : 0), JetCell()});
    }
    for (auto& [name, table] : tables_) Define(table);
    pages_[0] = DefinitionPage();
    pages_[1].resize(kPage);
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    for (std::string& page : pages_) {
      page.resize(kPage);
      out << page;
    }
  }

 private:
  static constexpr std::size_t kPage = 4096;
  static constexpr std::size_t kFirstOffset = 14;

  struct Table {
    std::uint32_t definition = 0;
    std::vector<JetColumn> columns;
    std::vector<std::uint32_t> data;
    std::uint32_t rows = 0;
  };

  static bool IsFixed(JetType type) {
    return type != JetType::text && type != JetType::memo && type != JetType::ole;
  }
  static std::size_t Width(JetType type) {
    switch (type) {
      case JetType::small:
        return 2;
      case JetType::integer:
        return 4;
      case JetType::money:
      case JetType::real:
      case JetType::date:
        return 8;
      default:
        return 0;
    }
  }

  template <typename T>
  static void Put(std::string* to, T number) {
    to->append(reinterpret_cast<const char*>(&number), sizeof number);
  }
  template <typename T>
  static void PutAt(std::string* to, std::size_t at, T number) {
    std::memcpy(to->data() + at, &number, sizeof number);
  }
  template <typename T>
  static T GetAt(const std::string& from, std::size_t at) {
    T number;
    std::memcpy(&number, from.data() + at, sizeof number);
    return number;
  }

  void AddTable(const std::string& name, std::vector<JetColumn> columns, std::uint32_t page) {
    Table& table = tables_[name];
    table.definition = page;
    table.columns = std::move(columns);
  }

  // --- rows

  static std::string RowBytes(const Table& table, const Row& cells) {
    const std::size_t count = table.columns.size();
    std::string row;
    Put(&row, static_cast<std::uint16_t>(count));
    std::string present((count + 7) / 8, '\0');
    for (std::size_t i = 0; i < count; ++i) {
      const JetType type = table.columns[i].type;
      if (!cells[i].null()) present[i / 8] = static_cast<char>(present[i / 8] | (1 << (i % 8)));
      if (!IsFixed(type)) continue;
      std::string bytes = cells[i].bytes();
      bytes.resize(Width(type));
      row += bytes;
    }
    std::vector<std::uint16_t> offsets;
    for (std::size_t i = 0; i < count; ++i) {
      if (IsFixed(table.columns[i].type)) continue;
      offsets.push_back(static_cast<std::uint16_t>(row.size()));
      if (table.columns[i].type != JetType::text && !cells[i].null()) {
        constexpr std::uint32_t kInTheRow = 0x80000000;
        Put(&row, static_cast<std::uint32_t>(cells[i].bytes().size()) | kInTheRow);
        Put(&row, std::uint64_t{0});
      }
      row += cells[i].bytes();
    }
    Put(&row, static_cast<std::uint16_t>(row.size()));
    for (auto offset = offsets.rbegin(); offset != offsets.rend(); ++offset) Put(&row, *offset);
    Put(&row, static_cast<std::uint16_t>(offsets.size()));
    return row + present;
  }

  static std::string DataPage(std::uint32_t owner) {
    std::string page(kPage, '\0');
    page[0] = page[1] = '\x01';
    PutAt(&page, 4, owner);
    PutAt(&page, 2, static_cast<std::uint16_t>(kPage - kFirstOffset));
    return page;
  }
  static bool Fits(const std::string& page, const std::string& row) {
    return GetAt<std::uint16_t>(page, 2) >= row.size() + 2;
  }
  static void Append(std::string& page, const std::string& row) {
    const auto rows = GetAt<std::uint16_t>(page, 12);
    const std::size_t end =
        rows == 0 ? kPage : GetAt<std::uint16_t>(page, kFirstOffset + 2 * (rows - 1U));
    const std::size_t begin = end - row.size();
    if (row.size() > kPage / 2 + kPage / 4) throw std::length_error("a row longer than a page");
    page.replace(begin, row.size(), row);
    PutAt(&page, kFirstOffset + 2U * rows, static_cast<std::uint16_t>(begin));
    PutAt(&page, 12, static_cast<std::uint16_t>(rows + 1));
    PutAt(&page, 2, static_cast<std::uint16_t>(GetAt<std::uint16_t>(page, 2) - row.size() - 2));
  }

  // --- definitions

  // Which pages belong to the table, from page 0.
  std::uint32_t MapOf(const Table& table) {
    std::string map(1, '\0');
    Put(&map, std::uint32_t{0});
    map.resize(5 + pages_.size() / 8 + 2);
    for (const std::uint32_t page : table.data) {
      char& byte = map[5 + page / 8];
      byte = static_cast<char>(byte | (1 << (page % 8)));
    }
    pages_.push_back(DataPage(0));
    Append(pages_.back(), map);
    return static_cast<std::uint32_t>(pages_.size() - 1) << 8;  // its row 0
  }

  void Define(Table& table) {
    const std::uint32_t map = MapOf(table);
    std::string text;
    text.append({'\x02', '\x01', 'V', 'C'});
    Put(&text, std::uint32_t{0});  // the next page
    Put(&text, std::uint32_t{0});  // the length, below
    Put(&text, std::uint32_t{1625});
    Put(&text, table.rows);
    text.resize(40);
    text.push_back('\x4E');
    const auto count = static_cast<std::uint16_t>(table.columns.size());
    std::uint16_t variable = 0;
    for (const JetColumn& column : table.columns) {
      if (!IsFixed(column.type)) ++variable;
    }
    Put(&text, count);
    Put(&text, variable);
    Put(&text, count);
    Put(&text, std::uint32_t{0});  // indexes
    Put(&text, std::uint32_t{0});
    Put(&text, map);
    Put(&text, map);
    std::uint16_t fixed_at = 0;
    std::uint16_t variable_at = 0;
    for (std::uint16_t i = 0; i < count; ++i) {
      const JetType type = table.columns[i].type;
      const bool fixed = IsFixed(type);
      text.push_back(static_cast<char>(type));
      Put(&text, std::uint32_t{1625});
      Put(&text, i);
      Put(&text, fixed ? std::uint16_t{0} : variable_at);
      Put(&text, i);
      Put(&text, std::uint32_t{0x0409});
      text.push_back(static_cast<char>(fixed ? 0x03 : 0x02));
      text.push_back('\0');
      Put(&text, std::uint32_t{0});
      Put(&text, fixed ? fixed_at : std::uint16_t{0});
      Put(&text, static_cast<std::uint16_t>(type == JetType::text ? 510 : Width(type)));
      if (fixed) {
        fixed_at = static_cast<std::uint16_t>(fixed_at + Width(type));
      } else {
        ++variable_at;
      }
    }
    for (const JetColumn& column : table.columns) {
      const std::string name = JetCell::Text(column.name).bytes();
      Put(&text, static_cast<std::uint16_t>(name.size()));
      text += name;
    }
    PutAt(&text, 8, static_cast<std::uint32_t>(text.size() - 8));
    // What does not fit goes on, behind eight bytes of its own, on pages that follow.
    std::uint32_t page = table.definition;
    pages_[page] = text.substr(0, kPage);
    for (std::size_t at = kPage; at < text.size(); at += kPage - 8) {
      std::string more;
      more.append({'\x02', '\x01', 'V', 'C'});
      Put(&more, std::uint32_t{0});
      more += text.substr(at, kPage - 8);
      PutAt(&pages_[page], 4, static_cast<std::uint32_t>(pages_.size()));
      page = static_cast<std::uint32_t>(pages_.size());
      pages_.push_back(more);
    }
  }

  // --- the first page: 128 of its bytes are hidden behind a key that all files share

  static std::string DefinitionPage() {
    std::string page(kPage, '\0');
    page.replace(0, 4, std::string("\0\1\0\0", 4));
    page.replace(4, 15, "Standard Jet DB");
    PutAt(&page, 0x14, std::uint32_t{1});
    std::string plain(128, '\0');
    PutAt(&plain, 0x3C - 0x18, std::uint16_t{1252});
    PutAt(&plain, 0x6E - 0x18, std::uint16_t{0x0409});
    const std::string hidden = Rc4("\xC7\xDA\x39\x6B", plain);
    page.replace(0x18, hidden.size(), hidden);
    return page;
  }
  static std::string Rc4(std::string_view key, std::string text) {
    std::array<unsigned char, 256> box = {};
    for (std::size_t i = 0; i < box.size(); ++i) box[i] = static_cast<unsigned char>(i);
    for (std::size_t i = 0, j = 0; i < box.size(); ++i) {
      j = (j + box[i] + static_cast<unsigned char>(key[i % key.size()])) % box.size();
      std::swap(box[i], box[j]);
    }
    std::size_t i = 0;
    std::size_t j = 0;
    for (char& sign : text) {
      i = (i + 1) % box.size();
      j = (j + box[i]) % box.size();
      std::swap(box[i], box[j]);
      sign = static_cast<char>(static_cast<unsigned char>(sign) ^
                               box[static_cast<std::size_t>(box[i] + box[j]) % box.size()]);
    }
    return text;
  }

  std::vector<std::string> pages_;
  std::map<std::string, Table> tables_;
};

}  // namespace kaunter
