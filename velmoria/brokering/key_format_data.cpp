#include "velmoria/brokering/key_format_data.h"

#include "velmoria/core/now.h"
#include "velmoria/properties/properties_data.h"
#include "velmoria/runtime/text.h"

namespace velmoria {

KeyFormatData::KeyFormatData() = default;

KeyFormatData::~KeyFormatData() = default;

void KeyFormatData::Setup(const KeyFormatFields& fields) {
  created_ = Now();
  modified_ = created_;
  fields_.Name = fields.Name;
  fields_.EmptyKey = fields.EmptyKey;
  fields_.Locked = fields.Locked;
  if (fields.EmptyKey) return;
  fields_.Separator = fields.Separator;
  fields_.IncludeNames = fields.IncludeNames;
  fields_.Mixed = fields.Mixed;
}

KeyFormatDataPtr KeyFormatData::Copy(bool recursive) const {
  auto copy = Make<KeyFormatData>();
  copy->Setup(fields_);
  if (recursive && propertiesData_) copy->propertiesData_ = propertiesData_->Copy(true);
  return copy;
}

void KeyFormatData::SetEmptyKey(bool value) {
  if (fields_.EmptyKey == value) return;
  Let(&KeyFormatFields::EmptyKey, value);
  if (value) return;
  fields_.Mixed = false;
  fields_.IncludeNames = false;
  fields_.Separator.clear();
}

void KeyFormatData::SetLocked(bool value) {
  fields_.Locked = value;
  SetDirty();
}

PropertiesDataPtr KeyFormatData::PropertiesData() {
  if (!propertiesData_) propertiesData_ = Make<velmoria::PropertiesData>();
  return propertiesData_;
}

bool KeyFormatData::Dirty() const { return !modified_.IsEmpty() || (propertiesData_ && propertiesData_->Dirty()); }

void KeyFormatData::SetDirty() { modified_ = Now(); }

void KeyFormatData::ClearDirty() {
  modified_ = Variant();
  if (propertiesData_) propertiesData_->ClearDirty();
}

std::string KeyFormatData::Details() const {
  std::string kind = "Identifier Key -";
  if (fields_.EmptyKey) {
    kind = "Empty Key Definition";
  } else if (propertiesData_ && propertiesData_->Count() > 0) {
    kind = "Properties Key - ";
  }
  return kind + FieldsText();
}

std::string KeyFormatData::FieldsText() const {
  return "Mixed: " + Variant(fields_.Mixed).AsText() + "  Separator: " + Quoted(fields_.Separator) +
         "  IncludeNames: " + Variant(fields_.IncludeNames).AsText();
}

}  // namespace velmoria
