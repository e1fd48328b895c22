// What is read from a bank's file, against a writer of its own that knows nothing but the bank's
// table of fields: all layouts that come with the program, however lines end and letters are
// written, among lines that are no payments; and files that no bank has sent.
#include "bank/bank_file.h"

#include <gmock/gmock.h>

#include <fstream>
#include <random>
#include <set>
#include <sstream>

#include "tests/core/office.h"
#include "tests/support/places.h"

namespace kaunter {
namespace {

using ::testing::HasSubstr;

std::string Text(const std::string& path) {
  std::ostringstream text;
  text << std::ifstream(path, std::ios::binary).rdbuf();
  return std::move(text).str();
}

BankLayout Layout(const std::string& name) {
  for (const BankLayout& layout : ReadBankLayouts(test::SourceDir() + "/reports")) {
    if (layout.name == name) return layout;
  }
  throw std::runtime_error(name);
}

struct Random {
  std::size_t UpTo(std::size_t most) {
    return std::uniform_int_distribution<std::size_t>(0, most)(engine);
  }
  bool OneIn(std::size_t n) { return UpTo(n - 1) == 0; }
  template <typename Any>
  const auto& Of(const Any& list) {
    return *(std::begin(list) + static_cast<std::ptrdiff_t>(UpTo(std::size(list) - 1)));
  }
  std::mt19937 engine;
};

struct Paid {
  int line = 0;
  std::string day;  // yyyymmdd
  long long sen = 0;
  std::string reference;
  bool operator==(const Paid&) const = default;
};
std::ostream& operator<<(std::ostream& out, const Paid& paid) {
  return out << paid.line << ": " << paid.day << " " << paid.sen << " " << paid.reference;
}

// One file, line by line as the bank's own program would write it.
struct BankWriter {
  explicit BankWriter(unsigned seed) { random.engine.seed(seed); }

  static void Put(std::string& line, std::size_t start, const std::string& text) {
    if (line.size() < start - 1 + text.size()) line.resize(start - 1 + text.size(), ' ');
    line.replace(start - 1, text.size(), text);
  }
  std::string Digits(long long number, std::size_t width, char fill) {
    const std::string digits = std::to_string(number);
    return std::string(width - digits.size(), fill) + digits;
  }
  std::string Payer() {
    static const std::string payers[] = {"TAN AH KOW", "R. MUTHU", "SITI BINTI ALI"};
    return random.Of(payers);
  }

  void Line(const std::string& text) { lines.push_back(text); }
  // A line that is no payment.
  void Noise() {
    static const std::string noise[] = {"", "   ", "\t", "END", "-----"};
    Line(random.Of(noise));
  }

  void Write(const std::string& layout) {
    const std::string day = std::to_string(20240100 + 1 + static_cast<int>(random.UpTo(30)));
    if (layout == "HEADER") {
      std::string header;
      Put(header, 1, "3123456789");
      Put(header, 11, day);
      Line(header);
    }
    if (layout == "JomPAY") Line("Date,Time,Biller Code,Ref-1,Ref-2,Payer,Amount,Status");
    for (std::size_t i = random.UpTo(25); i > 0; --i) {
      if (random.OneIn(4)) Noise();
      Paid paid{static_cast<int>(lines.size()) + 1,
                layout == "HEADER"
                    ? day
                    : std::to_string(20240100 + 1 + static_cast<int>(random.UpTo(30))),
                static_cast<long long>(1 + random.UpTo(99999999)),
                "HQ000" + std::to_string(random.UpTo(9)) + "-001"};
      if (layout == "PBB") WritePbb(paid);
      if (layout == "HEADER") WriteDetail(paid);
      if (layout == "JomPAY") WriteBill(paid);
    }
    if (random.OneIn(2)) Noise();
  }
  void WritePbb(const Paid& paid) {
    const bool credit = !random.OneIn(3);
    std::string line;
    Put(line, 1, "3123456789" + paid.day + "TRF");
    Put(line, 22, "9999999999");
    Put(line, 32, Digits(paid.sen, 11, random.OneIn(2) ? '0' : ' '));
    Put(line, 43, credit ? "C" : "D");
    Put(line, 45, Payer());
    Put(line, 65, paid.reference);
    if (random.OneIn(2)) Put(line, 90, "00000099999");
    Line(line);
    if (credit) all.push_back(paid);
  }
  void WriteDetail(const Paid& paid) {
    std::string line;
    Put(line, 1, Payer());
    Put(line, 95, Digits(paid.sen, 10, random.OneIn(2) ? '0' : ' '));
    Put(line, 105, paid.reference);
    Line(line);
    all.push_back(paid);
  }
  void WriteBill(const Paid& paid) {
    const bool good = !random.OneIn(4);
    const std::string amount =
        std::to_string(paid.sen / 100) + "." + Digits(paid.sen % 100, 2, '0');
    const std::string quote = random.OneIn(2) ? "\"" : "";
    Line(paid.day.substr(6, 2) + "/" + paid.day.substr(4, 2) + "/" + paid.day.substr(0, 4) +
         ",09:00,1234," + quote + paid.reference + quote + ",\"" + Payer() + ", \"\"A\"\"\",X," +
         amount + "," + (good ? "SUCCESSFUL" : "REJECTED"));
    if (good) all.push_back(paid);
  }

