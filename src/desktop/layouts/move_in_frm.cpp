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

}  // namespace kaunter
