// The reader of identity cards with a program that misbehaves in every way that one can.
#include <fmt/format.h>
#include <iconv.h>
#include <sys/wait.h>

#include <chrono>
#include <thread>

#include "core/card_boxes.h"
#include "core/card_reader.h"
#include "core/schema_text.h"
#include "screen/cancel_offer.h"
#include "screen/screen.h"
#include "tests/core/office.h"
#include "tests/movein/jet_file.h"

namespace kaunter {
namespace {

namespace fs = std::filesystem;

// A bar with a button, which is pressed after so many looks.
struct GivingUp : SilentBar, CancelOffer {
  explicit GivingUp(int* looks) : left(looks) {}
  void OfferCancel(std::string_view) override {}
  bool Cancelled() const override { return (*left)-- == 0; }
  int* left;
};
struct CardDesk : SilentDesk {
  std::unique_ptr<ProgressBar> Progress(std::string_view) override {
    return std::make_unique<GivingUp>(&looks);
  }
  bool Ask(std::string_view, std::string_view text) override {
    asked = text;
    return true;
  }
  int looks = -1;  // never
  std::string asked;
};

std::string As(const char* encoding, const std::string& utf8, const std::string& front = {}) {
  const iconv_t converter = iconv_open(encoding, "UTF-8");
  std::string from = utf8, to(4 * utf8.size(), '\0');
  char *in = from.data(), *out = to.data();
  std::size_t in_left = from.size(), out_left = to.size();
  EXPECT_EQ(iconv(converter, &in, &in_left, &out, &out_left), 0u);
  iconv_close(converter);
  return front + to.substr(0, to.size() - out_left);
}

const std::string kJpeg = "\xFF\xD8\xFF\xE0 a face \xFF\xD9";

std::string Card(const std::string& name, const char* end = "\n", int lines = 13) {
  const std::string all[] = {name,        "850101145678", "A123", "LELAKI", "CINA",
                             "01-01-85",  "5, JALAN 1",   "",     "",       "50000",
                             "K. LUMPUR", "W.P.",         "-",    "more",   "more"};
  std::string text;
  for (int i = 0; i < lines; ++i) text += all[i] + end;
  return text;
}

class CardReader : public ::testing::Test {
 protected:
  CardReader() : office(Office::State::patched), screen("frm", {"Screen"}, desk) {
    // A folder in memory often runs no program.
    folder = fs::temp_directory_path() / fmt::format("kaunter-card-{}", getpid());
    fs::remove_all(folder);
    fs::create_directories(folder);
    office.session.MyKadReaderFolder = folder;
    screen.SetChinese(false);
  }
  ~CardReader() override { fs::remove_all(folder); }

