#include "velmoria/core/globals.h"
#include "velmoria/data/recordset_impl.h"
#include "velmoria/properties/checked_value_impl.h"
#include "velmoria/properties/property.h"
#include "velmoria/properties/property_data.h"
#include "velmoria/properties/property_impl.h"
#include "velmoria/properties/typed_value_impl.h"

namespace velmoria {

Variant Property::StoredValue() const { return recordset_ ? recordset_->Values(row_, *Data()) : Data()->Value(); }

Variant Property::Value() const try {
  auto value = StoredValue();
  const auto dataType = Data()->DataType();
  if (VarTypeMatches(value.Type(), dataType) || value.IsNull()) return value;
  if (value.IsEmpty() && !Data()->StoredDefaultValue().IsEmpty()) return Data()->DefaultValue();
  return ConvertToDataType(value, dataType);
} catch (...) { Failed("Value (Get)"); }

void Property::SetValue(const Variant& value) try {
  if (!Data()->Modifiable()) Raise(errProperty_Modify, "Value (Let)", {Data()->Name()});
  const auto present = StoredValue();
  if (auto refusal = RefusalOf(value, *Data())) Raise(refusal->Number, "Value (Let)", refusal->Texts);
  const auto converted = value.IsEmpty() || value.IsNull() ? value : ConvertToDataType(value, Data()->DataType());
  if (VariantsEqual(converted, present) || BeforeValueChange.Raise(converted)) return;
  StoreValue(converted);
  AfterValueChange.Raise();
} catch (...) { ValueFailed(value); }

void Property::StoreValue(const Variant& value) {
  if (recordset_) {
    recordset_->SetValue(row_, *Data(), value);
  } else {
    Data()->SetValue(value);
  }
}

void Property::ValueFailed(const Variant& value) const {
  if (CurrentError().CatalogueNumber() != 0) Failed("Value (Let)");
  const auto mismatch = MismatchOf(value, *Data());
  Failed("Value (Let)", mismatch.Number, mismatch.Texts);
}

Variant Property::OldValue() const try {
  return recordset_ ? recordset_->OldValues(row_, *Data()) : Data()->OldValue();
} catch (...) { Failed("OldValue (Get)"); }

void Property::Undo() try {
  if (recordset_) {
    recordset_->Undo(row_, *Data());
    return;
  }
  Data()->Undo();
  MarkUndone();
} catch (...) { Failed("Undo"); }

bool Property::DirtyValue() const try {
  return recordset_ ? recordset_->Dirty(row_, *Data()) : Data()->DirtyValue();
} catch (...) { Failed("DirtyValue (Get)"); }

bool Property::Dirty() const { return Data()->Dirty(); }

bool Property::EmptyValue() const try {
  return recordset_ ? recordset_->Values(row_, *Data()).IsEmpty() : Data()->Value().IsEmpty();
} catch (...) { Failed("EmptyValue (Get)"); }

bool Property::RequiresValue() const {
  return has(Data()->Flags(), pfInput) && has(Data()->Flags(), pfRequired) && EmptyValue();
}

Variant Property::DefaultValue() const try { return Data()->DefaultValue(); } catch (...) {
  Failed("DefaultValue (Get)");
}

void Property::SetDefaultValue(const Variant& value) try { Data()->SetDefaultValue(value); } catch (...) {
  Failed("DefaultValue (Let)");
}

}  // namespace velmoria
