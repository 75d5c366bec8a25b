#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "velmoria/platform/odbc/columns.h"
#include "velmoria/platform/odbc/date_doubts.h"
#include "velmoria/platform/odbc/statement.h"
#include "velmoria/runtime/row_block.h"
#include "velmoria/runtime/variant.h"

namespace velmoria::odbc {

/// Where the values of one column land in a fetch, and how they become a column of a chunk. The description, and the
/// memory that they land in, belong to the one who fetches and have to outlive this.
class Landing {
 public:
  Landing(const ColumnInfo& info, Word number, const DateManners& manners);
  /// Asks the driver for the text of every value; ahead of LandIn.
  void LandAsText() noexcept;

  /// Bytes that a row takes in the buffers of the fetch, without what Bytes adds between the columns.
  std::size_t RowBytes() const noexcept { return slotWidth_ + sizeof(Length); }
  /// Whether a value can be longer than its slot.
  bool CanBeCut() const noexcept;
  /// A long column is not fetched, and has no buffers.
  bool IsFetched() const noexcept { return info_->Storage != ColumnStorage::Placeholder; }

  /// Memory for so many rows, a multiple of the size of a Length.
  std::size_t Bytes(std::size_t rows) const noexcept;
  /// From here on the rows land in Bytes(rows) of this memory, which is aligned for a Length.
  void LandIn(std::byte* memory, std::size_t rows) noexcept;
  /// Readies it for the rows of a new chunk.
  void Begin();
  void Bind(Statement& statement);
  /// Reads the value of the cursor's row, whatever its length, for the given row of the chunk.
  void Read(Statement& statement, std::size_t row);
  /// Raises 5 for a date among the first `rows` that the driver has misread; called while the cursor is on them.
  void RefuseMisread(Statement& statement, std::size_t rows);
  /// Whether the value of a row did not fit; `informed` tells that the driver gave information with the fetch.
  bool IsCut(std::size_t row, bool informed) const noexcept;
  /// Whether any of the first `rows` values did not fit.
  bool HasCut(std::size_t rows, bool informed) const noexcept;

  /// The chunk's column of the first `rows` rows, as far as it tells what room they take. Raises 6 for texts that are
  /// too long together.
  RowChunk::Column Describe(std::size_t rows);
  /// Writes the rows into the column that the chunk made of it. Raises what their conversion raises.
  void Fill(const RowChunk::Column& column, std::size_t rows) const;
  /// The value of the first row.
  Variant Value();

  /// Where the driver puts what it gives, row by row.
  Small CType() const noexcept { return cType_; }
  std::size_t SlotWidth() const noexcept { return slotWidth_; }
  std::byte* Slots() const noexcept { return slots_; }
  Length* Indicators() const noexcept { return indicators_; }

 private:
  bool IsNull(std::size_t row) const noexcept;
  std::string_view TextAt(std::size_t row) const;
  std::string_view SlotAt(std::size_t row) const noexcept;
  bool IsDateText() const noexcept;
  void RefuseIfMisread(Statement& statement, std::size_t row, std::size_t place);
  void ReadRest(Statement& statement, std::size_t row);
  void TakeEmptyAsNull(std::size_t rows) noexcept;
  velmoria::Date DateAt(std::size_t row) const;
  std::string InColumn() const;
  std::size_t BytesOfTexts(std::size_t rows) const;
  void FillTexts(const RowChunk::Column& column, std::size_t rows) const;
  void FillConverted(const RowChunk::Column& column, std::size_t rows) const;
  template <class T, class Conversion>
  void Convert(const RowChunk::Column& column, std::size_t rows, Conversion convert) const;
  template <class From>
  From Slot(std::size_t row) const;
  template <class From>
  std::int64_t Whole(std::size_t row) const;

  const ColumnInfo* info_;
  Word number_;
  Small cType_;
  bool isPlain_;  // lands as it stands in the chunk
  std::size_t slotWidth_;
  std::size_t rows_ = 0;
  std::byte* slots_ = nullptr;
  Length* indicators_ = nullptr;
  std::map<std::size_t, std::string> whole_;  // the values that did not fit, by row
  std::unique_ptr<DateDoubts> doubts_;        // of a driver that misreads
};

}  // namespace velmoria::odbc
