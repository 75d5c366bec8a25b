#pragma once

#include "velmoria/core/enumerations.h"
#include "velmoria/runtime/variant.h"

namespace velmoria {

/// The engines that a Source or a Connector can be defined for: 1 to 5.
constexpr bool IsDefinableEngine(zEngines engine) noexcept { return engine >= engAccess && engine <= engOracle; }

/// Puts an engine at the end of a list, an array from 0 that is Empty while there is none.
void AppendEngine(Variant& engines, zEngines engine);

/// Those engines of a list for which a collection has no member.
template <class Collection>
Variant EnginesWithout(const Variant& candidates, const Collection& collection) {
  Variant missing;
  if (candidates.IsEmpty()) return missing;
  for (auto index = candidates.LowerBound(); index <= candidates.UpperBound(); ++index) {
    const auto engine = static_cast<zEngines>(candidates.Element(index).AsLong());
    if (!collection.Find(engine)) AppendEngine(missing, engine);
  }
  return missing;
}

}  // namespace velmoria
