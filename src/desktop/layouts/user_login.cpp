#include "desktop/layouts/layouts.h"

namespace kaunter {

Layout UserLoginLayout() {
  return {"UserLogin",
          {},
          Down({Heading({"Welcome to Kaunter", "欢迎使用 Kaunter"}),
                Fields(1, {"UserID", "Password"})}),
          {"OKCmd", "CancelCmd"}};
}

}  // namespace kaunter
