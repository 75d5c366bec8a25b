#include "velmoria/platform/posix/posix_files.h"

#include <sys/stat.h>

#include "velmoria/platform/posix/local_time.h"

namespace velmoria {

std::optional<Date> PosixFiles::DateModified(const std::string& path) {
  struct stat found{};
  if (stat(path.c_str(), &found) != 0 || S_ISDIR(found.st_mode)) return std::nullopt;
  return LocalDate(found.st_mtim);
}

}  // namespace velmoria
