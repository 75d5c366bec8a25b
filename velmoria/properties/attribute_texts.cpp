#include "velmoria/properties/attribute_texts_impl.h"
#include "velmoria/runtime/text.h"

namespace velmoria {

namespace {

std::string PositionText(const Variant& position) {
  return Quoted(position.IsNumber() || position.IsText() ? position.AsText()
                : position.IsMissing()                   ? "(Missing)"
                                                         : "(" + position.TypeName() + ")");
}

}  // namespace

std::string AttributeIndexText(const Variant& index) {
  if (index.IsNumber()) return index.AsText();
  return Quoted(index.IsText() ? index.AsText() : index.TypeName());
}

Replacements AttributeAddTexts(const std::string& name, const Position& position) {
  return {name, PositionText(position.Before), PositionText(position.After)};
}

}  // namespace velmoria
