#include <utility>

#include "velmoria/core/display.h"
#include "velmoria/data/recordset_impl.h"
#include "velmoria/properties/property.h"
#include "velmoria/properties/property_data.h"
#include "velmoria/properties/property_impl.h"

namespace velmoria {

void Property::Refuse(const char* routine) const {
  if (locked_) Raise(errVelmoria_Locked, routine);
}

template <class T>
void Property::Let(const char* routine, void (PropertyData::*setter)(T), T value) try {
  Refuse(routine);
  (*data_.*setter)(std::move(value));
} catch (...) { Failed(routine); }

std::string Property::Name() const { return data_->Name(); }

void Property::SetName(std::string value) { Let("Name (Let)", &PropertyData::SetName, std::move(value)); }

std::string Property::Caption() const { return data_->Caption(); }

void Property::SetCaption(std::string value) { Let("Caption (Let)", &PropertyData::SetCaption, std::move(value)); }

std::string Property::Description() const { return data_->Description(); }

void Property::SetDescription(std::string value) {
  Let("Description (Let)", &PropertyData::SetDescription, std::move(value));
}

std::string Property::FormatText() const { return data_->FormatText(); }

void Property::SetFormatText(std::string value) {
  Let("FormatText (Let)", &PropertyData::SetFormatText, std::move(value));
}

std::string Property::InputMask() const { return data_->InputMask(); }

void Property::SetInputMask(std::string value) {
  Let("InputMask (Let)", &PropertyData::SetInputMask, std::move(value));
}

std::string Property::SourceName() const { return data_->SourceName(); }

void Property::SetSourceName(std::string value) {
  Let("SourceName (Let)", &PropertyData::SetSourceName, std::move(value));
}

std::string Property::SourceTable() const { return data_->SourceTable(); }

void Property::SetSourceTable(std::string value) {
  Let("SourceTable (Let)", &PropertyData::SetSourceTable, std::move(value));
}

std::string Property::SourceColumn() const { return data_->SourceColumn(); }

void Property::SetSourceColumn(std::string value) {
  Let("SourceColumn (Let)", &PropertyData::SetSourceColumn, std::move(value));
}

zDataTypes Property::DataType() const { return data_->DataType(); }

void Property::SetDataType(zDataTypes value) { Let("DataType (Let)", &PropertyData::SetDataType, value); }

std::int32_t Property::Size() const { return data_->Size(); }

void Property::SetSize(std::int32_t value) { Let("Size (Let)", &PropertyData::SetSize, value); }

zPropertyFlags Property::Flags() const { return data_->Flags(); }

void Property::SetFlags(zPropertyFlags value) { Let("Flags (Let)", &PropertyData::SetFlags, value); }

bool Property::Modifiable() const { return data_->Modifiable(); }

void Property::SetModifiable(bool value) { Let("Modifiable (Let)", &PropertyData::SetModifiable, value); }

bool Property::OrFlag() const { return data_->OrFlag(); }

void Property::SetOrFlag(bool value) { Let("OrFlag (Let)", &PropertyData::SetOrFlag, value); }

zSourceDataTypes Property::SourceDataType() const { return data_->SourceDataType(); }

void Property::SetSourceDataType(zSourceDataTypes value) {
  Let("SourceDataType (Let)", &PropertyData::SetSourceDataType, value);
}

std::string Property::Operator() const { return data_->Operator(); }

void Property::SetOperator(std::string value) try {
  if (locked_ || recordset_) Raise(errVelmoria_Locked, "Operator (Let)");
  data_->SetOperator(std::move(value));
} catch (...) { Failed("Operator (Let)"); }

std::string Property::DataTypeName() const { return data_->DataTypeName(); }

std::string Property::SourceDataTypeName() const { return data_->SourceDataTypeName(); }

std::string Property::FlagsDisplay() const { return data_->FlagsDisplay(); }

bool Property::Counter() const { return has(data_->Flags(), pfcounter); }

std::int32_t Property::OrderNumber() const { return data_->OrderNumber(); }

std::string Property::SourceKey() const { return data_->SourceKey(); }

}  // namespace velmoria
