#include "velmoria/properties/checked_value_impl.h"
#include "velmoria/properties/property.h"
#include "velmoria/properties/property_texts_impl.h"
#include "velmoria/runtime/text.h"

namespace velmoria {

namespace {

std::string IndexText(const Variant& index) {
  if (index.IsNumber() && index.Type() != VarType::Boolean) return index.AsText();
  return Quoted(index.IsText() ? std::string(index.TextView()) : index.TypeName());
}

}  // namespace

Replacements PropertyKeyTexts(const PropertyKey& key) {
  return {IndexText(key.Index), key.SourceName, key.SourceKey, key.Parameter ? key.Parameter->Details() : "(Nothing)"};
}

Replacements PropertyAddTexts(const std::string& name, const Position& position) {
  return {name, Quoted(ValueText(position.Before)), Quoted(ValueText(position.After))};
}

}  // namespace velmoria
