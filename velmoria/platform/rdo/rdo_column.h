#pragma once

#include <string>
#include <string_view>

#include "velmoria/platform/odbc/columns.h"
#include "velmoria/platform/rdo/fwd.h"
#include "velmoria/platform/rdo_constants.h"
#include "velmoria/runtime/object.h"
#include "velmoria/runtime/variant.h"

namespace velmoria {

/// rdFixedColumn or rdVariableColumn, with rdAutoIncrColumn and rdUpdatableColumn where they hold.
rdoNumber AttributesOf(const odbc::ColumnInfo& column) noexcept;

/// A column of an open result: its description, and its value in the result's current row.
class rdoColumn : public Object {
 public:
  rdoColumn(const odbc::Columns& columns, std::size_t place, RdoCursorPtr cursor);
  ~rdoColumn() override;
  std::string_view ReportedType() const noexcept override;

  std::string Name() const { return info_.Name; }
  /// One of the rdType... codes, or the driver's own code for a type that has none.
  rdoNumber Type() const noexcept { return info_.Type; }
  /// Empty for an expression, or where the driver does not know.
  std::string SourceTable() const { return info_.BaseTable; }
  /// The column's name in its table; the name in the result where the driver does not know.
  std::string SourceColumn() const { return info_.BaseColumn; }
  /// Characters of a text, digits of a number; what the driver reports, which may be less than a value has.
  rdoNumber Size() const noexcept { return info_.Size; }
  bool AllowZeroLength() const noexcept { return info_.IsText; }
  bool Required() const noexcept { return info_.Required; }
  bool AutoIncrement() const noexcept { return info_.AutoIncrement; }
  rdoNumber Attributes() const noexcept { return AttributesOf(info_); }
  /// Whether this is a long column, which is not fetched with its row.
  bool ChunkRequired() const noexcept { return info_.IsLong; }
  /// Counts from 1.
  rdoNumber OrdinalPosition() const noexcept { return static_cast<rdoNumber>(place_) + 1; }
  /// The length of a long column's value in the current row, in bytes; -1 for a Null and for a column that is not long.
  /// Raises 40009 when the result has no current row, 40088 when a forward-only result has left it, and 6 for a length
  /// that is no Long.
  rdoNumber ColumnSize() const;
  /// The next bytes of the long column's value, at most as many as asked for, as a byte array; Null for a Null, and
  /// Empty behind the last byte. Another row begins anew. Raises 40009 and 40088 as ColumnSize, and 5 for a column
  /// that is not long.
  Variant GetChunk(rdoNumber size);
  /// The long column's value in the current row, a byte array or Null, whatever chunks have been taken of it. Raises as
  /// GetChunk.
  const Variant& Whole() const;
  /// Empty for a long column. Raises 40009 when the result has no current row.
  Variant Value() const;

 private:
  odbc::Columns columns_;
  const odbc::ColumnInfo& info_;  // one of them
  std::size_t place_;
  RdoCursorPtr cursor_;
  long long chunkPosition_ = 0;  // the row that chunks have been taken of
  std::size_t chunkOffset_ = 0;
};

}  // namespace velmoria
