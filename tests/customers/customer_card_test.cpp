// The card reader and the camera on the customer screen, with a reader of one line.
#include <fmt/format.h>

#include "core/card_boxes.h"
#include "customers/document_store.h"
#include "screen/report_job.h"
#include "tests/customers/customer_test.h"

namespace kaunter {
namespace {

namespace fs = std::filesystem;

struct CounterDesk : AgreeingDesk {
  void Print(const ReportJob& job) override { printed = job; }
  void ShowModal(Screen& screen) override {
    screen.Load();
    for (const char* button : {"OKCmd", "CmdCapture", "OKCmd"}) {
      static_cast<Button*>(screen.Find(button))->Click();
    }
    screen.Unload();
  }
  ReportJob printed;
};

TEST_F(CustomerTest, TheCardAndTheCameraFillTheRecord) {
  const fs::path reader = fs::temp_directory_path() / fmt::format("kaunter-reader-{}", getpid());
  fs::create_directories(reader);
  std::ofstream(reader / "MyKadReader")
      << "#!/bin/sh\nprintf 'TAN\\n850131145678\\n\\nP\\nSERANI\\n\\n1, "
         "JALAN\\n\\n\\n5\\nX\\nY\\n-\\n' "
         "> MyKad.txt; printf '\\377\\330\\377face\\377\\331' > Photo.jpg\n";
  fs::permissions(reader / "MyKadReader", fs::perms::owner_all);
  Session& session = office.session;
  session.MyKadReaderFolder = reader;
  session.PhotoPath = office.folder.File("Photo");
  fs::create_directory(session.PhotoPath);
  office.Run("INSERT INTO Systemast (Param,[Value]) VALUES ('PrintMyKad','1')");
  CounterDesk counter;
  NewCustFrm screen(session, counter);
  screen.Load();
  screen.CompCode.Clear();
  screen.cmdCardReader.Click();
  EXPECT_TRUE(counter.messages.back().ends_with("Please Select Company Code"));
  screen.CompCode.SetText("HQ");
  Fill(screen);
  screen.CustName.Clear();
  screen.cmdCardReader.Click();
  EXPECT_EQ(screen.CustNIC.text() + screen.DOB.text() + screen.CustGender.text(),
            "850131-14-567831-01-1985FEMALE");
  // The paper tells the card, though nothing is saved yet.
  std::string parameters;
  for (const auto& [number, field] : counter.printed.ParameterFields) parameters += field + "\n";
  for (const char* field : {"Card;1;True", "CustNIC;850131-14-5678;True"}) {
    EXPECT_NE(parameters.find(field), std::string::npos) << field;
  }
  EXPECT_TRUE(fs::exists(session.PhotoPath + "/cust1.jpg"));
  screen.CmdWebCam.Click();
  EXPECT_TRUE(
      counter.messages.back().ends_with("Please save Customer Profile first before upload photo"));
  Save(screen);
  EXPECT_EQ(office.Lines("SELECT CustName,CustRace FROM CustMast"), "TAN SERANI \n");
  const std::string of_card = office.Scalar("SELECT Pic6 FROM CustMast");
  EXPECT_EQ(of_card.substr(0, 7), "pic6-20");  // another reading is another file
  EXPECT_EQ(fs::file_size(KeptPath(session, "HQ0001", of_card)), 9u);
  // No camera; then a picture in the place of one.
  screen.CmdWebCam.Click();
  EXPECT_EQ(counter.messages.back(), "Web Camera: error intialize webcam");
  session.Camera = office.folder.File("still.bmp");
  std::ofstream(session.Camera) << "BMpicture";
  screen.CmdWebCam.Click();
  EXPECT_EQ(office.Scalar("SELECT Pic1 FROM CustMast").substr(0, 5), "pic1-");
  // A record that is left takes the waiting picture with it.
  screen.cmdCardReader.Click();
  EXPECT_TRUE(fs::exists(session.PhotoPath + "/cust1.jpg"));
  screen.CmdClear.Click();
  for (const char* waiting : {"/cust1.jpg", "/tempimage.bmp"}) {
    EXPECT_FALSE(fs::exists(session.PhotoPath + waiting)) << waiting;
  }
  fs::remove_all(reader);
}

}  // namespace
}  // namespace kaunter
