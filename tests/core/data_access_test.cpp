#include "core/data_access.h"

#include <filesystem>

#include "core/texts.h"
#include "gtest/gtest.h"
#include "tests/core/office.h"

namespace kaunter {
namespace {

class DataAccessTest : public ::testing::Test {
 protected:
  Office office{Office::State::base};
};

TEST_F(DataAccessTest, AScalarIsTheFirstFieldAsText) {
  EXPECT_EQ(office.Scalar("SELECT LoanNo FROM NumberMast WHERE CustID='nobody'"), "");
  EXPECT_EQ(office.Scalar("SELECT null"), "");
  office.Run("INSERT INTO NumberMast (CustID,LoanNo,PaymentNo) VALUES ('A','0007','0')");
  EXPECT_EQ(office.Scalar("SELECT LoanNo,CustID FROM NumberMast WHERE CustID='A'"), "0007");
  EXPECT_THROW(office.Scalar("SELECT x FROM NoSuchTable"), SqlError);
}

TEST_F(DataAccessTest, TodayIsTheServersAndAskedInOneWay) {
  std::string asked;
  office.session.Main().SetTrace([&](std::string_view, std::string_view sql) { asked = sql; });
  EXPECT_EQ(ServerNow(office.session.Main(), false), "31-01-2024");
  EXPECT_EQ(asked, "SELECT GETDATE()");
  EXPECT_EQ(ServerNow(office.session.Main(), true), "31-01-2024 14:05:09");
  EXPECT_EQ(ServerTime(office.session.Main()), (DateTime{2024, 1, 31, 14, 5, 9}));
}

TEST_F(DataAccessTest, ATableExistsUnderItsNameAlone) {
  EXPECT_TRUE(TableExists(office.session.Main(), "schmast2"));
  EXPECT_FALSE(TableExists(office.session.Main(), "NoSuchTable"));
  EXPECT_FALSE(TableExists(office.session.Main(), "x' or '1'='1"));
}

TEST_F(DataAccessTest, ExecSqlTellsAFailureAndLivesOn) {
  EXPECT_TRUE(ExecSql(office.session, office.desk, "DELETE FROM NumberMast"));
  EXPECT_TRUE(office.desk.messages.empty());
  EXPECT_FALSE(ExecSql(office.session, office.desk, "DELETE FROM NoSuchTable"));
  EXPECT_EQ(office.desk.messages,
            std::vector<std::string>{"Update1Feld: an error occur during process"});
}

TEST_F(DataAccessTest, ThePhotoFolderIsMadeOnce) {
  office.session.PhotoPath = office.folder.File("Photo");
  EnsurePhotoFolder(office.session, "AB0001");
  EnsurePhotoFolder(office.session, "AB0001");
  EXPECT_TRUE(std::filesystem::is_directory(office.folder.File("Photo/AB0001")));
}

}  // namespace
}  // namespace kaunter
