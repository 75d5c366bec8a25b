#pragma once

#include "velmoria/platform/posix/host_application.h"

namespace velmoria {

/// The running process. Its name is that of its executable file and its version 0.0.0 until the host describes itself.
class ProcessHostApplication final : public HostApplication {
 public:
  /// For the whole process, from any thread; an empty name leaves the executable's.
  static void Describe(std::string name, std::int32_t major, std::int32_t minor, std::int32_t revision);

  std::string Name() override;
  std::int32_t Major() override;
  std::int32_t Minor() override;
  std::int32_t Revision() override;
  /// The login name of the effective user, else the variable USER.
  std::string UserName() override;
};

}  // namespace velmoria
