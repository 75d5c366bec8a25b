#include "velmoria/design/design_key.h"

#include "velmoria/brokering/index_text_impl.h"
#include "velmoria/runtime/text.h"

namespace velmoria {

namespace {

std::string PlaceText(const Variant& place) {
  if (place.IsMissing()) return "(Missing)";
  if (place.IsText() || place.IsNumber()) return place.AsText();
  return "(" + place.TypeName() + ")";
}

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

Replacements ShownForAdding(const std::string& key, const Position& position) {
  return {key, Quoted(PlaceText(position.Before)), Quoted(PlaceText(position.After))};
}

}  // namespace velmoria
