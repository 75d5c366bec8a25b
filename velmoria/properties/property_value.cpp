#include "velmoria/core/globals.h"
#include "velmoria/data/recordset_impl.h"
#include "velmoria/properties/checked_value_impl.h"
#include "velmoria/properties/property.h"
#include "velmoria/properties/property_data.h"
#include "velmoria/properties/property_impl.h"
#include "velmoria/properties/typed_value_impl.h"

namespace velmoria {

Variant Property::StoredValue() const { return recordset_ ? recordset_->Values(row_, *data_) : data_->Value(); }

Variant Property::Value() const try {
  auto value = StoredValue();
  const auto dataType = data_->DataType();
  if (VarTypeMatches(value.Type(), dataType) || value.IsNull()) return value;
  if (value.IsEmpty() && !data_->StoredDefaultValue().IsEmpty()) return data_->DefaultValue();
  return ConvertToDataType(value, dataType);
} catch (...) { Failed("Value (Get)"); }

void Property::SetValue(const Variant& value) try {
  if (!data_->Modifiable()) Raise(errProperty_Modify, "Value (Let)", {data_->Name()});
  const auto present = StoredValue();
  if (auto refusal = RefusalOf(value, *data_)) Raise(refusal->Number, "Value (Let)", refusal->Texts);
  const auto converted = value.IsEmpty() || value.IsNull() ? value : ConvertToDataType(value, data_->DataType());
  if (VariantsEqual(converted, present) || BeforeValueChange.Raise(converted)) return;
  StoreValue(converted);
  AfterValueChange.Raise();
} catch (...) { ValueFailed(value); }

void Property::StoreValue(const Variant& value) {
  if (recordset_) {
    recordset_->SetValue(row_, *data_, value);
  } else {
    data_->SetValue(value);
  }
}

void Property::ValueFailed(const Variant& value) const {
  if (CurrentError().CatalogueNumber() != 0) Failed("Value (Let)");
  const auto mismatch = MismatchOf(value, *data_);
  Failed("Value (Let)", mismatch.Number, mismatch.Texts);
}

Variant Property::OldValue() const try {
  return recordset_ ? recordset_->OldValues(row_, *data_) : data_->OldValue();
} catch (...) { Failed("OldValue (Get)"); }

void Property::Undo() try {
  if (recordset_) {
    recordset_->Undo(row_, *data_);
    return;
  }
  data_->Undo();
  MarkUndone();
} catch (...) { Failed("Undo"); }

bool Property::DirtyValue() const try {
  return recordset_ ? recordset_->Dirty(row_, *data_) : data_->DirtyValue();
} catch (...) { Failed("DirtyValue (Get)"); }

bool Property::Dirty() const { return data_->Dirty(); }

bool Property::EmptyValue() const try {
  return recordset_ ? recordset_->Values(row_, *data_).IsEmpty() : data_->Value().IsEmpty();
} catch (...) { Failed("EmptyValue (Get)"); }

bool Property::RequiresValue() const {
  return has(data_->Flags(), pfInput) && has(data_->Flags(), pfRequired) && EmptyValue();
}

Variant Property::DefaultValue() const try { return data_->DefaultValue(); } catch (...) {
  Failed("DefaultValue (Get)");
}

void Property::SetDefaultValue(const Variant& value) try { data_->SetDefaultValue(value); } catch (...) {
  Failed("DefaultValue (Let)");
}

}  // namespace velmoria
