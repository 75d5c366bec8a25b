#include "velmoria/data/agents/result_filter_impl.h"
#include "velmoria/data/sql_clauses_impl.h"
#include "velmoria/platform/rdo/rdo_column.h"
#include "velmoria/platform/rdo/rdo_resultset.h"
#include "velmoria/properties/match_operator_impl.h"
#include "velmoria/properties/properties.h"
#include "velmoria/properties/property.h"

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
  if (const auto* named = result.rdoColumns().FindKey(filter.SourceName())) return named->get();
  return FindSource(result, filter.SourceKey());
}

const MatchOperator& OperatorOf(const Property& filter) {
  const auto* found = FindMatchOperator(filter.Operator());
  if (!found) sql::RefuseOperator(*filter.Data());
  return *found;
}

bool IsUnset(const Variant& value) { return value.IsEmpty() || value.IsNull(); }

std::int64_t CompareTo(const Variant& criterion, const Variant& value) {
  if (IsUnset(value)) return value.Type() == criterion.Type() ? 0 : 1;
  if (value.Type() == VarType::Date && criterion.Type() == VarType::Date)
    return SecondsBetween(criterion.AsDate(), value.AsDate());
  return CompareOrdered(value, criterion);
}

}  // namespace

ResultFilter::ResultFilter(const rdoResultset& result, const Properties& filters) {
  for (const auto& filter : filters) {
    if (filter->EmptyValue()) continue;
    criteria_.push_back({FindColumn(result, *filter), &OperatorOf(*filter), filter->Value()});
    hasAllColumns_ = hasAllColumns_ && criteria_.back().Column;
  }
}

bool ResultFilter::Matches() const {
  if (!hasAllColumns_) return false;
  for (const auto& criterion : criteria_) {
    const auto value = criterion.Column->Value();
    if (criterion.Operator->IsOrdering && IsUnset(value)) return false;
    if (!criterion.Operator->Holds(CompareTo(criterion.Value, value))) return false;
  }
  return true;
}

}  // namespace velmoria
