#include "core/record_right.h"

#include "core/password_screens.h"
#include "core/session.h"

namespace kaunter {

bool RecordRight::MayChange(const Caption& what, std::string_view comp_code) {
  return session_.AllowEdit || Ask(change_agreed_, what, comp_code);
}

bool RecordRight::MayDelete(const Caption& what, std::string_view comp_code) {
  return session_.AllowDelete || Ask(delete_agreed_, what, comp_code);
}

bool RecordRight::Ask(bool& agreed, const Caption& what, std::string_view comp_code) {
  if (!agreed) agreed = ManagerOverride(session_, desk_, what, comp_code);
  return agreed;
}

}  // namespace kaunter
