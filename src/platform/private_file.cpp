#include "platform/private_file.h"

namespace kaunter {

std::ofstream OpenPrivate(const std::filesystem::path& path, std::ios::openmode mode) {
  if (!MakePrivateFile(path)) KeepPrivate(path);
  return std::ofstream(path, mode);
}

}  // namespace kaunter
