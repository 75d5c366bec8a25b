#include "velmoria/core/apartment_impl.h"
#include "velmoria/core/errors_ignored_impl.h"
#include "velmoria/core/messages.h"
#include "velmoria/properties/match_operator_impl.h"
#include "velmoria/properties/properties_parts_impl.h"
#include "velmoria/properties/property_data.h"

namespace velmoria {

namespace {

// The criterion is never Empty: those are passed over.
std::int64_t CompareForMatch(const Variant& candidate, const Variant& criterion) {
  if (candidate.IsEmpty()) return 1;
  if (candidate.IsNull()) return criterion.IsNull() ? 0 : 1;
  if (candidate.Type() == VarType::Date) {
    // From the candidate to the criterion: positive when the criterion is the later, unlike the numbers.
    return criterion.Type() == VarType::Date ? SecondsBetween(candidate.AsDate(), criterion.AsDate()) : 1;
  }
  if (IsOpaque(candidate)) return IsOpaque(criterion) ? 0 : 1;
  return CompareOrdered(candidate, criterion);
}

// An ordering says nothing of a candidate without a value, and is refused for it.
const MatchOperator* OperatorFor(const Variant& candidate, const std::string& text) {
  const auto* found = FindMatchOperator(text);
  const bool unset = candidate.IsEmpty() || candidate.IsNull();
  return unset && found && found->IsOrdering ? nullptr : found;
}

void Carry(Properties& into, const PropertyPtr& given, const PrepareValuesArguments& arguments) {
  if (arguments.DirtyOnly && !given->DirtyValue()) return;
  const auto member = into.FindOrAsk(PropertyKey{.Parameter = given});
  if (!member || (member->Flags() & arguments.PropertyFlags) != arguments.PropertyFlags) return;
  Suspension quiet{"Properties.PrepareValues"};
  member->SetValue(arguments.UseOldValue ? given->OldValue() : given->Value());
}

}  // namespace

bool Properties::PropertiesMatch(const PropertiesPtr& properties) try {
  if (!properties) Fail(RuntimeFailure::ObjectNotSet);
  for (const auto& criterion : *this) {
    if (criterion->EmptyValue()) continue;
    const auto member = properties->Item(PropertyKey{.Parameter = criterion});
    if (!member) return false;
    const auto candidate = member->Value();
    const auto* matching = OperatorFor(candidate, criterion->Operator());
    if (!matching) Raise(errNotSupported_Operator, "PropertiesMatch", {criterion->Operator(), criterion->Name()});
    if (!matching->Holds(CompareForMatch(candidate, criterion->Value()))) return false;
  }
  return true;
} catch (...) { Failed("PropertiesMatch"); }

void Properties::PrepareValues(const PrepareValuesArguments& arguments) try {
  if (!arguments.Properties) Fail(RuntimeFailure::ObjectNotSet);
  for (const auto& given : *arguments.Properties) {
    // A member that refuses its value keeps what it has; whoever asked for the parameters sees that it is missing.
    WithErrorsIgnored([&] { Carry(*this, given, arguments); });
  }
  if (const auto messages = Apartment().Messages) messages->Clear();
} catch (...) { Failed("PrepareValues"); }

}  // namespace velmoria
