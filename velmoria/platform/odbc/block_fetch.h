#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "velmoria/platform/odbc/columns.h"
#include "velmoria/platform/odbc/landing.h"
#include "velmoria/platform/odbc/statement.h"
#include "velmoria/runtime/row_block.h"
#include "velmoria/runtime/variant.h"

namespace velmoria::odbc {

/// Fetches the rows of an executed statement forwards, block by block, as a column-wise row array. Values arrive in
/// slots that are used again for every block of the same size, and go from there into the chunk.
///
/// A slot is as wide as the driver says the column can be, up to a limit, and no size is trusted: of a value that is
/// longer, the row is fetched once more by itself and the value read whole. What becomes of one in a cursor that cannot
/// go back to a row, the caller says.
class BlockFetch {
 public:
  /// Of a cursor that cannot go back to a row.
  enum class WhenCut {
    ReadRowByRow,  // rows are read one by one, unless no column can be longer than its slot
    Tell           // IsCut tells, and the rows of the block are lost
  };

  /// The statement has to outlive the use of this. It writes into this from the first Next until Release or its end,
  /// whichever comes first.
  BlockFetch(Statement& statement, Columns columns, WhenCut whenCut = WhenCut::ReadRowByRow);
  BlockFetch(const BlockFetch&) = delete;
  BlockFetch& operator=(const BlockFetch&) = delete;

  /// The next rows, or null after the last one. After a failure, or when it is cut, it must not be called again.
  std::shared_ptr<const RowChunk> Next();
  /// Reads a long column of the row, both from 1, whatever its length: a byte array, or Null. Raises 40088 when the row
  /// cannot be gone back to: of a cursor that does not scroll, only the first row fetched can be read before the
  /// second is.
  Variant ReadLong(std::size_t row, Word column, bool isText);
  /// Takes back what is bound and set at the statement, which then no longer writes into this nor fetches blocks. It is
  /// called ahead of anything else that the statement fetches; afterwards neither Next nor ReadLong may be.
  void Release();
  /// Whether Next gave null because a value was longer than the driver said.
  bool IsCut() const noexcept { return isCut_; }
  /// Whether the last row has been given out.
  bool HasEnded() const noexcept { return ended_; }

 private:
  std::size_t RowsOfBlock() const noexcept;
  void Prepare(std::size_t rows);
  void MakeRoom(std::size_t rows);
  void Bind();
  void Unbind();
  void SetArraySize(std::size_t rows);
  std::size_t FetchBlock();
  std::size_t FetchRows(std::size_t rows);
  void RefuseFailedRows() const;
  void CompleteLongValues(std::size_t rows, bool informed);
  std::shared_ptr<const RowChunk> MakeChunk(std::size_t rows);

  Statement& statement_;
  Columns columns_;
  std::vector<Landing> landings_;  // over columns_ and memory_
  std::size_t rowBytes_ = 0;
  bool isStream_ = false;
  bool rowByRow_ = false;
  bool firstAlone_ = false;    // the first row is fetched by itself, so that its long columns can be read
  bool repositioned_ = false;  // the cursor stands on a single row, not on the block
  bool ended_ = false;
  bool isCut_ = false;
  bool isBound_ = false;
  std::unique_ptr<std::byte[]> memory_;
  std::size_t capacity_ = 0;   // rows that the landings hold
  std::size_t arraySize_ = 0;  // rows that the driver is told to fetch
  std::size_t rowsBefore_ = 0;
  ULength fetched_ = 0;
  Word* status_ = nullptr;  // of each row, in memory_
};

}  // namespace velmoria::odbc
