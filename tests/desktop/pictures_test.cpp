// Pictures and files at the window: what is converted, what would fill the memory, what is dropped
// and pasted, and that the window answers while files travel and a card is read.
#include <gmock/gmock.h>

#include <QBuffer>
#include <QClipboard>
#include <QDropEvent>
#include <QListWidget>
#include <QMimeData>
#include <QPainter>
#include <QPushButton>
#include <QTimer>
#include <QUrl>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <thread>

#include "core/card_reader.h"
#include "core/file_store.h"
#include "customers/document_store.h"
#include "desktop/desktop_desk.h"
#include "desktop/grid_view.h"
#include "desktop/plain_views.h"
#include "desktop/progress_dialog.h"
#include "desktop/text.h"
#include "qtservices/picture_file.h"
#include "screen/file_grid.h"
#include "screen/picture_strip.h"
#include "test_screen.h"
#include "tests/core/office.h"
#include "tests/support/ftp_server.h"

namespace kaunter {
namespace {

using Made = PictureDesk::Made;
using ::testing::ElementsAre;
using ::testing::SizeIs;

QImage Drawn(QSize size) {
  QImage image(size, QImage::Format_RGB32);
  image.fill(Qt::white);
  QPainter painter(&image);
  painter.fillRect(QRect(QPoint(), size / 2), QColor(200, 30, 40));
  return image;
}

// As a reader that is not ours sees it: the dots of a JPEG file, by djpeg.
struct Dots {
  int width = 0, height = 0;
  std::string rgb;
  std::array<int, 3> At(int x, int y) const {
    const auto at = 3 * static_cast<std::size_t>(y * width + x);
    return {static_cast<unsigned char>(rgb.at(at)), static_cast<unsigned char>(rgb.at(at + 1)),
            static_cast<unsigned char>(rgb.at(at + 2))};
  }
};
Dots Djpeg(const std::string& path) {
  const std::string out = path + ".ppm";
  EXPECT_EQ(std::system(("djpeg -pnm \"" + path + "\" > \"" + out + "\"").c_str()), 0);
  std::ifstream file(out, std::ios::binary);
  Dots dots;
  std::string kind;
  int most = 0;
  file >> kind >> dots.width >> dots.height >> most;
  file.get();
  dots.rgb.assign(std::istreambuf_iterator<char>(file), {});
  return dots;
}

bool Near(std::array<int, 3> a, std::array<int, 3> b) {
  return std::abs(a[0] - b[0]) < 6 && std::abs(a[1] - b[1]) < 6 && std::abs(a[2] - b[2]) < 6;
}

TEST(PictureFile, AnotherReaderFindsTheSamePictureInTheJpeg) {
  const TempFolder folder;
  const QImage image = Drawn({640, 480});
  for (const char* format : {"png", "bmp", "jpeg"}) {
    const std::string source = folder.File(std::string("scan.") + format);
    ASSERT_TRUE(image.save(Q(source), format));
    ASSERT_EQ(WriteAsJpeg(source, folder.File("out")), Made::done) << format;
    const Dots dots = Djpeg(folder.File("out"));
    EXPECT_EQ(dots.width, 640);
    EXPECT_EQ(dots.height, 480);
    EXPECT_TRUE(Near(dots.At(100, 100), {200, 30, 40})) << format;
    EXPECT_TRUE(Near(dots.At(500, 400), {255, 255, 255})) << format;
  }
  QImage glass(100, 100, QImage::Format_ARGB32);
  glass.fill(Qt::transparent);
  glass.save(Q(folder.File("glass.png")));
  ASSERT_EQ(WriteAsJpeg(folder.File("glass.png"), folder.File("out")), Made::done);
  EXPECT_TRUE(Near(Djpeg(folder.File("out")).At(50, 50), {255, 255, 255}));
}

TEST(PictureFile, ADocumentBecomesAJpegUnlessItIsOneOrNoPicture) {
  Office office(Office::State::base);
  office.session.PhotoPath = office.folder.File("Photo");
  DesktopDesk desk;
  TestScreen screen(desk);
  const auto make = [&](const char* name, const char* format) {
    const std::string path = office.folder.File(name);
    if (*format) {
      Drawn({300, 200}).save(Q(path), format);
    } else {
      std::ofstream(path) << "paper";
    }
    return path;
  };
  const struct {
    const char *name, *format, *kept;
    bool same_bytes;
  } rows[] = {{"a.png", "png", "D1.jpg", false}, {"b.BMP", "bmp", "D2.jpg", false},
              {"c.jpg", "png", "D3.jpg", true},  {"d.jpeg", "jpeg", "D4.jpg", true},
              {"e.pdf", "", "D5.pdf", true},     {"f.docx", "", "D6.docx", true},
              {"g.png", "", "D7.png", true},     {"陈's \"x\".tif", "", "D8.tif", true}};
  int number = 0;
  for (const auto& row : rows) {
    const std::string source = make(row.name, row.format);
    const std::string name =
        KeepDocument(office.session, screen, "HQ0001", source, fmt::format("D{}", ++number));
    EXPECT_EQ(name, row.kept);
    const std::string kept = test::ReadAll(KeptPath(office.session, "HQ0001", name));
    EXPECT_EQ(kept == test::ReadAll(source), row.same_bytes) << row.name;
    EXPECT_TRUE(row.same_bytes || kept.starts_with("\xFF\xD8\xFF")) << row.name;
  }
  std::ofstream(office.folder.File("empty.pdf"));
  for (const char* bad :
       {"x.exe", "x.PDF.exe", "x.desktop", "x.sh", "x", "x.", "x.jp\"g", "empty.pdf", "gone.pdf"}) {
    if (std::string(bad) != "gone.pdf" && std::string(bad) != "empty.pdf") make(bad, "");
    EXPECT_THROW(KeepDocument(office.session, screen, "HQ0001", office.folder.File(bad), "D9"),
                 std::runtime_error)
        << bad;
  }
  for (const auto& entry :
       std::filesystem::recursive_directory_iterator(office.session.PhotoPath)) {
    EXPECT_EQ(entry.path().string().find("D9"), std::string::npos);
    EXPECT_EQ(entry.path().string().find(".part"), std::string::npos);
  }
  const std::pair<const char*, Opening> names[] = {
      {"a.jpg", Opening::shown},       {"A.PDF", Opening::shown},       {"a.exe", Opening::refused},
      {"a.pdf.BAT", Opening::refused}, {"a.exe ", Opening::asked},      {"a", Opening::asked},
      {"a.html", Opening::asked},      {"a.pdf\n.sh", Opening::refused}};
  for (const auto& [name, opening] : names) EXPECT_EQ(OpeningOf(name), opening) << name;
}

// Kilobytes that the process has held at most since Begin.
class Peak {
 public:
  Peak() {
    std::ofstream("/proc/self/clear_refs") << "5";
    before_ = Most();
  }
  long Grown() const { return Most() - before_; }

