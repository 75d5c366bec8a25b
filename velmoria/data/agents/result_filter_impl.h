#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "velmoria/core/reporting.h"
#include "velmoria/data/agents/agent_impl.h"
#include "velmoria/fwd.h"
#include "velmoria/platform/rdo/fwd.h"
#include "velmoria/runtime/variant.h"

namespace velmoria {

struct MatchOperator;

/// Parameters that a Source does not declare, applied to the rows of its result here: all that have a value must hold,
/// and OrFlag has no effect. It holds the columns of the result and reports for the agent; both must outlive it.
class ResultFilter final : public Reporting {
 public:
  /// Finds a column by the parameter's Name, SourceName or SourceKey.
  ResultFilter(const Agent& agent, const rdoResultset& result, const Properties& filters);
  std::string_view ReportedType() const noexcept override { return "SQLAgent"; }

  /// Whether the current row matches; none does when the column of a parameter is not in the result. The first
  /// parameter that does not hold decides: what stands behind it is not looked at. Raises 15096 for an Operator that is
  /// none, 13 for a value that cannot be compared with its column, and 40088 where the value of a long column is out of
  /// the result's reach.
  bool Matches() const;

 private:
  struct Criterion {
    std::string Name;
    std::string OperatorText;
    const rdoColumn* Column;
    const MatchOperator* Operator;  // null for a text that is none
    Variant Value;
  };

  std::string StateDetails() const override { return agent_.Details(); }
  bool Holds(const Criterion& criterion) const;

  const Agent& agent_;
  std::vector<Criterion> criteria_;
};

}  // namespace velmoria
