#include "velmoria/platform/rdo/rdo_column.h"

#include <algorithm>

#include "velmoria/platform/odbc/arguments.h"
#include "velmoria/platform/rdo/rdo_cursor.h"
#include "velmoria/runtime/error.h"

namespace velmoria {

rdoColumn::rdoColumn(const odbc::Columns& columns, std::size_t place, RdoCursorPtr cursor)
    : columns_(columns), info_((*columns)[place]), place_(place), cursor_(std::move(cursor)) {}

rdoColumn::~rdoColumn() = default;

std::string_view rdoColumn::ReportedType() const noexcept { return "rdoColumn"; }

rdoNumber AttributesOf(const odbc::ColumnInfo& column) noexcept {
  return (column.IsFixed ? rdFixedColumn : rdVariableColumn) | (column.AutoIncrement ? rdAutoIncrColumn : 0) |
         (column.Updatable ? rdUpdatableColumn : 0);
}

rdoNumber rdoColumn::ColumnSize() const {
  if (!info_.IsLong) return -1;
  const auto& value = cursor_->LongValue(place_);
  return value.IsNull() ? -1 : odbc::CheckedNumber(value.Bytes().size());
}

Variant rdoColumn::GetChunk(rdoNumber size) {
  if (!info_.IsLong || size < 0) Fail(RuntimeFailure::InvalidArgument);
  const auto& value = cursor_->LongValue(place_);
  if (value.IsNull()) return value;
  if (chunkPosition_ != cursor_->Position()) chunkOffset_ = 0;
  chunkPosition_ = cursor_->Position();
  const auto bytes = value.Bytes();
  if (chunkOffset_ >= bytes.size()) return {};
  const auto chunk = bytes.subspan(chunkOffset_, std::min(static_cast<std::size_t>(size), bytes.size() - chunkOffset_));
  chunkOffset_ += chunk.size();
  return chunk.size() == bytes.size() ? value : Variant(chunk);
}

const Variant& rdoColumn::Whole() const {
  if (!info_.IsLong) Fail(RuntimeFailure::InvalidArgument);
  return cursor_->LongValue(place_);
}

Variant rdoColumn::Value() const { return cursor_->Value(place_); }

}  // namespace velmoria
