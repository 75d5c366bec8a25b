#pragma once

#include "velmoria/platform/posix/files.h"

namespace velmoria {

class PosixFiles final : public Files {
 public:
  std::optional<Date> DateModified(const std::string& path) override;
};

}  // namespace velmoria
