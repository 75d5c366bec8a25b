#pragma once

#include <string>

namespace velmoria {

/// The Details of a collection: a heading, and those of each member on a line of their own.
template <class Members>
std::string DetailsOf(std::string heading, const Members& members) {
  for (const auto& member : members) heading.append("\r\n    ").append(member->Details());
  return heading;
}

}  // namespace velmoria
