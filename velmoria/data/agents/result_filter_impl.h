#pragma once

#include <cstdint>
#include <vector>

#include "velmoria/fwd.h"
#include "velmoria/platform/rdo/fwd.h"
#include "velmoria/runtime/variant.h"

namespace velmoria {

struct MatchOperator;

/// Parameters that a Source does not declare, applied to the rows of its result here: all that have a value must hold,
/// and OrFlag has no effect. It holds the columns of the result, which must outlive it.
class ResultFilter {
 public:
  /// Finds a column by the parameter's Name, SourceName or SourceKey. Raises 15096 for an Operator that is none.
  ResultFilter(const rdoResultset& result, const Properties& filters);

  /// Whether the current row matches; none does when the column of a parameter is not in the result.
  bool Matches() const;

 private:
  struct Criterion {
    const rdoColumn* Column;
    const MatchOperator* Operator;
    Variant Value;
  };
  std::vector<Criterion> criteria_;
  bool hasAllColumns_ = true;
};

}  // namespace velmoria
