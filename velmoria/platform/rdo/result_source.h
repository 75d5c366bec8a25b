#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "velmoria/platform/odbc/block_fetch.h"
#include "velmoria/platform/odbc/columns.h"
#include "velmoria/platform/odbc/parameters.h"
#include "velmoria/platform/odbc/statement.h"
#include "velmoria/runtime/row_block.h"
#include "velmoria/runtime/variant.h"

namespace velmoria {

/// Where the rows of a result come from: a statement that has been executed, or is being executed in the background,
/// with what is bound to it and the fetch of its result. It owns these, and ends the statement first.
class ResultSource {
 public:
  ResultSource(std::unique_ptr<odbc::Statement> statement, std::unique_ptr<odbc::ParameterValues> values)
      : values_(std::move(values)), statement_(std::move(statement)) {}
  ResultSource(const ResultSource&) = delete;
  ResultSource& operator=(const ResultSource&) = delete;

  /// The text of the statement only reads, so that RunAgain may be called; before BeginFetch.
  void LetRunAgain(std::string sql, bool prepared) { recipe_ = Recipe{std::move(sql), prepared}; }
  bool CanRunAgain() const noexcept { return recipe_.has_value(); }

  /// Not behind End, unless it was run again.
  odbc::Statement& Statement() const noexcept { return *statement_; }
  odbc::ParameterValues& Values() const noexcept { return *values_; }
  /// Between BeginFetch and End, and behind RunAgain.
  odbc::BlockFetch& Fetch() noexcept { return *fetch_; }
  bool HasFetch() const noexcept { return fetch_.has_value(); }
  /// Whether the driver can still be asked for rows.
  bool IsOpen() const noexcept { return fetch_ && statement_->IsOpen(); }
  bool IsExecuting() const noexcept { return statement_ && statement_->IsExecuting(); }
  bool IsUnfinished() const noexcept { return statement_ && statement_->IsUnfinished(); }

  /// Goes to the first result that has columns; false when there is none.
  bool OpenResult();
  /// Begins with the rows of that result, of these columns.
  void BeginFetch(odbc::Columns columns);
  /// Ends the statement.
  void End() noexcept;
  /// Runs the text once more and begins with its rows anew, which then come one by one; only where CanRunAgain, and
  /// behind End. Raises 40071 when it gives no result with the same columns any more.
  void RunAgain(odbc::Connection& connection, const odbc::Columns& columns);

 private:
  struct Recipe {
    std::string Sql;
    bool Prepared;
  };

  std::unique_ptr<odbc::ParameterValues> values_;
  std::optional<odbc::BlockFetch> fetch_;
  std::unique_ptr<odbc::Statement> statement_;  // points into the others
  std::optional<Recipe> recipe_;
};

}  // namespace velmoria