  // Of English letters alone, which every encoding writes in its own way.
  std::string Bytes(int encoding, const std::string& end) {
    std::string plain;
    for (std::size_t i = 0; i < lines.size(); ++i) {
      plain += lines[i];
      if (i + 1 < lines.size() || random.OneIn(2)) plain += end;
    }
    if (encoding == 0) return plain;
    if (encoding == 1) return "\xEF\xBB\xBF" + plain;
    std::string wide = encoding == 2 ? "\xFF\xFE" : "\xFE\xFF";
    for (const char c : plain) wide += encoding == 2 ? std::string{c, '\0'} : std::string{'\0', c};
    return wide;
  }

  Random random;
  std::vector<std::string> lines;
  std::vector<Paid> all;
};

struct BankFileTest : ::testing::Test {
  std::string Write(const std::string& bytes) {
    std::ofstream(path, std::ios::binary) << bytes;
    return bytes;
  }
  std::vector<BankLine> Read(const BankLayout& layout) {
    BankFile file(layout, path);
    std::vector<BankLine> lines;
    for (BankLine line; file.Next(line);) lines.push_back(line);
    head = file.head();
    EXPECT_EQ(file.percent(), 100);
    return lines;
  }
  std::string Refusal(const BankLayout& layout) {
    try {
      Read(layout);
    } catch (const BankFileRefused& refused) {
      return refused.text.english;
    }
    return {};
  }
  TempFolder folder;
  std::string path = folder.File("bank.txt");
  std::string head;
};

TEST_F(BankFileTest, GivesWhatTheBankWrote) {
  for (const char* name : {"PBB", "HEADER", "JomPAY"}) {
    const BankLayout layout = Layout(name);
    for (unsigned seed = 1; seed <= 120; ++seed) {
      BankWriter bank(seed);
      bank.Write(name);
      if (bank.lines.empty()) continue;
      const std::string ends[] = {"\n", "\r\n", "\r"};
      const std::string end = bank.random.Of(ends);
      std::set<std::string> prints;
      for (int encoding = 0; encoding < 4; ++encoding) {
        SCOPED_TRACE(testing::Message() << name << " " << seed << " encoding " << encoding);
        const std::string bytes = Write(bank.Bytes(encoding, end));
        std::vector<Paid> read;
        std::string again, all_prints;
        const auto lines = Read(layout);
        again = head;
        for (const BankLine& line : lines) {
          ASSERT_FALSE(line.fault) << line.fault->english;
          read.push_back({line.number, Format(*line.date, "yyyymmdd"),
                          line.amount->ten_thousandths() / 100, line.reference});
          all_prints += line.fingerprint;
          again += line.raw;
        }
        ASSERT_EQ(read, bank.all);
        prints.insert(all_prints);
        // The lines behind the head are a file of the same layout.
        if (lines.empty()) continue;
        Write(again);
        const auto lines_again = Read(layout);
        ASSERT_EQ(lines_again.size(), lines.size());
        for (std::size_t i = 0; i < lines.size(); ++i) {
          ASSERT_EQ(lines_again[i].fingerprint, lines[i].fingerprint);
        }
      }
      EXPECT_EQ(prints.size(), 1u) << "the same lines in another encoding";
    }
  }
}

TEST_F(BankFileTest, LettersOfTwoBytesStandWhereTheLayoutSays) {
  BankLayout layout = ParseBankLayouts(
      "layout \"A\"\nencoding gbk\nfixed\nreference 1 6\namount 10 4 sen\ndate 14 8 \"yyyymmdd\"",
      "A")[0];
  Write("LOAN1 \xB3\xC2X012320240131\n");  // a Chinese letter of two bytes, then one
  ASSERT_EQ(Read(layout).size(), 1u);
  EXPECT_EQ(Read(layout)[0].amount, Money::FromText("1.23"));
  layout.encoding = BankLayout::Encoding::bytes;
  EXPECT_EQ(Read(layout)[0].amount, Money::FromText("1.23"));
  layout.encoding = BankLayout::Encoding::utf8;
  Write("LOAN1 \xE9\x99\x88YX012320240131\n");  // here it is one place
  EXPECT_EQ(Read(layout)[0].amount, Money::FromText("1.23"));
  layout = ParseBankLayouts(
      "layout \"A\"\ndelimited \"|\"\nencoding gbk\nreference 2\namount 3 sen\n"
      "date 4 \"ddmmyy\"",
      "A")[0];
  Write("\x81|x|L1|123|310124\n");  // the second byte of a letter looks like the sign
  ASSERT_EQ(Read(layout).size(), 1u);
  EXPECT_EQ(Read(layout)[0].reference, "L1");
}

TEST_F(BankFileTest, TheSameLineOfAnotherDayIsAnotherLine) {
  const auto fingerprint = [&](const char* day) {
    std::string detail;
    BankWriter::Put(detail, 95, "0000010000");
    BankWriter::Put(detail, 105, "L1");
    Write(std::string("3123456789") + day + "\n" + detail + "\n");
    return Read(Layout("HEADER")).at(0).fingerprint;
  };
  EXPECT_NE(fingerprint("20240130"), fingerprint("20240131"));
}

TEST_F(BankFileTest, WhatLooksLikeAPaymentAndIsNoneSaysWhy) {
  const BankLayout layout = Layout("PBB");
  const struct {
    const char *day, *amount, *reference, *fault;
  } cases[] = {
      {"20240231", "00000000100", "L1", "\"2024-02-31\" is no date"},
      {"20231301", "00000000100", "L1", "is no date"},
      {"19990101", "00000000100", "L1", "is no date"},
      {"2024 1 5", "00000000100", "L1", ""},  // each part is trimmed
      {"20240131", "000000001OO", "L1", "\"000000001OO\" is no amount"},
      {"20240131", "-0000000100", "L1", "is no amount"},
      {"20240131", "     100.00", "L1", "is no amount"},
      {"20240131", "           ", "L1", "\"\" is no amount"},
      {"20240131", "00000000100", "", "there is no reference"},
      {"20240131", "        100", "  L1  ", ""},
      {"", "", "L1", "is no date"},
  };
  for (const auto& c : cases) {
    std::string line(82, ' ');
    BankWriter::Put(line, 11, c.day);
    BankWriter::Put(line, 32, c.amount);
    BankWriter::Put(line, 43, "C");
    BankWriter::Put(line, 65, c.reference);
    Write("x\n" + line + "\n");
    const auto lines = Read(layout);
    ASSERT_EQ(lines.size(), 1u) << line;
    const std::string fault = lines[0].fault ? lines[0].fault->english : "";
    if (*c.fault == '\0') {
      EXPECT_EQ(fault, "");
      EXPECT_EQ(lines[0].reference, "L1");
    } else {
      EXPECT_THAT(fault, HasSubstr(c.fault));
      EXPECT_THAT(fault, HasSubstr("Line 2: "));
    }
  }
}

TEST_F(BankFileTest, AFileThatNoBankHasSentIsRefused) {
  const BankLayout layout = Layout("PBB");
  EXPECT_THAT(Refusal(layout), HasSubstr("cannot be read: No such file"));
  Write("");
  EXPECT_THAT(Refusal(layout), HasSubstr("is empty"));
  Write(std::string("PK\3\4\0\0\0", 7));
  EXPECT_THAT(Refusal(layout), HasSubstr("Line 1 is no text"));
  Write("short\n" + std::string(100'000, 'x'));
  EXPECT_THAT(Refusal(layout), HasSubstr("Line 2 is longer than any line"));
  Write("no header at all, but a line of something\n");
  EXPECT_THAT(Refusal(Layout("HEADER")), HasSubstr("Line 1: the header has"));
  path = folder.path();
  EXPECT_THAT(Refusal(layout), HasSubstr("it is a folder"));
}

TEST(BankLayoutTest, AFaultNamesFileLineAndWhatToDo) {
  const char* const good = "layout \"A\"\nfixed\ndate 1 8 \"yyyymmdd\"\namount 9 9 sen\n";
  const struct {
    std::string text;
    const char* told;
  } cases[] = {
      {"fixed", "X, line 1: a layout begins with"},
      {"layout PBB", "line 1: the name of the layout is missing, in double quotes"},
      {"layout \"A", "line 1: a text is not closed"},
      {good, "line 1: the layout \"A\" has no line reference"},
      {"layout \"A\"\nreference 1 2\namount 3 4 sen", "line 1: the layout \"A\" has no line date"},
      {std::string(good) + "amount 1 2 sen", "line 5: \"amount\" is told a second time"},
      {std::string(good) + "reference 0 5", "line 5: the position at which it begins"},
      {std::string(good) + "reference 5", "line 5: its length is missing"},
      {std::string(good) + "reference 5 6 7", "line 5: \"7\" is too much"},
      {std::string(good) + "refrence 5 6", "line 5: \"refrence\" is not known"},
      {"layout \"A\"\nheader amount 5 6", "line 2: \"amount\" stands in each payment"},
      {std::string(good) + "delimited \",\"", "line 5: \"delimited\" stands before the fields"},
      {std::string(good) + "only 5 1", "line 5: the text that stands there is missing"},
      {std::string(good) + "encoding ebcdic", "line 5: \"ebcdic\" is no encoding"},
      {"layout \"A\"\ndate 1 8 \"yyyymm\"", "line 2: \"yyyymm\" does not say how"},
      {"layout \"A\"\namount 1 8 cent", "line 2: an amount ends with sen"},
      {std::string(good) + "reference 20 9\nlayout \"a\"", "there is a layout \"a\" already"},
  };
  for (const auto& c : cases) {
    try {
      ParseBankLayouts(c.text, "X");
      ADD_FAILURE() << c.text;
    } catch (const BankLayoutFault& fault) {
      EXPECT_THAT(fault.what(), HasSubstr(c.told)) << c.text;
    }
  }
}

TEST(BankLayoutTest, TheOfficesOwnTakesThePlaceOfOneOfItsName) {
  TempFolder folder;
  std::filesystem::create_directory(folder.File("OwnReports"));
  std::ofstream(folder.File("BankLayouts.txt"))
      << Text(test::SourceDir() + "/reports/BankLayouts.txt");
  std::ofstream(folder.File("OwnReports/BankLayouts.txt"))
      << "\xEF\xBB\xBF# ours\r\nlayout \"pbb\"\r\ndelimited tab\r\nreference 1\r\namount 2 "
         "ringgit\r\n"
         "date 3 \"dd.mm.yy\"\r\nnot 4 \"VOID\"\r\nlayout \"Ours\"\r\nfixed\r\nreference 1 9\r\n"
         "amount 10 9 sen\r\ndate 19 8 \"yyyymmdd\"\r\n";
  const auto layouts = ReadBankLayouts(folder.path());
  ASSERT_EQ(layouts.size(), 4u);
  EXPECT_EQ(layouts[0].delimiter, U'\t');
  EXPECT_EQ(layouts[3].name, "Ours");
  std::ofstream(folder.File("f.txt")) << "L1\t1,234.50\t31.01.24\tOK\nL2\t1.00\t31.01.24\tvoid\n";
  BankFile file(layouts[0], folder.File("f.txt"));
  BankLine line;
  ASSERT_TRUE(file.Next(line));
  EXPECT_EQ(line.amount, Money::FromText("1234.50"));
  EXPECT_EQ(line.date, (DateTime{2024, 1, 31}));
  EXPECT_FALSE(file.Next(line));
  std::ofstream(folder.File("OwnReports/BankLayouts.txt")) << "layout \"\xB3\xC2\"\n";
  EXPECT_THROW(ReadBankLayouts(folder.path()), BankLayoutFault) << "letters of Chinese Windows";
}

}  // namespace
}  // namespace kaunter
