#include <algorithm>
#include <span>
#include <string_view>

#include "velmoria/data/agents/result_filter_impl.h"
#include "velmoria/platform/rdo/rdo_column.h"
#include "velmoria/platform/rdo/rdo_resultset.h"
#include "velmoria/properties/match_operator_impl.h"
#include "velmoria/properties/properties.h"
#include "velmoria/properties/property.h"
#include "velmoria/runtime/error.h"

namespace velmoria {

namespace {

const rdoColumn* FindSource(const rdoResultset& result, const std::string& sourceKey) {
  if (sourceKey.empty()) return nullptr;
  for (const auto& column : result.rdoColumns())
    if (column->SourceTable() + "." + column->SourceColumn() == sourceKey) return column.get();
  return nullptr;
}

const rdoColumn* FindColumn(const rdoResultset& result, const Property& filter) {
  if (const auto* named = result.rdoColumns().FindKey(filter.Name())) return named->get();
  // An expression has no name, and no parameter means it.
  const auto sourceName = filter.SourceName();
  if (const auto* named = sourceName.empty() ? nullptr : result.rdoColumns().FindKey(sourceName)) return named->get();
  return FindSource(result, filter.SourceKey());
}

bool IsUnset(const Variant& value) { return value.IsEmpty() || value.IsNull(); }

std::int64_t CompareTo(const Variant& criterion, const Variant& value) {
  if (IsUnset(value)) return value.Type() == criterion.Type() ? 0 : 1;
  if (value.Type() == VarType::Date && criterion.Type() == VarType::Date)
    return SecondsBetween(criterion.AsDate(), value.AsDate());
  return CompareOrdered(value, criterion);
}

int CompareBytes(std::span<const Byte> left, std::span<const Byte> right) {
  const auto order = std::lexicographical_compare_three_way(left.begin(), left.end(), right.begin(), right.end());
  return order < 0 ? -1 : order > 0 ? 1 : 0;
}

// The bytes of a long text are those of its characters, and order as they do.
std::int64_t CompareLong(const rdoColumn& column, const Variant& value, const Variant& criterion) {
  if (criterion.IsNull()) return 1;
  if (criterion.IsByteArray()) return CompareBytes(value.Bytes(), criterion.Bytes());
  if (column.Type() != rdTypeLONGVARCHAR) Fail(RuntimeFailure::TypeMismatch);
  const auto text = criterion.AsText();
  return CompareBytes(value.Bytes(), {reinterpret_cast<const Byte*>(text.data()), text.size()});
}

}  // namespace

ResultFilter::ResultFilter(const Agent& agent, const rdoResultset& result, const Properties& filters) : agent_(agent) {
  for (const auto& filter : filters) {
    if (filter->EmptyValue()) continue;
    criteria_.push_back({.Name = filter->Name(),
                         .OperatorText = filter->Operator(),
                         .Column = FindColumn(result, *filter),
                         .Operator = FindMatchOperator(filter->Operator()),
                         .Value = filter->Value()});
  }
}

bool ResultFilter::Matches() const {
  return std::ranges::all_of(criteria_, [this](const Criterion& criterion) { return Holds(criterion); });
}

bool ResultFilter::Holds(const Criterion& criterion) const {
  if (!criterion.Column) return false;
  const auto& column = *criterion.Column;
  const bool isLong = column.ChunkRequired();
  const auto value = isLong ? column.Whole() : column.Value();
  const auto comparison =
      isLong && !value.IsNull() ? CompareLong(column, value, criterion.Value) : CompareTo(criterion.Value, value);
  if (!criterion.Operator)
    Raise(errNotSupported_Operator, "ResultsetMatchesParameters", {criterion.OperatorText, criterion.Name});
  if (criterion.Operator->IsOrdering && IsUnset(value)) return false;
  return criterion.Operator->Holds(comparison);
}

}  // namespace velmoria
