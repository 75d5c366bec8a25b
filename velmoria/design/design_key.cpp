#include "velmoria/design/design_key.h"

#include "velmoria/core/index_text_impl.h"
#include "velmoria/runtime/text.h"

namespace velmoria {

namespace {

Variant KeyPlace(const Variant& place) { return place.IsGiven() ? Variant(place.AsText()) : place; }

}  // namespace

Replacements KeyedByName::Shown(const Index&, const Index& given) {
  return {IndexText(given, {VarType::Integer, VarType::Long, VarType::Double, VarType::Decimal, VarType::Byte})};
}

std::string KeyedByEngine::Text(Key engine) { return NumberText(static_cast<std::int32_t>(engine)); }

Position KeyedByEngine::ListPosition(const Position& position) {
  return {KeyPlace(position.Before), KeyPlace(position.After)};
}

Replacements KeyedByEngine::Shown(Index resolved, Index given) { return {Text(resolved), Text(given)}; }

}  // namespace velmoria
