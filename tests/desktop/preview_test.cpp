// The preview of a report: places, search, keys, and what becomes of a file that cannot be written.
#include "desktop/preview_dialog.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <QImage>
#include <QLabel>
#include <QMessageBox>
#include <QPainter>
#include <QPrintDialog>
#include <QPrinter>
#include <QProcess>
#include <QPushButton>
#include <QScrollBar>
#include <algorithm>
#include <csignal>
#include <fstream>
#include <iterator>

#include "desktop/page_list.h"
#include "desktop/pages_view.h"
#include "desktop/paper_output.h"
#include "desktop/progress_dialog.h"
#include "desktop/report_wait.h"
#include "desktop/text.h"
#include "file_answer.h"
#include "qtservices/report_output.h"
#include "qtservices/report_painter.h"
#include "test_screen.h"
#include "tests/core/office.h"

namespace kaunter {
namespace {

using testing::HasSubstr;

// A list of loans, 40 a page: "Loan 1" to "Loan <40 pages>".
ReportRun ListOf(int pages) {
  ReportRun run;
  run.file = ReportFile::Parse(
      "title \"Loans\"\nquery\nSELECT {selection}\nend\ncolumn \"Loan\" LoanID text 9\n",
      "list.rpt");
  std::vector<std::vector<Value>> rows;
  for (int i = 1; i <= 40 * pages; ++i) rows.push_back({Value("Loan " + std::to_string(i))});
  run.rows = Recordset({{"LoanID", FieldType::kText}}, std::move(rows));
  run.document.title = "Loans";
  for (int i = 0; i < 40 * pages; ++i) {
    if (i % 40 == 0) run.document.pages.emplace_back();
    run.document.pages.back().texts.push_back(
        {20, 20 + 6.0 * (i % 40), 60, 6, run.rows.rows()[static_cast<std::size_t>(i)][0].ToText()});
  }
  return run;
}

struct OpenPreview {
  explicit OpenPreview(int pages, bool chinese = false) : dialog(ListOf(pages), chinese, nullptr) {
    dialog.resize(900, 700);
    dialog.show();
    QTest::qWait(60);
  }
  void Key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QTest::keyClick(&dialog.pages(), key, modifiers);
    QTest::qWait(20);
  }
  QLineEdit& Box(const char* name) { return *dialog.findChild<QLineEdit*>(name); }
  std::string ShownPage() { return S(Box("page").text()); }
  void Search(const QString& text) {
    Box("search").setText(text);
    QTest::keyClick(&Box("search"), Qt::Key_Return);
  }
  PreviewDialog dialog;
};

std::string Content(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

TEST(Preview, KeysAndThePageBoxTurnThePages) {
  OpenPreview preview(30);
  PagesView& pages = preview.dialog.pages();
  EXPECT_EQ(preview.ShownPage(), "1");
  preview.Key(Qt::Key_PageDown);
  preview.Key(Qt::Key_PageDown);
  EXPECT_EQ(preview.ShownPage(), "3");
  preview.Key(Qt::Key_PageUp);
  EXPECT_EQ(preview.ShownPage(), "2");
  preview.Key(Qt::Key_End);
  EXPECT_EQ(preview.ShownPage(), "30");
  preview.Key(Qt::Key_PageDown);  // no page behind the last
  EXPECT_EQ(preview.ShownPage(), "30");
  preview.Key(Qt::Key_Home);
  EXPECT_EQ(preview.ShownPage(), "1");
  for (const auto& [typed, shown] : {std::pair("17", "17"), {"99", "30"}, {"0", "1"}}) {
    preview.Box("page").setText(typed);
    QTest::keyClick(&preview.Box("page"), Qt::Key_Return);
    EXPECT_EQ(preview.ShownPage(), shown) << typed;
  }
  // A zoom keeps the page.
  pages.GoTo(12);
  for (int i = 0; i < 5; ++i) preview.Key(Qt::Key_Plus);
  EXPECT_EQ(pages.page(), 12);
  preview.Key(Qt::Key_0, Qt::ControlModifier);
  EXPECT_EQ(pages.zoom(), 1);
  for (int i = 0; i < 40; ++i) preview.Key(Qt::Key_Minus);
  EXPECT_EQ(pages.zoom(), 0.25);
  EXPECT_TRUE(preview.dialog.isVisible());
}

TEST(Preview, SearchGoesRoundAndIsSilentAboutCase) {
  OpenPreview preview(30);
  PagesView& pages = preview.dialog.pages();
  preview.Search("loAN 40");  // 40, 400 to 409
  EXPECT_EQ(pages.hits(), 11);
  EXPECT_EQ(pages.found()[1].page, 9);
  EXPECT_EQ(pages.hit(), 0);
  preview.Key(Qt::Key_F3);
  EXPECT_EQ(pages.hit(), 1);
  EXPECT_EQ(preview.ShownPage(), "10");
  preview.Key(Qt::Key_F3, Qt::ShiftModifier);
  preview.Key(Qt::Key_F3, Qt::ShiftModifier);
  EXPECT_EQ(pages.hit(), 10);
  EXPECT_EQ(preview.ShownPage(), "11");
  // A new word is searched from the page that is shown.
  preview.Search("Loan 4");
  EXPECT_EQ(pages.found()[static_cast<std::size_t>(pages.hit())].page, 10);
  preview.Search("nothing");
  EXPECT_EQ(pages.hits(), 0);
  preview.Key(Qt::Key_F3);
  preview.Search("");
  EXPECT_EQ(pages.hits(), 0);
  // Esc leaves the box first, then the preview.
  preview.Box("search").setFocus();
  QTest::keyClick(&preview.Box("search"), Qt::Key_Escape);
  EXPECT_TRUE(preview.dialog.isVisible());
  preview.dialog.pages().setFocus();
  preview.Key(Qt::Key_Escape);
  EXPECT_FALSE(preview.dialog.isVisible());
}

TEST(Preview, AWordThatIsNowhereIsTold) {
  for (const bool chinese : {false, true}) {
    OpenPreview preview(3, chinese);
    const auto told = [&] {
      const auto labels = preview.dialog.findChildren<QLabel*>();
      return std::any_of(labels.begin(), labels.end(), [&](const QLabel* label) {
        return label->text() == QString::fromUtf8(chinese ? "找不到" : "not found");
      });
    };
    EXPECT_FALSE(told());
    preview.Search("nobody");
    EXPECT_TRUE(told());
    EXPECT_TRUE(preview.Box("search").property("marked").toBool());
    // A word that is still being typed is not judged yet.
    preview.Box("search").setText("Loan 7");
    preview.dialog.pages().GoTo(1);
    EXPECT_FALSE(told());
    preview.Search("Loan 7");
    EXPECT_FALSE(told());
    EXPECT_FALSE(preview.Box("search").property("marked").toBool());
  }
}

TEST(Preview, ThePageListLeadsAndFollows) {
  OpenPreview preview(30);
  auto* list = preview.dialog.findChild<PageList*>();
  ASSERT_NE(list, nullptr);
  const auto in_sight = [&](int page) {
    return list->viewport()->rect().intersects(list->visualRect(list->model()->index(page, 0)));
  };
  preview.dialog.pages().GoTo(17);
  EXPECT_EQ(list->page(), 17);
  EXPECT_TRUE(in_sight(17));
  // By the wheel, without anybody going anywhere.
  preview.dialog.pages().verticalScrollBar()->setValue(0);
  EXPECT_EQ(list->page(), 0);
  const QRect third = list->visualRect(list->model()->index(2, 0));
  QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, third.center());
  EXPECT_EQ(preview.ShownPage(), "3");
  QTest::keyClick(list, Qt::Key_Down);
  EXPECT_EQ(preview.ShownPage(), "4");
  QTest::keyClick(list, Qt::Key_Up);
  EXPECT_EQ(preview.ShownPage(), "3");
  // Small pages stand in the window together; each of the last ones is still reached.
  const double before = preview.dialog.pages().zoom();
  QTest::keyClick(list, Qt::Key_Minus);
  EXPECT_LT(preview.dialog.pages().zoom(), before);
  preview.dialog.pages().SetZoom(0.25);
  QTest::keyClick(list, Qt::Key_End);
  EXPECT_EQ(preview.ShownPage(), "30");
  QTest::keyClick(list, Qt::Key_Up);
  EXPECT_EQ(preview.ShownPage(), "29");
  EXPECT_EQ(list->page(), 28);
  preview.dialog.resize(700, 900);
  EXPECT_EQ(preview.ShownPage(), "29");
}

TEST(Preview, ThePageListCanBeHidden) {
  OpenPreview preview(3);
  auto* list = preview.dialog.findChild<PageList*>();
  preview.dialog.pages().FitWidth();
  const double beside = preview.dialog.pages().zoom();
  list->setFocus();
  preview.Key(Qt::Key_F9);
  EXPECT_FALSE(list->isVisible());
  EXPECT_TRUE(preview.dialog.pages().hasFocus());
  EXPECT_GT(preview.dialog.pages().zoom(), beside);  // still as wide as the window
  preview.dialog.findChild<QPushButton*>("pageList")->click();
  EXPECT_TRUE(list->isVisible());
  EXPECT_EQ(preview.dialog.pages().zoom(), beside);
  // Beside a single page there is nothing to choose.
  OpenPreview letter(1);
  EXPECT_EQ(letter.dialog.findChild<PageList*>(), nullptr);
  EXPECT_EQ(letter.dialog.findChild<QPushButton*>("pageList"), nullptr);
  letter.Key(Qt::Key_F9);
  letter.dialog.pages().SetZoom(0.25);  // without a scroll bar
  letter.dialog.pages().FitWidth();
  EXPECT_GT(letter.dialog.pages().verticalScrollBar()->maximum(), 0);
  EXPECT_EQ(letter.dialog.pages().horizontalScrollBar()->maximum(), 0);
}

TEST(Preview, ThousandsOfPagesAreDrawnAndSearchedBitByBit) {
  OpenPreview preview(7000);
  auto* list = preview.dialog.findChild<PageList*>();
  EXPECT_LE(list->kept(), 10);
  for (int page = 0; page < 7000; page += 70) {
    preview.dialog.pages().GoTo(page);
    QApplication::processEvents();
  }
  EXPECT_GT(list->kept(), 20);
  EXPECT_LE(list->kept(), 60);
  PagesView& pages = preview.dialog.pages();
  pages.GoTo(0);
  preview.Search("Loan 28000");  // 28000, and 280000 on the last page
  ASSERT_TRUE(pages.searching());
  EXPECT_TRUE(QTest::qWaitFor([&] { return pages.hit() == 0; }, 10'000));
  EXPECT_EQ(preview.ShownPage(), "700");
  EXPECT_TRUE(QTest::qWaitFor([&] { return !pages.searching(); }, 10'000));
  EXPECT_EQ(pages.hits(), 2);
  EXPECT_EQ(preview.ShownPage(), "700");
  preview.Key(Qt::Key_F3);
  EXPECT_EQ(preview.ShownPage(), "7000");
  // Another word takes the place of one that is still being looked for.
  preview.Search("nobody");
  preview.Search("Loan 1");
  EXPECT_TRUE(QTest::qWaitFor([&] { return !pages.searching(); }, 10'000));
  EXPECT_EQ(pages.hits(), 111'111);
}

TEST(Preview, SavesAPdfUnderTheEndingThatWasLeftOut) {
  TempFolder folder;
  OpenPreview preview(2);
  AnswerFileDialog(Q(folder.File("receipt")));
  preview.Key(Qt::Key_S, Qt::ControlModifier);
  QTest::qWait(300);
  EXPECT_EQ(Content(folder.File("receipt.pdf")).substr(0, 5), "%PDF-");
  EXPECT_FALSE(std::filesystem::exists(folder.File("receipt")));
}

// No file may grow past some bytes: to the program that writes, the disk is full.
class FullDisk {
 public:
  explicit FullDisk(rlim_t bytes) {
    std::signal(SIGXFSZ, SIG_IGN);
    getrlimit(RLIMIT_FSIZE, &before_);
    rlimit few = before_;
    few.rlim_cur = bytes;
    setrlimit(RLIMIT_FSIZE, &few);
  }
  ~FullDisk() { setrlimit(RLIMIT_FSIZE, &before_); }
  FullDisk(const FullDisk&) = delete;
  FullDisk& operator=(const FullDisk&) = delete;

 private:
  rlimit before_{};
};

TEST(ReportOutput, AFullDiskLeavesTheOldFile) {
  TempFolder folder;
  const ReportRun run = ListOf(60);
  const struct {
    std::string file;
    std::function<void(const std::string&)> write;
  } cases[] = {{"old.pdf", [&](const std::string& path) { WritePdf(run.document, path); }},
               {"old.csv", [&](const std::string& path) { WriteCsv(run, path); }},
               {"old.xlsx", [&](const std::string& path) { WriteXlsx(run, path); }}};
  for (const auto& c : cases) {
    const std::string path = folder.File(c.file);
    std::ofstream(path) << "yesterday's";
    std::string told;
    try {
      const FullDisk full(5000);
      c.write(path);
    } catch (const std::runtime_error& failure) {
      told = failure.what();
    }
    EXPECT_THAT(told, HasSubstr(path + " cannot be written"));
    EXPECT_EQ(Content(path).substr(0, 40), "yesterday's");
    // Nothing half is left beside it.
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path()), {}), 1);
    c.write(path);
    EXPECT_GT(Content(path).size(), 5000u);
    std::filesystem::remove(path);
    EXPECT_THROW(c.write(folder.File("gone/" + c.file)), std::runtime_error);
  }
}

// The papers of a folder that a group shares are that group's.
TEST(ReportOutput, AWorkbookIsReadByThoseOfItsFolder) {
  for (const auto& [folder_mode, wanted] : {std::pair{0755u, 0600u}, {0770u, 0660u}}) {
    TempFolder folder;
    chmod(folder.path().c_str(), folder_mode);
    WriteXlsx(ListOf(1), folder.File("a.xlsx"));
    struct stat kept {};
    stat(folder.File("a.xlsx").c_str(), &kept);
    EXPECT_EQ(kept.st_mode & 07777u, wanted);
  }
}

// As it was printed, letter by letter: of signs that look alike the one that is typed.
TEST(ReportOutput, ThePdfHasTheTextThatWasPrinted) {
  TempFolder folder;
  const std::string printed = "日期 身份证 手机 第 1 页 结欠 龙文小大 民长见 office";
  ReportDocument document;
  document.pages.emplace_back();
  for (const bool bold : {false, true}) {
    PageText text{20, bold ? 40.0 : 20.0, 150, 6, printed};
    text.bold = bold;
    document.pages[0].texts.push_back(text);
  }
  WritePdf(document, folder.File("a.pdf"));
  QProcess reader;
  reader.start("pdftotext", {"-layout", QString::fromStdString(folder.File("a.pdf")), "-"});
  ASSERT_TRUE(reader.waitForFinished());
  const std::string read = reader.readAllStandardOutput().toStdString();
  EXPECT_THAT(read, HasSubstr(printed + "\n"));
  EXPECT_NE(read.find(printed), read.rfind(printed)) << read;
}

// Scanned from the drawn paper by a reader that is not ours, at the size that a receipt has.
TEST(ReportOutput, TheQrCodeOnPaperIsReadBack) {
  TempFolder folder;
  const auto run = [](const QString& program, const QStringList& arguments) {
    QProcess process;
    process.start(program, arguments);
    process.waitForFinished();
    return process.readAllStandardOutput().toStdString();
  };
  if (!run("zbarimg", {"--version"}).starts_with("0.")) GTEST_SKIP() << "no zbarimg on this PC";
  const std::string signs = "https://myinvois.hasil.gov.my/?a=1&b=%20+'\"\\陈";
  for (const std::size_t length : {std::size_t{1}, signs.size(), std::size_t{200}}) {
    std::string text = length == signs.size() ? signs : "";
    while (text.size() < length) text += static_cast<char>('!' + text.size() * 7 % 94);
    ReportDocument document;
    document.pages.emplace_back();
    document.pages[0].codes.push_back({150, 100, 23, *EncodeQr(text)});
    WritePdf(document, folder.File("a.pdf"));
    run("pdftoppm",
        {"-r", "200", "-png", "-singlefile", QString::fromStdString(folder.File("a.pdf")),
         QString::fromStdString(folder.File("a"))});
    EXPECT_EQ(run("zbarimg", {"--raw", "-q", QString::fromStdString(folder.File("a.png"))}),
              text + "\n");
  }
}

// Read back by tools that are not ours: the part of the workbook as it is packed.
std::string PartOf(const std::string& workbook, const std::string& part) {
  QProcess unzip;
  unzip.start("unzip", {"-p", QString::fromStdString(workbook), QString::fromStdString(part)});
  EXPECT_TRUE(unzip.waitForFinished());
  return unzip.readAllStandardOutput().toStdString();
}

TEST(ReportOutput, AWorkbookHasFiguresAndDates) {
  TempFolder folder;
  ReportRun run;
  run.file = ReportFile::Parse(
      "title \"Loans [all]\"\nquery\nSELECT {selection}\nend\ngroup Day \"\" heading \"{Name}\"\n"
      "column \"Loan\" LoanID text 9\ncolumn \"Amount\" Amt money 9 sum\ncolumn \"No.\" No integer "
      "9\n",
      "list.rpt");
  run.rows = Recordset({{"Day", FieldType::kDate},
                        {"Name", FieldType::kText},
                        {"LoanID", FieldType::kText},
                        {"Amt", FieldType::kMoney},
                        {"No", FieldType::kInteger}},
                       {{Value(DateTime{2024, 1, 31, 16, 30, 0}), Value("=1+1 & <陈>"),
                         Value("0012"), Value(Money::FromText("-1234567.89")), Value(7)},
                        {Value(), Value("x"), Value("L2"), Value(), Value()}});
  const std::string path = folder.File("list.xlsx");
  WriteXlsx(run, path);
  const std::string sheet = PartOf(path, "xl/worksheets/sheet1.xml");
  const std::string texts = PartOf(path, "xl/sharedStrings.xml");
  // 31 January 2024 is day 45322 of that calendar.
  for (const char* cell : {"<c r=\"A2\" s=\"2\"><v>45322</v>",
                           "<c r=\"D2\" s=\"3\"><v>-1234567.89</v>", "<c r=\"E2\" s=\"4\"><v>7</v>",
                           "<c r=\"C2\" t=\"s\">", "<autoFilter ref=\"A1:E3\"/>", "<row r=\"3\""}) {
    EXPECT_THAT(sheet, HasSubstr(cell));
  }
  for (const char* none : {"r=\"A3\"", "r=\"D3\"", "r=\"E3\"", "r=\"A4\""}) {
    EXPECT_THAT(sheet, Not(HasSubstr(none)));
  }
  EXPECT_THAT(texts, HasSubstr("<t>Day</t></si><si><t>Name</t>"));
  EXPECT_THAT(texts, HasSubstr("<t>=1+1 &amp; &lt;陈&gt;</t>"));
  EXPECT_THAT(texts, HasSubstr("<t>0012</t>"));
  // Styles 2 to 4 are forms of these numbers, which stand in their order.
  const std::string styles = PartOf(path, "xl/styles.xml");
  for (const char* form :
       {"164\" formatCode=\"dd-mm-yyyy", "165\" formatCode=\"#,##0.00", "166\" formatCode=\"0\""}) {
    EXPECT_THAT(styles, HasSubstr(form));
  }
  const auto first = styles.find("<xf numFmtId=\"164\"");
  EXPECT_LT(first, styles.find("<xf numFmtId=\"165\""));
  EXPECT_LT(styles.find("<xf numFmtId=\"165\""), styles.find("<xf numFmtId=\"166\""));
  EXPECT_THAT(PartOf(path, "xl/workbook.xml"), HasSubstr("name=\"Loans  all\""));
}

TEST(ReportOutput, AStopLeavesTheOldFile) {
  TempFolder folder;
  const std::string path = folder.File("old.pdf");
  std::ofstream(path) << "yesterday's";
  EXPECT_THROW(WritePdf(ListOf(9).document, path,
                        [](ReportStage, std::size_t done, std::size_t) { return done < 5; }),
               ReportStopped);
  EXPECT_EQ(Content(path), "yesterday's");
}

// While the rows of a long list are read the window lives, and Stop ends the statement.
TEST(ReportWait, StopEndsALongRead) {
  Office office(Office::State::patched);
  Connection& main = office.session.Main();
  main.BeginTrans();
  for (int i = 0; i < 1000; ++i) {
    main.Execute("INSERT INTO NumberMast VALUES ('L" + std::to_string(i) + "','001','001')");
  }
  main.CommitTrans();
  TempFolder folder;
  std::ofstream(folder.File("long.rpt"))
      << "query\nSELECT COUNT(*) AS n FROM NumberMast a, NumberMast b, NumberMast c WHERE "
         "a.LoanNo<>b.CustID AND b.LoanNo<>c.CustID AND {selection}\nend\ncolumn \"n\" n integer "
         "9\n";
  ReportJob job;
  job.ReportFileName = folder.File("long.rpt");
  job.Connect = &main;
  QTimer press;
  int pressed = 0;
  QObject::connect(&press, &QTimer::timeout, [&] {
    auto* dialog = dynamic_cast<ProgressDialog*>(QApplication::activeModalWidget());
    auto* stop = dialog != nullptr ? dialog->findChild<QPushButton*>() : nullptr;
    if (stop == nullptr) return;
    ++pressed;
    stop->click();
  });
  press.start(50);
  ReportWait wait(nullptr, false);
  EXPECT_THROW(RunWholeReport(job, wait.progress()), ReportStopped);
  press.stop();
  EXPECT_GE(pressed, 1);
  EXPECT_EQ(main.Query("SELECT COUNT(*) FROM NumberMast").Field(0).ToText(), "1000");
}

// Through the dialog into a file: what a PC without a printer offers.
TEST(Paper, GoesThroughThePrintDialog) {
  TempFolder folder;
  const std::string path = folder.File("paper.pdf");
  QTimer::singleShot(200, qApp, [&] {
    auto* dialog = qobject_cast<QPrintDialog*>(QApplication::activeModalWidget());
    ASSERT_NE(dialog, nullptr);
    auto* name = dialog->findChild<QLineEdit*>("filename");
    ASSERT_NE(name, nullptr);
    name->setText(Q(path));
    dialog->accept();
  });
  EXPECT_TRUE(PrintDocument(ListOf(3).document, nullptr, false));
  EXPECT_EQ(Content(path).substr(0, 5), "%PDF-");
  QTimer::singleShot(200, qApp, [] { QApplication::activeModalWidget()->close(); });
  EXPECT_FALSE(PrintDocument(ListOf(3).document, nullptr, false));
}

std::string TroubleOn(QPrinter& printer, bool chinese) {
  try {
    PrintOn(printer, ListOf(3).document, nullptr, chinese);
  } catch (const std::runtime_error& failure) {
    return failure.what();
  }
  return "printed";
}

TEST(Paper, APrinterThatIsNotThereIsTold) {
  TempFolder folder;
  QPrinter printer;
  EXPECT_THAT(TroubleOn(printer, false), HasSubstr("This PC knows no printer"));
  EXPECT_THAT(TroubleOn(printer, true), HasSubstr("没有打印机"));
  const std::string gone = folder.File("gone/paper.pdf");
  printer.setOutputFileName(Q(gone));
  EXPECT_THAT(TroubleOn(printer, false), HasSubstr(gone + " cannot be written"));
  // A short paper fits into what is written at the end.
  const std::string path = folder.File("paper.pdf");
  printer.setOutputFileName(Q(path));
  {
    const FullDisk full(500);
    EXPECT_THAT(TroubleOn(printer, false), HasSubstr(path + " cannot be written"));
  }
  EXPECT_FALSE(std::filesystem::exists(path));
  EXPECT_EQ(TroubleOn(printer, false), "printed");
  const std::size_t whole = Content(path).size();
  printer.setFromTo(2, 2);
  EXPECT_EQ(TroubleOn(printer, false), "printed");
  EXPECT_LT(Content(path).size(), whole);
}

TEST(Preview, StaysOpenWhenItCannotPrint) {
  OpenPreview preview(2);
  TempFolder folder;
  std::string told;
  QTimer::singleShot(200, qApp, [&] {
    auto* dialog = qobject_cast<QPrintDialog*>(QApplication::activeModalWidget());
    ASSERT_NE(dialog, nullptr);
    dialog->findChild<QLineEdit*>("filename")->setText(Q(folder.File("paper.pdf")));
    QTimer::singleShot(300, qApp, [&] {
      auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
      ASSERT_NE(box, nullptr);
      told = S(box->text());
      box->defaultButton()->click();
    });
    dialog->accept();
  });
  {
    const FullDisk full(500);
    preview.Key(Qt::Key_P, Qt::ControlModifier);
  }
  EXPECT_THAT(told, HasSubstr("cannot be written"));
  EXPECT_TRUE(preview.dialog.isVisible());
}

// In its own proportions, at the edge that is told; one that cannot be read is left out.
TEST(Paper, DrawsPictures) {
  TempFolder folder;
  QImage red(40, 20, QImage::Format_RGB32);
  red.fill(Qt::red);
  red.save(Q(folder.File("red.png")));
  std::ofstream(folder.File("broken.png")) << "no picture";
  ReportDocument document;
  document.pages.resize(1);
  document.pages[0].pictures = {{10, 10, 30, 30, folder.File("red.png"), TextAlign::right},
                                {60, 10, 10, 30, folder.File("red.png")},
                                {100, 10, 30, 30, folder.File("broken.png")}};
  QImage paper(210, 60, QImage::Format_RGB32);  // a dot a millimetre
  paper.fill(Qt::white);
  QPainter painter(&paper);
  PaintReportPage(painter, document, 0);
  painter.end();
  const auto is_red = [&](int x, int y) { return paper.pixelColor(x, y) == QColor(Qt::red); };
  EXPECT_TRUE(is_red(11, 11) && is_red(38, 23));
  EXPECT_FALSE(is_red(20, 27));  // 30 wide, 15 high
  EXPECT_TRUE(is_red(61, 11) && is_red(68, 13));
  EXPECT_FALSE(is_red(65, 17) || is_red(110, 15));
  // The head of a letter knows before: a picture that was cut off stands there in letters.
  const std::string whole = Content(folder.File("red.png"));
  std::ofstream(folder.File("cut.png"), std::ios::binary) << whole.substr(0, 40);
  EXPECT_EQ(MeasurePicture(folder.File("red.png")).value_or(PictureSize{}).width, 40);
  for (const char* name : {"broken.png", "cut.png", "nowhere.png"}) {
    EXPECT_FALSE(MeasurePicture(folder.File(name))) << name;
  }
}

TEST(Preview, TellsWhatWasLeftOut) {
  ReportRun run = ListOf(1);
  run.document.left_out = {{"Printed without it.", "已略去。"}};
  for (const bool chinese : {false, true}) {
    PreviewDialog dialog(run, chinese, nullptr);
    dialog.show();
    int told = 0;
    for (const QLabel* label : dialog.findChildren<QLabel*>()) {
      told += label->isVisible() && S(label->text()) == run.document.left_out[0].In(chinese);
    }
    EXPECT_EQ(told, 1);
  }
}

// A tray holds A4 and A5, not sheets of 210 by 148 millimetres.
TEST(Paper, ASheetAcrossIsAKnownSheetTurned) {
  const struct {
    double width;
    double height;
    QPageSize::PageSizeId sheet;
    QPageLayout::Orientation orientation;
  } cases[] = {{210, 297, QPageSize::A4, QPageLayout::Portrait},
               {297, 210, QPageSize::A4, QPageLayout::Landscape},
               {148, 210, QPageSize::A5, QPageLayout::Portrait},
               {210, 148, QPageSize::A5, QPageLayout::Landscape}};
  for (const auto& c : cases) {
    ReportDocument document;
    document.width_mm = c.width;
    document.height_mm = c.height;
    const QPageLayout layout = SheetOf(document);
    EXPECT_EQ(layout.pageSize().id(), c.sheet);
    EXPECT_EQ(layout.orientation(), c.orientation);
    EXPECT_NEAR(layout.fullRect(QPageLayout::Millimeter).width(), c.width, 0.5);
  }
}

}  // namespace
}  // namespace kaunter
