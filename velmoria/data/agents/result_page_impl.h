#pragma once

#include <cstdint>

#include "velmoria/fwd.h"
#include "velmoria/platform/rdo/fwd.h"
#include "velmoria/runtime/row_block.h"
#include "velmoria/runtime/variant.h"

namespace velmoria {

class ResultFilter;

/// One page as it comes from a result: its rows and the positions around it. Empty where there is no such position.
struct ResultPage {
  Variant Prev{};
  Variant First{};
  Variant Last{};
  Variant Next{};
  RowBlock Rows{};
};

/// The first page, or the one that follows `previous`. A buffer above 0 reads so many rows forwards, 0 all that are
/// left, one below 0 so many rows backwards from the end: the last row of the result then stays the next position.
ResultPage ReadChunk(rdoResultset& result, std::int32_t buffer, const RecordsetPtr& previous);

/// The same for the rows alone that match the filter; always forwards, and with a buffer of 0 or below to the end.
/// Raises as the filter.
ResultPage ReadMatches(rdoResultset& result, const ResultFilter& filter, std::int32_t buffer,
                       const RecordsetPtr& previous);

}  // namespace velmoria
