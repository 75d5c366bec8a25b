#include <utility>

#include "velmoria/core/now.h"
#include "velmoria/properties/attributes_data.h"
#include "velmoria/properties/checked_value_impl.h"
#include "velmoria/properties/property_data.h"
#include "velmoria/properties/typed_value_impl.h"

namespace velmoria {

void PropertyData::SetValue(const Variant& value) {
  oldValue_ = std::exchange(fields_.Own().Value, Variant(value));  // the value given may be the old one itself
  SetDirty();
}

void PropertyData::Undo() { fields_.Own().Value = oldValue_; }

bool PropertyData::DirtyValue() const { return DiffersFromOld(oldValue_, fields_->Value); }

Variant PropertyData::DefaultValue() const try {
  const auto& value = fields_->DefaultValue;
  return value.IsEmpty() || value.IsNull() ? value : ConvertToDataType(value, fields_->DataType);
} catch (...) { Failed("DefaultValue (Get)"); }

void PropertyData::SetDefaultValue(const Variant& value) try {
  if (fields_->Locked) Raise(errVelmoria_Locked, "DefaultValue (Let)");
  if (value.IsEmpty()) {
    fields_.Own().DefaultValue = value;
    return;
  }
  if (auto refusal = RefusalOf(value, *this)) Raise(refusal->Number, "DefaultValue (Let)", refusal->Texts);
  fields_.Own().DefaultValue = value.IsNull() ? value : ConvertToDataType(value, fields_->DataType);
} catch (...) {
  if (CurrentError().CatalogueNumber() != 0) Failed("DefaultValue (Let)");
  const auto mismatch = MismatchOf(value, *this);
  Failed("DefaultValue (Let)", mismatch.Number, mismatch.Texts);
}

bool PropertyData::Dirty() const { return !modified_.IsEmpty() || (attributes_ && attributes_->Dirty()); }

void PropertyData::SetDirty() { modified_ = Now(); }

void PropertyData::ClearDirty() {
  modified_ = Variant();
  oldValue_ = fields_->Value;
  if (attributes_) attributes_->ClearDirty();
}

}  // namespace velmoria
