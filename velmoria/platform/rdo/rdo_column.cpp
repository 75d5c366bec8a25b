#include "velmoria/platform/rdo/rdo_column.h"

#include <algorithm>
#include <vector>

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
  const auto& bytes = cursor_->LongValue(place_);
  return bytes ? static_cast<rdoNumber>(bytes->size()) : -1;
}

Variant rdoColumn::GetChunk(rdoNumber size) {
  if (!info_.IsLong || size < 0) Fail(RuntimeFailure::InvalidArgument);
  const auto& bytes = cursor_->LongValue(place_);
  if (!bytes) return Variant::Null();
  if (chunkPosition_ != cursor_->Position()) chunkOffset_ = 0;
  chunkPosition_ = cursor_->Position();
  if (chunkOffset_ >= bytes->size()) return {};
  const auto first = bytes->begin() + static_cast<std::ptrdiff_t>(chunkOffset_);
  const auto count = std::min(static_cast<std::size_t>(size), bytes->size() - chunkOffset_);
  chunkOffset_ += count;
  return std::vector<Byte>(first, first + static_cast<std::ptrdiff_t>(count));
}

Variant rdoColumn::Value() const { return cursor_->Value(place_); }

}  // namespace velmoria
