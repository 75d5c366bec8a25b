#include <algorithm>
#include <utility>

#include "velmoria/core/index_text_impl.h"
#include "velmoria/runtime/text.h"

namespace velmoria {

namespace {

std::string Parenthesised(const std::string& text) { return "(" + text + ")"; }

bool IsOneOf(std::initializer_list<VarType> types, VarType type) {
  return std::find(types.begin(), types.end(), type) != types.end();
}

}  // namespace

std::string IndexText(const Variant& index, std::initializer_list<VarType> numbers) {
  if (index.IsText()) return Quoted(index.TextView());
  if (IsOneOf(numbers, index.Type())) return index.AsText();
  return Parenthesised(index.TypeName());
}

std::string QuotingIndexText(const Variant& index, std::initializer_list<VarType> numbers) {
  if (index.IsText()) return Quoted(index.TextView());
  if (IsOneOf(numbers, index.Type())) return index.AsText();
  return Quoted(index.TypeName());
}

std::string PlaceText(const Variant& place) {
  if (place.IsMissing()) return "(Missing)";
  if (place.IsText() || place.IsNumber()) return place.AsText();
  return Parenthesised(place.TypeName());
}

Replacements AddTexts(std::string name, const Position& position) {
  return {std::move(name), Quoted(PlaceText(position.Before)), Quoted(PlaceText(position.After))};
}

}  // namespace velmoria
