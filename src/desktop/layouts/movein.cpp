#include "desktop/layouts/layouts.h"

namespace kaunter {

// A page a file, in the order in which they are told; what came of it on the last.
Layout MoveInFrmLayout() {
  std::vector<LayoutNode> files;
  const struct {
    const char* page;
    const char* suffix;
  } pages[] = {{"customersPage", "(0)"}, {"loansPage", "(1)"}, {"paymentsPage", "(2)"}};
  for (const auto& page : pages) {
    const auto box = [&page](const char* name) { return std::string(name) + page.suffix; };
    files.push_back(
        Page(page.page,
             Down({Across({Group({"File", "文件"}, 1,
                                 {Beside({box("File"), box("CmdFile")}),
                                  Beside({box("MapName"), box("CmdKeep")})}),
                           Group({"How It Is Written", "书写方式"}, 2,
                                 {box("Days"), box("Decimal"), box("Separator"), box("Letters")})},
                          {5, 6}),
                   Title(box("LookLBL")), Fill(box("MapDG"))})));
  }
  files.push_back(
      Page("ResultPage",
           Down({Fill("TotalDG"),
                 Across({Title("ResultLBL"), ButtonsHere({"CmdPrint", "CmdExport"})}), Fill("DG")},
                {2, 0, 5})));
  return {"MoveInFrm",
          {1160, 740},
          Down({Fields(2, {"CompCode"}), Tabs("Pages", files)}),
          {"CmdDry", "SaveCmd", "CancelCmd"}};
}

// What is asked, how far it is, and what of the file will not fit.
Layout AccessDBLayout() {
  return {"AccessDB",
          {1080, 720},
          Down({Across({Group({"Conversion", "转换"}, 1,
                              {Beside({"FileName", "CmdFile"}),
                               Line({"CompCode", "ClearData", "ExpOpt"})}),
                        Group({"Progress", "进度"}, 1, {"TablesBar", "RowsBar"})},
                       {3, 2}),
                Fill("CountDG"), Title("ResultLBL"), Fill("DG")},
               {0, 4, 0, 5}),
          {"CmdExport", "CmdDry", "SSCommand1", "CancelCmd"}};
}

}  // namespace kaunter
