#include "velmoria/core/host_description.h"

#include <utility>

#include "velmoria/platform/posix/process_host_application.h"

namespace velmoria {

void DescribeHost(std::string name, std::int32_t major, std::int32_t minor, std::int32_t revision) {
  ProcessHostApplication::Describe(std::move(name), major, minor, revision);
}

}  // namespace velmoria
