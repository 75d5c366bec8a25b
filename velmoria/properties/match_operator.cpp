#include <algorithm>
#include <array>

#include "velmoria/properties/match_operator_impl.h"

namespace velmoria {

namespace {

constexpr std::array kMatchOperators{
    MatchOperator{"=", [](std::int64_t comparison) { return comparison == 0; }, false},
    MatchOperator{"<>", [](std::int64_t comparison) { return comparison != 0; }, false},
    MatchOperator{">", [](std::int64_t comparison) { return comparison > 0; }, true},
    MatchOperator{"<", [](std::int64_t comparison) { return comparison < 0; }, true},
    MatchOperator{">=", [](std::int64_t comparison) { return comparison >= 0; }, true},
    MatchOperator{"=>", [](std::int64_t comparison) { return comparison >= 0; }, true},
    MatchOperator{"<=", [](std::int64_t comparison) { return comparison <= 0; }, true},
    MatchOperator{"=<", [](std::int64_t comparison) { return comparison <= 0; }, true},
};

constexpr std::array kOpaque{VarType::Object, VarType::Error, VarType::Variant, VarType::Unknown};

}  // namespace

const MatchOperator* FindMatchOperator(std::string_view text) noexcept {
  const auto found = std::ranges::find(kMatchOperators, text, &MatchOperator::Text);
  return found == kMatchOperators.end() ? nullptr : &*found;
}

std::int64_t CompareOrdered(const Variant& value, const Variant& criterion) {
  if (criterion.IsNull()) return 1;
  if (value.IsText()) return Compare(value, Variant(criterion.AsText()));
  return Compare(value, criterion.IsNumber() ? criterion : Variant(criterion.AsDouble()));
}

bool IsOpaque(const Variant& value) noexcept {
  return value.IsArray() || std::ranges::find(kOpaque, value.Type()) != kOpaque.end();
}

}  // namespace velmoria
