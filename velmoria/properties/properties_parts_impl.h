#pragma once

#include <string>

#include "velmoria/core/statistics.h"
#include "velmoria/properties/parents_data.h"
#include "velmoria/properties/properties.h"
#include "velmoria/properties/property.h"
#include "velmoria/runtime/keyed_list.h"

namespace velmoria {

struct Properties::Rare {
  Parents Family;
  StatisticsPtr OwnStatistics;
  std::string ActionName;
};

struct Properties::Items {
  KeyedList<PropertyPtr> List;
};

}  // namespace velmoria
