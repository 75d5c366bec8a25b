#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "velmoria/platform/odbc/columns.h"
#include "velmoria/platform/odbc/date_doubts.h"
#include "velmoria/platform/odbc/statement.h"
#include "velmoria/runtime/row_block.h"
#include "velmoria/runtime/variant.h"

namespace velmoria::odbc {

/// Where the values of one column land in a fetch, and how they become a column of a chunk.
class Landing {
 public:
  Landing(const ColumnInfo& info, Word number, const DateManners& manners = {});

  /// Bytes that a row takes in the buffers of the fetch.
  std::size_t RowBytes() const noexcept { return slotWidth_ + sizeof(Length); }
  /// Whether a value can be longer than its slot.
  bool CanOverflow() const noexcept;
  /// A long column is not fetched, and has no buffers.
  bool IsFetched() const noexcept { return storage_ != ColumnStorage::Placeholder; }

  /// Makes room for the rows of a new chunk; the buffers of the one before are used again where they can be.
  void Begin(std::size_t rows);
  void Bind(Statement& statement);
  /// Reads the value of the cursor's row, whatever its length, for the given row of the chunk.
  void Read(Statement& statement, std::size_t row);
  /// Raises 5 for a date among the first `rows` that the driver has misread; called while the cursor is on them.
  void RefuseMisread(Statement& statement, std::size_t rows);
  /// Whether the value of a row did not fit; `informed` tells that the driver gave information with the fetch.
  bool IsCut(std::size_t row, bool informed) const noexcept;
  /// Whether any of the first `rows` values did not fit.
  bool HasCut(std::size_t rows, bool informed) const noexcept;
  /// Binds the one row of this as an output parameter; a value that is given is there before the execution. Raises what
  /// its conversion raises.
  void BindOutput(Statement& statement, Word number, Small direction, Small type, ULength size, Small digits,
                  const Variant& given);
  /// The output parameter's value as a column of one row. Raises 6 for one that did not fit.
  RowChunk::Column FinishOutput();
  /// The chunk's column, made of the first `rows` rows.
  RowChunk::Column Finish(std::size_t rows);

 private:
  std::byte* Buffer() const noexcept { return direct_ ? values_.get() : slots_.get(); }
  bool IsNull(std::size_t row) const noexcept;
  std::string_view TextAt(std::size_t row) const;
  std::string_view SlotAt(std::size_t row) const noexcept;
  bool IsWhole() const noexcept;
  void LandAsText();
  bool IsDateText() const noexcept;
  void RefuseMisread(Statement& statement, std::size_t row, std::size_t place);
  std::string OutputText(const Variant& value, Small type) const;
  Length Put(const Variant& value, Small type);
  void ReadRest(Statement& statement, std::size_t row);
  void TakeEmptyAsNull(std::size_t rows) noexcept;
  velmoria::Date DateAt(std::size_t row) const;
  std::string InColumn() const;
  void KeepFixed(RowChunk::Column& column, std::size_t rows);
  std::size_t BytesOfTexts(std::size_t rows) const;
  void FinishText(RowChunk::Column& column, std::size_t rows) const;
  void FinishConverted(RowChunk::Column& column, std::size_t rows) const;
  template <class T, class Conversion>
  void Convert(RowChunk::Column& column, std::size_t rows, Conversion convert) const;
  template <class From>
  From Slot(std::size_t row) const;
  template <class From>
  std::int64_t Whole(std::size_t row) const;
  void MarkNulls(RowChunk::Column& column, std::size_t rows) const;

  std::string name_;
  Word number_;
  ColumnStorage storage_;
  Small cType_;
  bool direct_ = false;  // lands in the chunk's own buffer
  std::size_t slotWidth_ = 0;
  std::size_t rows_ = 0;
  std::unique_ptr<std::byte[]> slots_;
  std::unique_ptr<std::byte[]> values_;
  std::unique_ptr<Length[]> indicators_;
  std::unordered_map<std::size_t, std::string> whole_;  // the values that did not fit, by row
  std::unique_ptr<DateDoubts> doubts_;                  // of a driver that misreads
};

}  // namespace velmoria::odbc
