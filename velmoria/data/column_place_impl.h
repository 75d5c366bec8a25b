#pragma once

#include <cstddef>

#include "velmoria/properties/property_data.h"

namespace velmoria {

/// Where the values of a column stand in a row, counted from 0.
inline std::size_t PlaceOfColumn(const PropertyData& column) {
  return static_cast<std::size_t>(column.OrderNumber() - 1);
}

}  // namespace velmoria
