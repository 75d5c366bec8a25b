#pragma once

#include <cstddef>
#include <exception>
#include <optional>
#include <vector>

#include "velmoria/platform/odbc/block_fetch.h"
#include "velmoria/platform/odbc/parameters.h"
#include "velmoria/platform/odbc/statement.h"
#include "velmoria/runtime/variant.h"

namespace velmoria::odbc {

/// What a call gives back in its parameters, which is complete behind its last result.
///
/// Some drivers have it right only in a row of its own, the last that they give: in the buffers a Null looks like
/// nothing, and a long value is cut.
class CallOutputs {
 public:
  struct Output {
    std::size_t Place;  // of the parameter, from 0
    Variant Value;
  };

  /// The values have to outlive the call, not this.
  explicit CallOutputs(ParameterValues& values) : values_(&values) {}

  /// Whether a result of so many columns may be the row of the outputs.
  bool MayBe(std::size_t columns) const noexcept {
    return values_->OutputsComeAsRow() && columns == values_->Outputs();
  }
  /// A row that may be the one; the last one is.
  void Note(std::vector<Variant> row) { row_ = std::move(row); }
  /// Goes through the result that the statement is at and all behind it, and takes the outputs. What fails is raised by
  /// Outputs.
  void TakeFrom(Statement& statement) noexcept;
  /// The same from the next result on, behind rows that have been fetched and that are released.
  void TakeBehind(Statement& statement, BlockFetch& rows) noexcept;
  /// The same behind the last result.
  void TakeAtEnd() noexcept;
  const std::vector<Output>& Outputs() const;

 private:
  void LookAt(Statement& statement);
  void Collect();

  ParameterValues* values_;
  std::optional<std::vector<Variant>> row_{};
  std::exception_ptr failure_{};
  std::vector<Output> outputs_{};
};

}  // namespace velmoria::odbc