 private:
  static long Most() {
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;) {
      long kilobytes = 0;
      if (word == "VmHWM:" && status >> kilobytes) return kilobytes;
    }
    return 0;
  }
  long before_;
};

TEST(PictureFile, APictureThatWouldFillTheMemoryIsRefusedOrReadSmall) {
  const TempFolder folder;
  // 201 megabytes: 8,200 by 8,200 dots.
  const std::string bmp = folder.File("large.bmp");
  {
    QByteArray head;
    QBuffer buffer(&head);
    buffer.open(QIODevice::WriteOnly);
    Drawn({1, 1}).convertToFormat(QImage::Format_RGB888).save(&buffer, "bmp");
    head.truncate(54);
    const qint32 side = 8200;
    memcpy(head.data() + 18, &side, 4);
    memcpy(head.data() + 22, &side, 4);
    std::ofstream(bmp, std::ios::binary).write(head.data(), head.size());
    std::filesystem::resize_file(bmp, 54 + std::uintmax_t(8200) * 8200 * 3);
  }
  constexpr long kMegabyte = 1024;
  {
    const Peak peak;
    EXPECT_EQ(WriteAsJpeg(bmp, folder.File("out.jpg")), Made::too_large);
    EXPECT_TRUE(ReadSmall(bmp, {800, 800}).isNull());
    EXPECT_LT(peak.Grown(), 20 * kMegabyte);
  }
  // The largest that is taken, and a JPEG file of more dots than that.
  ASSERT_TRUE(Drawn({6400, 6400}).save(Q(folder.File("taken.png"))));
  const Peak peak;
  EXPECT_EQ(WriteAsJpeg(folder.File("taken.png"), folder.File("out.jpg")), Made::done);
  RecordProperty("kilobytes", std::to_string(peak.Grown()));
  EXPECT_LT(peak.Grown(), 330 * kMegabyte);
  // Two of it side by side and below, by another program.
  const std::string large = folder.File("large.jpg");
  ASSERT_EQ(std::system(fmt::format("/usr/bin/python3 -c \"from PIL import Image; "
                                    "Image.new('RGB',(16000,12000),(9,99,9)).save('{}')\"",
                                    large)
                            .c_str()),
            0);
  const Peak small;
  EXPECT_EQ(ReadSmall(large, {800, 800}).size(), QSize(800, 600));
  EXPECT_LT(small.Grown(), 40 * kMegabyte);
  EXPECT_EQ(WriteAsJpeg(large, folder.File("out.jpg")), Made::too_large);
}

TEST(PictureFile, APictureOfFewColoursIsReadSmallWithoutGrain) {
  const TempFolder folder;
  QImage plain_and_motley({240, 180}, QImage::Format_Indexed8);
  QList<QRgb> colours = {qRgb(200, 210, 205)};
  while (colours.size() < 256) {
    const int at = static_cast<int>(colours.size());
    colours.append(qRgb(at, at * 7 % 256, at * 31 % 256));
  }
  plain_and_motley.setColorTable(colours);
  for (int y = 0; y < 180; ++y) {
    for (int x = 0; x < 240; ++x) plain_and_motley.setPixel(x, y, y < 90 ? 0 : (x * y) % 256);
  }
  ASSERT_TRUE(plain_and_motley.save(Q(folder.File("few.bmp"))));
  const QImage small = ReadSmall(folder.File("few.bmp"), {90, 66});
  ASSERT_EQ(small.size(), QSize(88, 66));
  for (int x = 0; x < 88; ++x) ASSERT_EQ(small.pixelColor(x, 10), QColor(colours[0]));
}

class FileScreen : public Screen {
 public:
  explicit FileScreen(Desk& desk) : Screen("FileScreen", {"Files", "文件"}, desk) {
    Files.onFiles = [this](const std::vector<std::string>& files) {
      for (const std::string& file : files) {
        taken.push_back(file);
        bytes.push_back(test::ReadAll(file));
      }
    };
  }
  FileGrid Files{*this, "Files", {"Files", "文件"}, {{{"File", "文件名"}, Kind::text, 20}}};
  std::vector<std::string> taken, bytes;
};

TEST(FileDrop, WhatIsDroppedOrPastedComesToTheScreen) {
  QuietDesk desk;
  FileScreen screen(desk);
  ScreenDialog dialog(screen, nullptr);
  dialog.Open();
  OpenScreen::Wait();
  QTableView& table = static_cast<GridView&>(dialog.face().View(screen.Files)).table();
  QMimeData files;
  files.setUrls({QUrl::fromLocalFile("/a b/陈.pdf"), QUrl("http://example/x.pdf"),
                 QUrl::fromLocalFile("/c.png")});
  QDragEnterEvent enter({5, 5}, Qt::CopyAction | Qt::MoveAction, &files, Qt::LeftButton, {});
  QApplication::sendEvent(table.viewport(), &enter);
  EXPECT_TRUE(enter.isAccepted());
  QDropEvent drop(QPointF(5, 5), Qt::CopyAction | Qt::MoveAction, &files, Qt::LeftButton, {});
  QApplication::sendEvent(table.viewport(), &drop);
  EXPECT_EQ(drop.dropAction(), Qt::CopyAction);
  OpenScreen::Wait();
  EXPECT_THAT(screen.taken, ElementsAre("/a b/陈.pdf", "/c.png"));
  screen.taken.clear();
  screen.bytes.clear();
  QApplication::clipboard()->setImage(Drawn({20, 10}));
  QTest::keyClick(&table, Qt::Key_V, Qt::ControlModifier);
  ASSERT_THAT(screen.taken, SizeIs(1));
  EXPECT_EQ(QImage::fromData(QByteArray::fromStdString(screen.bytes[0])).size(), QSize(20, 10));
  EXPECT_FALSE(std::filesystem::exists(screen.taken[0]));
  QMimeData text;
  text.setText("x");
  QDragEnterEvent nothing({5, 5}, Qt::CopyAction, &text, Qt::LeftButton, {});
  QApplication::sendEvent(table.viewport(), &nothing);
  QApplication::clipboard()->setText("x");
  QTest::keyClick(&table, Qt::Key_V, Qt::ControlModifier);
  EXPECT_THAT(screen.taken, SizeIs(1));
}

struct StripScreen : Screen {
  explicit StripScreen(Desk& desk) : Screen("StripScreen", {"Strip", "图片"}, desk) {}
  PictureStrip Strip{*this, "Strip", {"Strip", "图片"}};
};

TEST(Strip, APictureThatComesLaterTakesItsPlace) {
  const TempFolder folder;
  QuietDesk desk;
  StripScreen screen(desk);
  ScreenDialog dialog(screen, nullptr);
  dialog.Open();
  QListWidget& list = *dialog.findChild<QListWidget*>();
  const QColor colour(200, 20, 20);
  const auto shown = [&](const char* file) {
    screen.Strip.SetItems({{folder.File("here.png"), "1"}, {folder.File(file), "2"}});
    for (int i = 0; i < 10; ++i) OpenScreen::Wait();
    return list.item(1)->icon().pixmap(96, 72).toImage().pixelColor(48, 36) == colour;
  };
  EXPECT_FALSE(shown("later.png"));
  list.setCurrentRow(1);
  QImage picture({90, 66}, QImage::Format_RGB32);
  picture.fill(colour);
  ASSERT_TRUE(picture.save(Q(folder.File("later.png"))));
  EXPECT_TRUE(shown("later.png"));
  EXPECT_EQ(list.currentRow(), 1);
  EXPECT_FALSE(shown("another.png"));
}

// The longest time between two looks of a thread that wants one every five milliseconds.
class Looks {
 public:
  void Look() {
    const auto now = std::chrono::steady_clock::now();
    longest_ = std::max(longest_, now - last_);
    last_ = now;
  }
  long Longest() const {
    return std::chrono::duration_cast<std::chrono::milliseconds>(longest_).count();
  }

