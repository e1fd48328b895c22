#include "office_tool/about_command.h"

#include "office_tool/command.h"
#include "upkeep/about.h"

namespace kaunter {

int RunAboutCommand(OfficeRun& run) {
  OpenReachedOffice(run.session, run.reach);
  OfficeRun::Say(AboutText(TellAbout(run.session, RowCounts::told), false));
  return exit_status::kDone;
}

}  // namespace kaunter
