#pragma once

#include <cstdint>
#include <string>

namespace velmoria {

/// The program that has loaded the library, and the user who runs it.
class HostApplication {
 public:
  virtual ~HostApplication() = default;

  virtual std::string Name() = 0;
  virtual std::int32_t Major() = 0;
  virtual std::int32_t Minor() = 0;
  virtual std::int32_t Revision() = 0;
  virtual std::string UserName() = 0;

 protected:
  HostApplication() = default;
  HostApplication(const HostApplication&) = default;
  HostApplication& operator=(const HostApplication&) = default;
};

}  // namespace velmoria
