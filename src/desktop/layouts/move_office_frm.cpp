#include "desktop/layouts/layouts.h"

namespace kaunter {

// Where the office goes, by one of two roads, and what was found there.
Layout MoveOfficeFrmLayout() {
  return {
      "MoveOfficeFrm",
      {900, 640},
      Down({Title("HereLBL"), Fields(2, {"Target"}),
            Across({Group({"PostgreSQL Server", "PostgreSQL 服务器"}, 1,
                          {"Server", "DatabaseName", "UserID", "Password", "Encrypted"}),
                    Group({"File on This PC", "本机文件"}, 1, {Beside({"FileName", "FileCmd"})})},
                   {1, 1}),
            Fill("DG"), Title("ResultLBL")},
           {0, 0, 0, 1, 0}),
      {"LookCmd", "MoveCmd", "CancelCmd"}};
}

}  // namespace kaunter
