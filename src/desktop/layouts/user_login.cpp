#include "desktop/layouts/layouts.h"

namespace kaunter {

Layout UserLoginLayout() {
  return {"UserLogin",
          {},
          Down({Heading({"Welcome to Kaunter", "欢迎使用 Kaunter"}),
                Fields(1, {"UserID", "Password"})}),
          {"OKCmd", "CancelCmd"}};
}

// The three roads, then what the chosen one needs.
Layout FirstStartFrmLayout() {
  return {"FirstStartFrm",
          {820, 560},
          Down({Title("IntroLBL"), Fields(1, {"DemoOpt", "NewOpt", "JoinOpt"}),
                Group({"", ""}, 1,
                      {Wide("NeedsLBL"), "Anew", "Folder", "ServerType", "Server", "DatabaseName",
                       "UserID", "Password", "Encrypted", Wide("PlaceLBL")})}),
          {"LanguageCmd", "TestCmd", "OKCmd", "CancelCmd"}};
}

// The prompts for a manager and for the own password: what is asked for stands over the boxes.
Layout FrmUserSignInLayout() {
  return {"frmUserSignIn",
          {460, 250},
          Fields(1, {"RequestLBL", "Company", "UserID", "Password"}),
          {"OKCmd", "CancelCmd"}};
}

Layout AccessPasswordFrmLayout() {
  return {"AccessPasswordFrm",
          {460, 180},
          Fields(1, {"RequestLBL", "Password"}),
          {"OKCmd", "CancelCmd"}};
}

}  // namespace kaunter
