#include "velmoria/properties/attribute_data.h"

#include <utility>

#include "velmoria/core/display.h"
#include "velmoria/core/now.h"
#include "velmoria/properties/checked_value_impl.h"
#include "velmoria/properties/typed_value_impl.h"
#include "velmoria/runtime/error.h"
#include "velmoria/runtime/text.h"

namespace velmoria {

AttributeData::AttributeData() = default;

AttributeData::~AttributeData() = default;

void AttributeData::Setup(const AttributeFields& fields, bool clean) try {
  dateCreated_ = Now();
  fields_.Name = fields.Name;
  fields_.DataType = fields.DataType;
  fields_.Size = fields.Size;
  if (!fields.Value.IsMissing()) SetValue(fields.Value);
  fields_.Modifiable = fields.Modifiable;
  fields_.Locked = fields.Locked;
  modified_ = clean ? Variant() : Variant(dateCreated_);
} catch (...) { Failed("Setup"); }

AttributeDataPtr AttributeData::Copy() const {
  auto copy = Make<AttributeData>();
  copy->dateCreated_ = Now();
  copy->fields_ = fields_;
  return copy;
}

template <class T>
void AttributeData::Let(T AttributeFields::* field, T value) {
  if (fields_.*field == value) return;
  fields_.*field = std::move(value);
  Stamp();
}

void AttributeData::SetName(std::string value) { Let(&AttributeFields::Name, std::move(value)); }

void AttributeData::SetDataType(zDataTypes value) { Let(&AttributeFields::DataType, value); }

void AttributeData::SetSize(std::int32_t value) { Let(&AttributeFields::Size, value); }

void AttributeData::SetModifiable(bool value) { Let(&AttributeFields::Modifiable, value); }

void AttributeData::SetLocked(bool value) { Let(&AttributeFields::Locked, value); }

Variant AttributeData::Value() const {
  return fields_.Value.IsNull() ? fields_.Value : ConvertToDataType(fields_.Value, fields_.DataType);
}

void AttributeData::SetValue(const Variant& value) {
  if (!fields_.Modifiable) Raise(errAttribute_Modify, "Value (Let)", {fields_.Name});
  fields_.Value = Converted(value);
  Stamp();
}

Variant AttributeData::Converted(const Variant& value) const {
  if (value.IsEmpty() || value.IsNull()) return value;
  Variant converted;
  try {
    converted = ConvertToDataType(value, fields_.DataType);
  } catch (...) {
    // The first of the two cannot happen: a value in the attribute's own storage converts.
    if (VarTypeMatches(value.Type(), fields_.DataType)) Failed("Value (Let)", errAttribute_Value, {fields_.Name});
    Failed("Value (Let)", errAttribute_DataType, {fields_.Name, DataTypeName(), value.TypeName()});
  }
  if (fields_.DataType != dtString || fields_.Size <= 0) return converted;
  const auto length = CharacterCount(converted.TextView());
  if (length > static_cast<std::size_t>(fields_.Size)) {
    Raise(errValue_Size, "Value (Let)", {NumberText(fields_.Size), NumberText(static_cast<long long>(length))});
  }
  return converted;
}

void AttributeData::Stamp() { modified_ = Now(); }

std::string AttributeData::DataTypeName() const { return velmoria::DataTypeName(fields_.DataType); }

std::string AttributeData::DisplayValue() const {
  if (fields_.DataType == dtByteArray) return "(ByteArray)";
  try {
    return ValueText(Value());
  } catch (const Error&) { return ValueText(fields_.Value); }
}

std::string AttributeData::Details() const {
  return "Attribute: " + Quoted(fields_.Name) + "  DataType: " + Quoted(DataTypeName()) +
         "  Value: " + Quoted(DisplayValue());
}

}  // namespace velmoria
