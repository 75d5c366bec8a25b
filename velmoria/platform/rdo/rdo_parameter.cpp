#include "velmoria/platform/rdo/rdo_parameter.h"

namespace velmoria {

std::string_view rdoParameter::ReportedType() const noexcept { return "rdoParameter"; }

}  // namespace velmoria
