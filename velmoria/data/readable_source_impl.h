#pragma once

#include "velmoria/core/catalogue.h"
#include "velmoria/core/enumerations.h"

namespace velmoria {

/// A type of source that gives rows on engines 2 to 5, and the number of a failure to open or describe one.
struct ReadableSource {
  zSourceTypes SourceType;
  zErrors Failure;
};

inline constexpr ReadableSource kReadableSources[] = {
    {stTable, errRDO_Table},
    {stView, errRDO_View},
    {stSQL, errRDO_SQL},
    {stStoredProcedure, errRDO_StoredProcedure},
};

/// Null for a type that gives no rows.
constexpr const ReadableSource* FindReadableSource(zSourceTypes sourceType) noexcept {
  for (const auto& row : kReadableSources)
    if (row.SourceType == sourceType) return &row;
  return nullptr;
}

/// The number of a failure for any type.
constexpr zErrors SourceFailure(zSourceTypes sourceType) noexcept {
  const auto* row = FindReadableSource(sourceType);
  return row ? row->Failure : errRDO_Resultset;
}

}  // namespace velmoria
