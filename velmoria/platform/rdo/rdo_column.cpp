#include "velmoria/platform/rdo/rdo_column.h"

#include "velmoria/platform/rdo/rdo_cursor.h"

namespace velmoria {

rdoColumn::rdoColumn(odbc::ColumnInfo info, std::size_t place, RdoCursorPtr cursor)
    : info_(std::move(info)), place_(place), cursor_(std::move(cursor)) {}

rdoColumn::~rdoColumn() = default;

std::string_view rdoColumn::ReportedType() const noexcept { return "rdoColumn"; }

rdoNumber rdoColumn::Attributes() const noexcept {
  return (info_.IsFixed ? rdFixedColumn : rdVariableColumn) | (info_.AutoIncrement ? rdAutoIncrColumn : 0) |
         (info_.Updatable ? rdUpdatableColumn : 0);
}

Variant rdoColumn::Value() const { return cursor_->Value(place_); }

}  // namespace velmoria
