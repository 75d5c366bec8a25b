#pragma once

#include <optional>
#include <string>

#include "velmoria/runtime/date.h"

namespace velmoria {

/// The files of the operating system, by path.
class Files {
 public:
  virtual ~Files() = default;

  /// When the file was last changed, in local time; none when the path names no file that is there. A folder is none.
  virtual std::optional<Date> DateModified(const std::string& path) = 0;

 protected:
  Files() = default;
  Files(const Files&) = default;
  Files& operator=(const Files&) = default;
};

}  // namespace velmoria
