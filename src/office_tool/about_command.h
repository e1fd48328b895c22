// kaunter-office about: what Help, About This Office shows.
#pragma once

namespace kaunter {

struct OfficeRun;
int RunAboutCommand(OfficeRun& run);

}  // namespace kaunter
