#include <algorithm>
#include <array>
#include <string_view>

#include "velmoria/core/apartment_impl.h"
#include "velmoria/core/errors_ignored_impl.h"
#include "velmoria/core/messages.h"
#include "velmoria/properties/properties_parts_impl.h"
#include "velmoria/properties/property_data.h"

namespace velmoria {

namespace {

struct MatchOperator {
  std::string_view Text;
  bool (*Holds)(std::int64_t comparison);
  bool KnowsEmpty;  // also for a candidate that is Empty or Null
};

constexpr std::array kMatchOperators{
    MatchOperator{"=", [](std::int64_t comparison) { return comparison == 0; }, true},
    MatchOperator{"<>", [](std::int64_t comparison) { return comparison != 0; }, true},
    MatchOperator{">", [](std::int64_t comparison) { return comparison > 0; }, false},
    MatchOperator{"<", [](std::int64_t comparison) { return comparison < 0; }, false},
    MatchOperator{">=", [](std::int64_t comparison) { return comparison >= 0; }, false},
    MatchOperator{"=>", [](std::int64_t comparison) { return comparison >= 0; }, false},
    MatchOperator{"<=", [](std::int64_t comparison) { return comparison <= 0; }, false},
    MatchOperator{"=<", [](std::int64_t comparison) { return comparison <= 0; }, false},
};

bool IsOpaque(const Variant& value) {
  constexpr std::array kOpaque{VarType::Object, VarType::Error, VarType::Variant, VarType::Unknown};
  return value.IsArray() || std::ranges::find(kOpaque, value.Type()) != kOpaque.end();
}

// A criterion of another kind is brought to the kind of the candidate first; Null equals nothing.
std::int64_t CompareOrdered(const Variant& candidate, const Variant& criterion) {
  if (criterion.IsNull()) return 1;
  if (candidate.IsText()) return Compare(candidate, Variant(criterion.AsText()));
  return Compare(candidate, criterion.IsNumber() ? criterion : Variant(criterion.AsDouble()));
}

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

const MatchOperator* FindMatchOperator(const std::string& text, const Variant& candidate) {
  const auto found = std::ranges::find(kMatchOperators, text, &MatchOperator::Text);
  if (found == kMatchOperators.end()) return nullptr;
  const bool unset = candidate.IsEmpty() || candidate.IsNull();
  return unset && !found->KnowsEmpty ? nullptr : &*found;
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
    const auto* matching = FindMatchOperator(criterion->Operator(), candidate);
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
