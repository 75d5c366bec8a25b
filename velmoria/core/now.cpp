#include "velmoria/core/now.h"

#include "velmoria/core/apartment_impl.h"

namespace velmoria {

Date Now() { return Apartment().Platform.Clock->Now(); }

}  // namespace velmoria
