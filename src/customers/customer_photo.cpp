#include "customers/customer_photo.h"

#include <fmt/format.h>

#include <filesystem>
#include <utility>

#include "core/data_access.h"
#include "core/file_store.h"
#include "core/session.h"
#include "core/sql_literals.h"
#include "screen/meanwhile.h"
#include "screen/screen.h"

namespace kaunter {

void CustomerPhoto::Show(Session& session, const std::string& cust_id) {
  if (std::exchange(cust_id_, cust_id) == cust_id) return;
  awaited_.clear();
  SetPath({});
  const std::string photo =
      cust_id.empty()
          ? std::string()
          : ScalarQuery(session.Main(), fmt::format("SELECT Pic1 FROM CustMast WHERE CustID={}",
                                                    QuoteStr(cust_id)));
  if (IsPlainFileName(photo)) {
    awaited_ = KeptPath(session, cust_id, photo);
    Look();
    if (!awaited_.empty() && GoesOnMeanwhile(screen().desk())) {
      if (FileStore* store = StoreOf(session)) store->Fetch({StoredName(cust_id), photo}, false);
    }
  }
  SetVisible(!Text().empty());
}

void CustomerPhoto::Look() {
  std::error_code error;
  if (awaited_.empty() || !std::filesystem::exists(awaited_, error)) return;
  SetPath(std::exchange(awaited_, {}));
  SetVisible(true);
}

}  // namespace kaunter
