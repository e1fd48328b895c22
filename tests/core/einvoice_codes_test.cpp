#include "core/einvoice_codes.h"

#include "core/schema_patches.h"
#include "core/schema_text.h"
#include "core/shipped_codes.h"
#include "gmock/gmock.h"
#include "gtest/gtest.h"
#include "tests/core/office.h"

namespace kaunter {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class EInvoiceCodesTest : public ::testing::Test {
 protected:
  void SetUp() override {
    office.session.data_sources.Add("AMLA",
                                    {DataSource::Kind::kEmbedded, office.folder.File("amla.db")});
    central = OpenSqlite("AMLA", office.folder.File("amla.db"), true, office.session.clock);
    RunScript(*central, SchemaText("central"));
    central->Execute("INSERT INTO Systemast VALUES ('GetTokenurl','https://new')");
    central->Execute("INSERT INTO Systemast VALUES ('GetEInvAPICN','https://central')");
    central->Execute("INSERT INTO eState VALUES ('01','Johor''s')");
    central->Execute("INSERT INTO eState VALUES ('02','Kedah')");
    central->Execute("INSERT INTO eTax VALUES ('01','Sales Tax')");
    office.Run("INSERT INTO Systemast (Param,Value) VALUES ('GetTokenURL','https://old')");
    office.Run("INSERT INTO Systemast (Param,Value) VALUES ('GetTINURL','https://old')");
    office.Run("INSERT INTO Systemast (Param,Value) VALUES ('GetEInvAPICN','https://mine')");
    office.Run("DELETE FROM eState");
    office.Run("INSERT INTO eState VALUES ('99','Old')");
    office.Run("DELETE FROM eTax");
  }
  std::string States() {
    std::string states;
    Recordset rows = office.session.Main().Query("SELECT * FROM eState ORDER BY StateCode");
    for (; !rows.Eof(); rows.MoveNext()) {
      states += rows.Field(0).ToText() + rows.Field(1).ToText() + ";";
    }
    return states;
  }
  std::string Setting(std::string_view key) { return ReadSetting(office.session.Main(), key); }

  Office office{Office::State::patched};
  std::unique_ptr<Connection> central;
};

TEST_F(EInvoiceCodesTest, LocalRowsBecomeTheCentralOnes) {
  EXPECT_TRUE(RefreshEInvoiceCodeTables(office.session, office.desk, {}));
  EXPECT_EQ(States(), "01Johor's;02Kedah;");
  EXPECT_EQ(Setting("GetTokenURL"), "https://new");
  EXPECT_EQ(Setting("GetTINURL"), "");                 // gone centrally
  EXPECT_EQ(Setting("GetEInvAPICN"), "https://mine");  // each office keeps its own
  EXPECT_EQ(office.Scalar("SELECT TaxName FROM eTax"), "Sales Tax");
  EXPECT_THAT(office.desk.messages, IsEmpty());
}

TEST_F(EInvoiceCodesTest, OnlyWhatIsAskedForAndThere) {
  EInvoiceTables only;
  only.eState = only.settings = false;
  EXPECT_TRUE(RefreshEInvoiceCodeTables(office.session, office.desk, only));
  EXPECT_EQ(States(), "99Old;");
  EXPECT_EQ(Setting("GetTINURL"), "https://old");
  EXPECT_EQ(office.Scalar("SELECT COUNT(*) FROM eTax"), "1");

  Office early(Office::State::base);  // eTax comes with a later patch
  early.session.data_sources = office.session.data_sources;
  RunPatch(early.session.Main(), patches::kEInv, "");
  EXPECT_TRUE(RefreshEInvoiceCodeTables(early.session, early.desk, {}));
  EXPECT_EQ(early.Scalar("SELECT COUNT(*) FROM eState"), "2");
}

TEST_F(EInvoiceCodesTest, AFailureIsToldAndKeepsWhatIsThere) {
  office.session.Main().SetFaultHook([](std::string_view sql) {
    if (sql.starts_with("INSERT INTO eTax")) throw SqlError(1105, "disk full");
  });
  EXPECT_FALSE(RefreshEInvoiceCodeTables(office.session, office.desk, {}));
  office.session.Main().SetFaultHook(nullptr);
  EXPECT_FALSE(office.session.Main().InTransaction());
  EXPECT_EQ(States(), "99Old;");
  EXPECT_EQ(Setting("GetTINURL"), "https://old");
  EXPECT_THAT(
      office.desk.messages,
      ElementsAre("Kaunter: an error occur during transfering setting code\ndisk full\nNothing "
                  "of it was kept. Mend the cause and do it again."));
  EXPECT_THAT(office.Log().back(),
              HasSubstr("Transfer Setting Code - error Rollback 1105 - disk full"));
}

TEST_F(EInvoiceCodesTest, ACentralDatabaseThatIsAwayDeletesNothing) {
  central.reset();
  std::filesystem::remove(office.folder.File("amla.db"));
  EXPECT_FALSE(RefreshEInvoiceCodeTables(office.session, office.desk, {}));
  EXPECT_EQ(States(), "99Old;");
  EXPECT_EQ(office.desk.messages.size(), 1u);
}

// What an office has stays, whatever the program carries.
TEST_F(EInvoiceCodesTest, OnlyAnEmptyTableIsFilledWithTheShippedCodes) {
  const std::string class_016 = "SELECT ClassName FROM eClass WHERE ClassCode='016'";
  EXPECT_EQ(office.Scalar(class_016), "Interest and financing expenses");  // at the first start
  EXPECT_EQ(office.Scalar("SELECT COUNT(*) FROM eCountry"), "249");
  EXPECT_EQ(office.Scalar("SELECT MiscName FROM eMiscCode WHERE MiscCode='64923'"),
            "Licensed money lending activities");
  EXPECT_EQ(office.Scalar("SELECT CountryName FROM eCountry WHERE CountryCode='LAO'"),
            "Lao People's Democratic Republic");
  office.Run("UPDATE eClass SET ClassName='ours' WHERE ClassCode='016'");
  EXPECT_TRUE(FillEmptyCodeTables(office.session.Main()));
  EXPECT_EQ(States(), "99Old;");
  EXPECT_EQ(office.Scalar(class_016), "ours");
  EXPECT_EQ(office.Scalar("SELECT COUNT(*) FROM eTax"), "7");
  EXPECT_FALSE(FillEmptyCodeTables(office.session.Main()));

  // One that was emptied on purpose stays so at the next start; a fill that fails leaves nothing.
  Office alone(Office::State::patched);
  const std::string count = "SELECT COUNT(*) FROM eState";
  EXPECT_EQ(alone.Scalar(count), "17");
  alone.Run("DELETE FROM eState");
  alone.Connect();
  EXPECT_EQ(alone.Scalar(count), "0");
  alone.Run("DELETE FROM eTax");
  alone.session.Main().SetFaultHook([](std::string_view sql) {
    if (sql.starts_with("INSERT INTO eTax")) throw SqlError(1105, "disk full");
  });
  EXPECT_THROW(FillEmptyCodeTables(alone.session.Main()), SqlError);
  alone.session.Main().SetFaultHook(nullptr);
  EXPECT_EQ(alone.Scalar(count), "0");
}

}  // namespace
}  // namespace kaunter
