#pragma once

#include <memory>
#include <vector>

#include "velmoria/platform/odbc/block_fetch.h"
#include "velmoria/platform/rdo/constants.h"
#include "velmoria/platform/rdo/fwd.h"
#include "velmoria/runtime/object.h"
#include "velmoria/runtime/row_block.h"

namespace velmoria {

/// The rows of an open result that have been fetched so far, and the place in them: what a result and its columns
/// share. Positions count from 1; 0 is before the first row, one more than the number of rows is after the last. The
/// statement ends as soon as its last row has been fetched.
class RdoCursor : public Object {
 public:
  RdoCursor(rdoEnginePtr engine, std::unique_ptr<odbc::Statement> statement,
            const std::vector<odbc::ColumnInfo>& columns, bool forwardOnly);
  ~RdoCursor() override;

  long long Position() const noexcept { return position_; }
  bool HasRow() const noexcept { return position_ >= 1 && position_ <= Fetched(); }
  bool AtBOF() const noexcept;
  bool AtEOF() const noexcept;
  /// -1 until the end has been reached.
  long long RowCount() const noexcept;
  /// Goes to a position, fetching up to it; beyond the ends to the ends. Raises 40088 for going back in a forward-only
  /// result, 40071 after Close.
  void GoTo(long long position);
  void GoToLast();
  RowBlock Take(long long rows);
  Variant Value(std::size_t column) const;
  void Close() noexcept;
  void RequireOpen() const;

 private:
  bool FetchMore();
  /// Fetches until the position is known to exist or the end is reached.
  bool Reach(long long position);
  long long Fetched() const noexcept { return static_cast<long long>(rows_.Rows()); }

  rdoEnginePtr engine_;
  std::unique_ptr<odbc::Statement> statement_;
  std::unique_ptr<odbc::BlockFetch> fetch_;  // none once the last row has been fetched
  RowBlock rows_;
  long long position_ = 1;
  bool forwardOnly_;
  bool closed_ = false;
  bool failed_ = false;
};

}  // namespace velmoria
