#pragma once

#include "velmoria/properties/attributes.h"
#include "velmoria/properties/parents_data.h"
#include "velmoria/properties/property.h"

namespace velmoria {

struct Property::Rare {
  Parents Family;
  AttributesPtr OwnAttributes;
};

}  // namespace velmoria
