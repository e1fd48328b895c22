// Where an installed program, a portable copy and a person's own files are looked for.
#include "core/places.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "core/report_path.h"
#include "platform/installation.h"
#include "tests/core/home.h"

namespace kaunter {
namespace {

namespace fs = std::filesystem;

TEST(Places, AnInstalledProgramKeepsNothingBesideItselfAndAPortableCopyAll) {
  const Home home;
  const std::string usr = home.Folder("usr"), copy = home.Folder("copy");
  home.Write("usr/share/kaunter/ReportList/loan.ini", "");
  home.Write("copy/ReportList/loan.ini", "");
  home.Folder("usr/lib/kaunter");
  const std::string own = home.File(".local/share/kaunter"), office = home.Folder("office");

  SetInstallation(InstallationAt(usr + "/lib/kaunter"));
  EXPECT_EQ(ThisInstallation().files, usr + "/share/kaunter");
  EXPECT_EQ(AppFolder("", {}), own);
  EXPECT_EQ(fs::status(own).permissions(), fs::perms::owner_all);
  EXPECT_EQ(AppFolder(copy, {}), copy);
  LocalSettings local;
  local.DataFolder = office;
  EXPECT_EQ(AppFolder("", local), office);
  for (const std::string& wrong : {std::string("office"), home.File("away")}) {
    local.DataFolder = wrong;
    EXPECT_THROW(AppFolder("", local), std::runtime_error) << wrong;
  }
  SetInstallation(InstallationAt(copy));
  EXPECT_EQ(AppFolder("", {}), copy);
  // An administrator may write beside an installed program, and shall not.
  home.Write("copy/uninstall.exe", "");
  SetInstallation(InstallationAt(copy));
  EXPECT_EQ(AppFolder("", {}), own);
  EXPECT_EQ(InstallationSettings(ThisInstallation()), copy + "/settings.ini");
}

TEST(Places, TheSettingsOfTheInstallationComeBeforeThePersonsOwn) {
  const Home home;
  home.Write("copy/ReportList/loan.ini", "");
  home.Write(".config/kaunter/settings.ini", "");
  SetInstallation(InstallationAt(home.File("copy")));
  EXPECT_EQ(SettingsFile(), home.File(".config/kaunter/settings.ini"));
  home.Write("copy/settings.ini", "");
  EXPECT_EQ(SettingsFile(), home.File("copy/settings.ini"));
}

// The office's own come first, then what lies in its folder, then what came with the program.
TEST(Places, AReportFileIsFoundInTheOfficesFolderAndAmongThoseOfTheProgram) {
  const Home home;
  home.Write("copy/ReportList/loan.ini", "");
  SetInstallation(InstallationAt(home.File("copy")));
  const std::string asked = home.Folder("office") + "/LoanList.rpt";
  EXPECT_FALSE(ReportFileExists(asked));
  for (const char* place :
       {"copy/LoanList.rpt", "office/LoanList.rpt", "office/OwnReports/LoanList.rpt"}) {
    home.Write(place, "");
    EXPECT_EQ(FindReportFile(asked).path, home.File(place));
  }
  EXPECT_TRUE(FindReportFile(home.File("office/LoanListC.rpt")).chinese);
  EXPECT_EQ(FileOf(home.File("office"), "ReportList/loan.ini"),
            home.File("copy/ReportList/loan.ini"));
}

}  // namespace
}  // namespace kaunter