 private:
  std::chrono::steady_clock::time_point last_ = std::chrono::steady_clock::now();
  std::chrono::steady_clock::duration longest_{};
};

// The looks of the window, and beside them those of a thread that only sleeps: what the machine
// itself takes away.
class Watched {
 public:
  Watched() {
    QObject::connect(&timer_, &QTimer::timeout, [this] { window_.Look(); });
    timer_.start(5);
  }
  ~Watched() {
    window_.Look();  // what came behind the last one counts
    over_ = true;
    beside_.join();
    std::printf("longest between two looks: window %ld ms, machine %ld ms\n", window_.Longest(),
                machine_.Longest());
    EXPECT_LE(window_.Longest(), 50 + machine_.Longest());
  }

 private:
  Looks window_, machine_;
  std::atomic<bool> over_ = false;
  std::thread beside_{[this] {
    while (!over_) {
      std::this_thread::sleep_for(std::chrono::milliseconds(5));
      machine_.Look();
    }
  }};
  QTimer timer_;
};

TEST(FilesBehindTheWindow, TheWindowAnswersWhileFiftyMegabytesGoAndAPhotoComes) {
  const TempFolder folder;
  const std::string photos = folder.File("Photo");
  std::filesystem::create_directories(photos + "/HQ0001");
  std::filesystem::create_directories(folder.File("store/VKTPIC/HQ0001"));
  std::ofstream(folder.File("store/VKTPIC/HQ0001/face.jpg")) << std::string(5'000'000, 'f');
  std::ofstream(photos + "/HQ0001/scan.pdf") << std::string(50'000'000, 's');
  test::FtpServerBeside server(folder.File("store"));
  FileStore store(photos, {server.host(), server.kUser, server.kPassword, false, {}});
  const Watched watched;
  store.Send({"HQ0001", "scan.pdf"});
  store.Fetch({"HQ0001", "face.jpg"}, false);
  QEventLoop loop;
  QTimer end;
  QObject::connect(&end, &QTimer::timeout, [&] {
    if (!store.IsSending()) loop.quit();
  });
  end.start(20);
  loop.exec();
  EXPECT_EQ(std::filesystem::file_size(folder.File("store/VKTPIC/HQ0001/scan.pdf")), 50'000'000U);
  EXPECT_EQ(std::filesystem::file_size(photos + "/HQ0001/face.jpg"), 5'000'000U);
}

struct BarDesk : QuietDesk {
  std::unique_ptr<ProgressBar> Progress(std::string_view title) override {
    return MakeProgress(title, nullptr);
  }
};

// One that does not listen is ended by force, half a second after the person gave up.
TEST(CardReading, TheWindowAnswersWhileAHangingReaderIsWaitedForAndEnded) {
  Office office(Office::State::patched);
  office.session.MyKadReaderFolder = office.folder.File("reader");
  const std::string program = office.session.MyKadReaderFolder + "/MyKadReader";
  std::filesystem::create_directories(office.session.MyKadReaderFolder);
  std::ofstream(program) << "#!/bin/sh\ntrap '' TERM\nwhile :; do sleep 0.01; done\n";
  std::filesystem::permissions(program, std::filesystem::perms::owner_all);
  BarDesk desk;
  Screen screen("UserFrm", {"User"}, desk);
  QTimer hand;
  QObject::connect(&hand, &QTimer::timeout, [] {
    for (QWidget* window : QApplication::topLevelWidgets()) {
      if (auto* stop = window->findChild<QPushButton*>()) stop->click();
    }
  });
  hand.start(300);
  CardValues values;
  const auto begun = std::chrono::steady_clock::now();
  {
    const Watched watched;
    EXPECT_FALSE(ReadMyKad(office.session, screen, {}, values, {}));
  }
  EXPECT_GE(std::chrono::steady_clock::now() - begun, std::chrono::milliseconds(750));
  EXPECT_TRUE(desk.messages.empty());
}

}  // namespace
}  // namespace kaunter
