#include "core/einvoice_codes.h"

#include "core/schema_patches.h"
#include "core/schema_text.h"
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
    office.Run("INSERT INTO eState VALUES ('99','Old')");
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
  RunPatch(early.session.Main(), patches::kEInv);
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

}  // namespace
}  // namespace kaunter
