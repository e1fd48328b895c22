#include "desktop/layouts/layouts.h"

namespace kaunter {

// As the paper goes: who, what he lives on, what was done and why it is suspicious.
Layout AMLAFrmLayout() {
  const LayoutNode identity =
      Across({Group({"Person", "当事人"}, 1,
                    {"Name1", Stacked({"Name2", "Name3", "Name4"}), "Nationality", "Gender", "NRIC",
                     "OldIC", Line({"OthIC", "IDType"})}),
              Group({"Contact", "联络"}, 1,
                    {"HP", "Tel1", "Tel2", "Fax", "email", "Add1", "Add2", "Add3", "Add4"})},
             {4, 5});
  const LayoutNode work = Across(
      {Group({"Work", "职业"}, 1,
             {"BizType", "Occupation", "JobDetail", "EmployerName", "EmploymentArea", "OtherWork"}),
       Group(
           {"Family", "家庭"}, 1,
           {"MaritalStatus", "SpouseName", "SpouseNIC", "SpouseOIC",
            Line({"SpouseOthIC", "SpouseIDType"}), "SpousePassportNo", "SpousePassportCountry"})});
  const LayoutNode suspicion =
      Down({Group({"Transaction", "交易"}, 2,
                  {"CustID", "Trans", "TransType", "LoanType", "TransDate", "TransAmt"}),
            Group({"Suspicion", "可疑之处"}, 1, {"SuspiciousWork", "CrimeDesc", "CrimeEnv"})});
  return {"AMLAFrm",
          {1020, 640},
          Down({Group({"Report", "报告"}, 3, {"TrxID", "TrxDate", "CompCode"}),
                Tabs("Pages", {Page("IdentityPage", identity), Page("WorkPage", work),
                               Page("SuspicionPage", suspicion)})}),
          {"SearchCmd", "CmdPrint", "CmdClear", "SaveCmd", "CancelCmd"}};
}

// The statement and what it asks for above, its rows below.
Layout NPLExportfrmLayout() {
  return {"NPLExportfrm",
          {1080, 700},
          Down({Across({Group({"Statement", "语句"}, 1, {"SQLID", "SQLStatement"}),
                        Group({"Dates, Company and File", "日期、公司与文件"}, 1,
                              {"FromDate", "ToDate", "DateFrom", "DateTo", "CompCode",
                               "ExportHeader", "Quote"})},
                       {7, 4}),
                Title("ResultLBL"), Fill("DG")}),
          {"Command4", "Command1", "Command2", "SSCommand1", "CmdExcel", "SaveCmd", "CancelCmd"}};
}

// The copy and the run above, the list, and below it the two sides of the row that is chosen, with
// what is decided about them.
Layout WatchListFrmLayout() {
  return {"WatchListFrm",
          {1330, 740},
          Down({Fields(2, {"CopyLBL", "UseCopy", "RunLBL", "Show"}), Fill("HitDG"),
                Across({Group({"The Row Chosen", "所选的一行"}, 2, {"Customer", "Entry"}),
                        Down({Group({"Decision", "决定"}, 1, {"Remark"}),
                              ButtonsHere({"HitCmd", "NoHitCmd", "CustCmd"})})},
                       {8, 5})},
               {0, 1, 0}),
          {"CopyCmd", "PrintCmd", "ScreenCmd", "CancelCmd"}};
}

}  // namespace kaunter
