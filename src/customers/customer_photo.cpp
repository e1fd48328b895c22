#include "customers/customer_photo.h"

#include <filesystem>
#include <utility>

#include "core/file_store.h"
#include "core/session.h"
#include "screen/meanwhile.h"
#include "screen/screen.h"

namespace kaunter {

void CustomerPhoto::Show(Session& session, const std::string& cust_id, const std::string& photo) {
  const std::string path =
      IsPlainFileName(photo) ? KeptPath(session, cust_id, photo) : std::string();
  if (std::exchange(wanted_, path) == path) return SetVisible(!Text().empty());
  SetPath({});
  awaited_ = path;
  Look();
  if (!awaited_.empty() && GoesOnMeanwhile(screen().desk())) {
    if (FileStore* store = StoreOf(session)) store->Fetch({StoredName(cust_id), photo}, false);
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