  void Put(const char* file, const std::string& bytes) const {
    std::ofstream(folder / file, std::ios::binary) << bytes;
  }
  void Program(const std::string& script, const char* name = "MyKadReader.exe") const {
    Put(name, "#!/bin/sh\n" + script + "\n");
    fs::permissions(folder / name, fs::perms::owner_all);
  }
  // What was told last, and the name and IC that were read.
  std::string Read(const std::string& ic = {}) {
    values = {};
    desk.messages = {""};
    std::string read =
        ReadMyKad(office.session, screen, ic, values, office.folder.File("photo.jpg")) ? "" : "- ";
    return fmt::format("{}{}|{}|{}", read, desk.messages.back(), values[CardField::name],
                       values[CardField::new_ic]);
  }
  std::string Photo() const {
    std::ifstream in(office.folder.File("photo.jpg"), std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
  }

  Office office;
  CardDesk desk;
  Screen screen;
  fs::path folder;
  CardValues values;
};

TEST_F(CardReader, WhateverTheProgramDoesTheCardOfThisCustomerComesOutOrNone) {
  const std::string read = "Read MyKad: MyKad readed|";
  const std::string broken = "- MyKad Reader: an error occur reading MyKad detail file\n";
  const std::string none = "- Card Reader: No Info Obtained From The Device||";
  const std::string failed = "- Card Reader: An error occur during reading myKad info\n";
  const std::string ic = "|850101-14-5678";
  const std::string write = "[ $1 = Read ] && cp card MyKad.txt && cp face Photo.jpg";
  const struct {
    std::string what, card, script, told;
    int looks = -1;
  } cases[] = {
      {"plain", Card("TAN"), write, read + "TAN" + ic},
      {"CRLF", Card("TAN", "\r\n"), write, read + "TAN" + ic},
      {"CR", Card("TAN", "\r"), write, read + "TAN" + ic},
      {"a mark of UTF-8", "\xEF\xBB\xBF" + Card("陈亚九"), write, read + "陈亚九" + ic},
      {"UTF-16", As("UTF-16LE", Card("陈亚九"), "\xFF\xFE"), write, read + "陈亚九" + ic},
      {"UTF-16 without a mark", As("UTF-16BE", Card("TAN")), write, read + "TAN" + ic},
      {"GBK", As("GBK", Card("陈亚九")), write, read + "陈亚九" + ic},
      {"Latin-1", As("ISO-8859-1", Card("JOSÉ")), write, read + "JOSÉ" + ic},
      {"control signs", Card(" T\tA\x01N "), write, read + "T A N" + ic},
      {"12 lines", Card("TAN", "\n", 12), write, broken + "It has 12 lines of 13.||"},
      {"15 lines", Card("TAN", "\n", 15), write, read + "TAN" + ic},
      {"no text", std::string("\xFF\xFE\0\xD8\0", 5), write, broken + "It has 0 lines of 13.||"},
      {"another order", "850101145678\nTAN\n" + Card("", "\n", 11), write,
       broken +
           "\"TAN\" is no identity number: does MyKadLines.txt tell the order of its lines?||"},
      {"no card", std::string(13, '\n'), write, none},
      {"nothing is written", Card("TAN"), "exit 3", none},
      {"half of it comes late", Card("TAN"),
       "sleep 1.6; : > MyKad.txt; (sleep 0.3; head -n 5 card > MyKad.txt; sleep 0.6; "
       "tail -n +6 card >> MyKad.txt) &",
       read + "TAN" + ic},
      {"all of it comes late", Card("TAN"), "(sleep 0.4; " + write + ") &", read + "TAN" + ic},
      {"it hangs", Card("TAN"), "(sleep 0.4; " + write + ") & sleep 100", "- ||", 5},
      {"it hangs and does not mind", Card("TAN"),
       "trap '' TERM; " + write + "; sleep 100; sleep 100", "- ||", 5},
      {"it is none", Card("TAN"), "", failed},
  };
  for (const auto& one : cases) {
    // What another customer's card left there is never taken.
    Put("MyKad.txt", Card("THE CUSTOMER BEFORE"));
    Put("Photo.jpg", "\xFF\xD8\xFF the face before \xFF\xD9");
    Put("card", one.card);
    Put("face", kJpeg + std::string(5, '\0'));
    Program(one.script);
    if (one.script.empty()) fs::permissions(folder / "MyKadReader.exe", fs::perms::owner_read);
    desk.looks = one.looks;
    fs::remove(office.folder.File("photo.jpg"));
    const std::string told = Read();
    EXPECT_TRUE(one.script.empty() ? told.starts_with(one.told) : told == one.told)
        << one.what << ": " << told;
    const bool copied = told.starts_with(read) && one.script.find("Photo.jpg") != std::string::npos;
    EXPECT_EQ(Photo(), copied ? kJpeg : "") << one.what;
    if (one.looks >= 0) std::this_thread::sleep_for(std::chrono::milliseconds(600));
    for (const char* left : {"MyKad.txt", "Photo.jpg"}) {
      EXPECT_FALSE(fs::exists(folder / left)) << one.what;
    }
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1) << one.what << ": a child was not buried";
  }
  // What cannot be cleared away would be taken for the next card.
  fs::create_directories(folder / "MyKad.txt" / "x");
  Program(write);
  EXPECT_TRUE(Read().starts_with(broken + (folder / "MyKad.txt").string() + " of an earlier card"));
}

TEST_F(CardReader, TheOfficeTellsTheOrderOfTheLines) {
  fs::create_directory(office.folder.File("OwnReports"));
  Program("printf '850101-14-5678\\nx\\nTAN\\n' > MyKad.txt");
  const auto lines = [&](const char* text) {
    std::ofstream(office.folder.File("OwnReports/MyKadLines.txt")) << text;
    return Read();
  };
  EXPECT_EQ(lines("# ours\r\nnewic\r\n-\r\nName\r\n"),
            "Read MyKad: MyKad readed|TAN|850101-14-5678");
  EXPECT_TRUE(lines("NewIC\nNmae\n").ends_with("line 2: \"Nmae\" is nothing that a card has||"));
  EXPECT_TRUE(lines("Name\n").ends_with("MyKadLines.txt must name NewIC, once||"));
}

// The older program fills a table; another edition kept what was read in a file of its own.
TEST_F(CardReader, TheTableAndThePhotoStore) {
  const std::string file = office.folder.File("mykad.db");
  for (const char* name : {"MyKad64", "photo"}) {
    office.session.data_sources.Add(name, {DataSource::Kind::kEmbedded, file});
  }
  office.session.MyKad64String = "Data Source=MyKad64";
  office.session.MyKadReaderFolder.clear();
  office.session.MyKadPath = folder;
  MakeSqlite("MyKad64", file, office.session.clock,
             [](Connection& made) { RunScript(made, SchemaText("mykad")); });
  EXPECT_EQ(Read(), "- Card Reader: No Info Obtained From The Device||");
  office.Run("INSERT INTO Systemast (Param,[Value]) VALUES ('MyKAD','0')");
  const std::string insert =
      "INSERT INTO JPNInfo (NewIC,NameOriginal,NameGMPC,Gender,photo) VALUES "
      "('850101145678',' ','LIM','P',x'FFD8FF0102FFD9')";
  const auto fill = [&](const std::string& statement) {
    Program(
        fmt::format("python3 -c \"import sqlite3; c=sqlite3.connect('{}'); "
                    "c.executescript(\\\"{}\\\")\"",
                    file, statement));
  };
  fill(insert);
  EXPECT_EQ(Read(), "|LIM|850101-14-5678");
  EXPECT_EQ(values[CardField::gender], "FEMALE");
  EXPECT_EQ(Photo(), "\xFF\xD8\xFF\x01\x02\xFF\xD9");
  // Of two cards nobody knows whose is whose, and none stays for the next.
  fill(insert + ";" + insert);
  EXPECT_TRUE(Read().ends_with("Two cards were read at the same time. Read yours again.||"));
  Program("exit 0");
  EXPECT_EQ(Read(), "- Card Reader: No Info Obtained From The Device||");
  // The reading was added; it is found by the number in the box, and told to be an old one.
  fs::remove(office.folder.File("photo.jpg"));
  EXPECT_EQ(Read("850101145678"),
            "MyKad Information: There is no card in the reader. These details are those of the "
            "photo store, read on 31-01-2024 14:05:09.|LIM|850101-14-5678");
  EXPECT_EQ(Photo(), "\xFF\xD8\xFF\x01\x02\xFF\xD9");
  EXPECT_EQ(Read("850101145679"), "- Card Reader: No Info Obtained From The Device||");
}

TEST_F(CardReader, AFileOfJetIsReadAndNotWritten) {
  JetFile jet;
  jet.AddTable("CustPhoto",
               {{"IC"}, {"Name"}, {"DateTime", JetType::date}, {"CustPhoto", JetType::ole}});
  jet.AddRow("CustPhoto", {JetCell::Text("850101-14-5678"), JetCell::Text("LIM"),
                           JetCell::Day(40000), JetCell::Bytes("x")});
  jet.AddRow("CustPhoto", {JetCell::Text("850101145678"), JetCell::Text("LIM AH KOW"),
                           JetCell::Day(45000), JetCell::Bytes(kJpeg)});
  jet.Save(office.folder.File("photo.mdb"));
  office.session.data_sources.Add(
      "photo", {DataSource::Kind::kOdbc, "Driver=MDBTools;DBQ=" + office.folder.File("photo.mdb")});
  Put("card", Card("LIM"));
  Program("cp card MyKad.txt");
  EXPECT_TRUE(Read().starts_with(
      "MyKad Information: an error occur during saving customer photo\nThe driver of the data "
      "source photo only reads."));
  EXPECT_EQ(values[CardField::name], "LIM");
  Program("exit 0");
  EXPECT_TRUE(
      Read("850101-14-5678").ends_with("read on 15-03-2023 00:00:00.|LIM AH KOW|850101-14-5678"))
      << Read("850101-14-5678");
  EXPECT_EQ(Photo(), kJpeg);
}

struct Person : Screen {
  explicit Person(Desk& desk) : Screen("frm", {"Screen"}, desk) {}
  TextBox Name{*this, "Name", {"Name"}};
  TextBox IC{*this, "IC", {"New IC"}};
  TextBox Old{*this, "Old", {"Old IC"}};
  TextBox Add1{*this, "Add1", {"Address"}};
  TextBox Add2{*this, "Add2", {"Address 2"}};
  ComboBox Gender{*this, "Gender", {"Gender"}, {"MALE", "FEMALE"}};
  ComboBox Race{*this, "Race", {"Race"}, {"CINA"}};
};

TEST_F(CardReader, ThePersonInTheBoxesGivesWayWholeOrNotAtAll) {
  Person person(desk);
  Put("card", Card("TAN AH KOW", "\n"));
  Program("sed 's/CINA/SERANI/;s/A123//' card > MyKad.txt");
  const auto fill = [&](std::array<const char*, 5> before) {
    TextBox* boxes[] = {&person.Name, &person.IC, &person.Old, &person.Add1, &person.Add2};
    for (std::size_t i = 0; i < before.size(); ++i) boxes[i]->SetText(before[i]);
    person.Add1.max_length = 4;
    desk.asked.clear();
    ReadCardInto(office.session, {.name = person.Name,
                                  .new_ic = person.IC,
                                  .others = {{CardField::old_ic, &person.Old},
                                             {CardField::gender, &person.Gender},
                                             {CardField::add1, &person.Add1},
                                             {CardField::add2, &person.Add2}},
                                  .race = &person.Race});
    std::string all = desk.asked.empty() ? "" : "asked ";
    for (TextBox* box : boxes) all += box->text() + "|";
    return all + person.Gender.text() + "|" + person.Race.text();
  };
  const std::string of_card = "TAN AH KOW|850101-14-5678|";
  const std::string rest = "5, JALAN 1||MALE|SERANI";
  EXPECT_EQ(fill({"", "", "", "", "old street"}), of_card + "|" + rest);
  EXPECT_EQ(fill({"Tan", "850101145678", "A9", "x", "y"}), of_card + "A9|" + rest);
  EXPECT_EQ(fill({"LIM", "900101-14-5678", "A9", "x", "y"}), "asked " + of_card + "|" + rest);
  EXPECT_EQ(fill({"LIM", "", "A9", "x", "y"}), "asked " + of_card + "|" + rest);
  EXPECT_TRUE(person.Add1.marked());
  EXPECT_TRUE(desk.messages.back().ends_with("please shorten:\nAddress"));
  EXPECT_EQ(
      office.Lines("SELECT CustRaceID,CustRaceDesc FROM CustRaceMast WHERE CustRaceID='SERANI'"),
      "SERANI SERANI \n");
}

}  // namespace
}  // namespace kaunter
