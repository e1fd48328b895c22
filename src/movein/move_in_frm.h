// MoveInFrm, "Move Old Data In": customers, loans and payments out of spreadsheets. A page for each
// file tells whose column is what; a dry run lists what would be refused, and the move takes the
// rest. From level 4 on.
#pragma once

#include <array>
#include <functional>
#include <map>
#include <optional>
#include <string>

#include "core/session_screen.h"
#include "movein/move_in.h"

namespace kaunter {

class MoveInFrm;

// The boxes of one file: a control array, by MoveKind.
struct MovePage {
  MovePage(MoveInFrm& screen, Tab& tab, MoveKind kind);

  MoveKind kind;
  std::string suffix;  // "(0)", "(1)", "(2)"
  Screen& screen;
  TabPage page;
  TextBox File{screen, "File" + suffix, {"File", "文件"}};
  Button CmdFile{screen, "CmdFile" + suffix, {"Choose...", "选择..."}};
  ComboBox MapName{screen, "MapName" + suffix, {"Mapping", "对照"}, {}, true};
  Button CmdKeep{screen, "CmdKeep" + suffix, {"Keep Mapping", "储存对照"}};
  ComboBox Days{screen,
                "Days" + suffix,
                {"Dates in the File", "文件中的日期"},
                {"dd-mm-yyyy", "mm-dd-yyyy", "yyyy-mm-dd"}};
  ComboBox Decimal{screen, "Decimal" + suffix, {"Before the Sen", "小数点"}, {".", ","}};
  ComboBox Separator{screen,
                     "Separator" + suffix,
                     {"Between Cells", "分隔符"},
                     {"auto", "comma", "semicolon", "tab", "bar"}};
  ComboBox Letters{screen,
                   "Letters" + suffix,
                   {"Encoding", "编码"},
                   {"auto", "utf-8", "utf-16le", "utf-16be", "latin-1", "gbk"}};
  Label LookLBL{screen, "LookLBL" + suffix};
  Grid MapDG;

  std::optional<FileLook> look;  // of the file that is chosen
  Mapping mapping;
};

class MoveInFrm : public SessionScreen {
 public:
  MoveInFrm(Session& session, Desk& desk);

  ComboBox CompCode{*this, "CompCode", {"Company Code", "公司"}};
  Tab Pages{*this, "Pages"};
  std::array<MovePage, 3> pages{MovePage{*this, Pages, MoveKind::customers},
                                MovePage{*this, Pages, MoveKind::loans},
                                MovePage{*this, Pages, MoveKind::payments}};
  TabPage ResultPage{*this, "ResultPage", {"Result", "结果"}, Pages};
  Grid TotalDG{*this,
               "TotalDG",
               {},
               {{{"Of", "资料"}, Kind::text, 14},
                {{"Lines", "行数"}, Kind::integer, 10},
                {{"Known", "已有"}, Kind::integer, 10},
                {{"Refused", "被拒"}, Kind::integer, 10},
                {{"Waiting", "连带"}, Kind::integer, 10},
                {{"Good", "可用"}, Kind::integer, 10},
                {{"Amount", "金额"}, Kind::money, 16}}};
  Label ResultLBL{*this, "ResultLBL"};
  Grid DG{*this,
          "DG",
          {},
          {{{"File", "文件"}, Kind::text, 9},
           {{"Line", "行"}, Kind::integer, 6},
           {{"Field", "栏位"}, Kind::text, 16},
           {{"In the File", "文件内容"}, Kind::text, 16},
           {{"Refused", "被拒"}, Kind::text, 7},
           {{"Reason", "原因"}, Kind::text, 60}}};
  Button CmdPrint{*this, "CmdPrint", {"Pr&int", "打印(&I)"}};
  Button CmdExport{*this, "CmdExport", {"E&xport CSV", "输出 CSV(&X)"}};
  EndPages pages_end{*this};
  Button CmdDry{*this, "CmdDry", {"&Dry Run", "试搬(&D)"}};
  Button SaveCmd{*this, "SaveCmd", {"&Move In", "搬入(&M)"}, ButtonRole::primary};
  Button CancelCmd{*this, "CancelCmd", {"&Close", "关闭(&C)"}, ButtonRole::cancel};

  void Load() override;

 private:
  void Bind(MovePage& page);
  void ChooseFile(MovePage& page);
  // Looks at the file anew; `guess`: the mapping is made by its headings.
  void TakeFile(MovePage& page, bool guess);
  void TakeMapping(MovePage& page);
  void KeepMapping(MovePage& page);
  void FillMappings();
  std::string MappingFolder() const;
  // The choices above the table follow the mapping, and the other way round.
  void ShowMapping(MovePage& page);
  void TakeChoices(MovePage& page);
  void EditMapping(MovePage& page, int row, int column, const std::string& before);
  struct Sample {
    std::string cell;
    std::string taken;
    bool refused = false;
  };
  void ShowSamples(MovePage& page);
  std::map<std::string, Sample, std::less<>> Samples(const MovePage& page) const;  // by our column

  std::optional<MoveInJob> Job();
  // What stands in the files and the mappings, to know a dry run by.
  std::string Footprint(const MoveInJob& job) const;
  std::optional<MoveReport> Run(const MoveInJob& job, bool write);
  void DryRun();
  void Move();
  bool ConfirmMove(const MoveInJob& job);
  Caption Verified(const std::string& company);
  void ShowReport(MoveReport report);
  void PrintList();
  void ExportList();

  MoveReport report_;
  std::string tried_;  // the footprint of the last complete dry run
};

}  // namespace kaunter
