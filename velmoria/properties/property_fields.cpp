#include <utility>

#include "velmoria/core/display.h"
#include "velmoria/data/recordset_impl.h"
#include "velmoria/properties/property.h"
#include "velmoria/properties/property_data.h"
#include "velmoria/properties/property_impl.h"

namespace velmoria {

void Property::RefuseLocked(const char* routine) const {
  if (locked_) Raise(errVelmoria_Locked, routine);
}

template <class T>
void Property::Let(const char* routine, void (PropertyData::*setter)(T), T value) try {
  RefuseLocked(routine);
  (*Data().*setter)(std::move(value));
} catch (...) { Failed(routine); }

std::string Property::Name() const { return Data()->Name(); }

void Property::SetName(std::string value) { Let("Name (Let)", &PropertyData::SetName, std::move(value)); }

std::string Property::Caption() const { return Data()->Caption(); }

void Property::SetCaption(std::string value) { Let("Caption (Let)", &PropertyData::SetCaption, std::move(value)); }

std::string Property::Description() const { return Data()->Description(); }

void Property::SetDescription(std::string value) {
  Let("Description (Let)", &PropertyData::SetDescription, std::move(value));
}

std::string Property::FormatText() const { return Data()->FormatText(); }

void Property::SetFormatText(std::string value) {
  Let("FormatText (Let)", &PropertyData::SetFormatText, std::move(value));
}

std::string Property::InputMask() const { return Data()->InputMask(); }

void Property::SetInputMask(std::string value) {
  Let("InputMask (Let)", &PropertyData::SetInputMask, std::move(value));
}

std::string Property::SourceName() const { return Data()->SourceName(); }

void Property::SetSourceName(std::string value) {
  Let("SourceName (Let)", &PropertyData::SetSourceName, std::move(value));
}

std::string Property::SourceTable() const { return Data()->SourceTable(); }

void Property::SetSourceTable(std::string value) {
  Let("SourceTable (Let)", &PropertyData::SetSourceTable, std::move(value));
}

std::string Property::SourceColumn() const { return Data()->SourceColumn(); }

void Property::SetSourceColumn(std::string value) {
  Let("SourceColumn (Let)", &PropertyData::SetSourceColumn, std::move(value));
}

zDataTypes Property::DataType() const { return Data()->DataType(); }

void Property::SetDataType(zDataTypes value) { Let("DataType (Let)", &PropertyData::SetDataType, value); }

std::int32_t Property::Size() const { return Data()->Size(); }

void Property::SetSize(std::int32_t value) { Let("Size (Let)", &PropertyData::SetSize, value); }

zPropertyFlags Property::Flags() const { return Data()->Flags(); }

void Property::SetFlags(zPropertyFlags value) { Let("Flags (Let)", &PropertyData::SetFlags, value); }

bool Property::Modifiable() const { return Data()->Modifiable(); }

void Property::SetModifiable(bool value) { Let("Modifiable (Let)", &PropertyData::SetModifiable, value); }

bool Property::OrFlag() const { return Data()->OrFlag(); }

void Property::SetOrFlag(bool value) { Let("OrFlag (Let)", &PropertyData::SetOrFlag, value); }

zSourceDataTypes Property::SourceDataType() const { return Data()->SourceDataType(); }

void Property::SetSourceDataType(zSourceDataTypes value) {
  Let("SourceDataType (Let)", &PropertyData::SetSourceDataType, value);
}

std::string Property::Operator() const { return Data()->Operator(); }

void Property::SetOperator(std::string value) try {
  if (locked_ || recordset_) Raise(errVelmoria_Locked, "Operator (Let)");
  Data()->SetOperator(std::move(value));
} catch (...) { Failed("Operator (Let)"); }

std::string Property::DataTypeName() const { return Data()->DataTypeName(); }

std::string Property::SourceDataTypeName() const { return Data()->SourceDataTypeName(); }

std::string Property::FlagsDisplay() const { return Data()->FlagsDisplay(); }

bool Property::Counter() const { return has(Data()->Flags(), pfcounter); }

std::int32_t Property::OrderNumber() const { return Data()->OrderNumber(); }

std::string Property::SourceKey() const { return Data()->SourceKey(); }

}  // namespace velmoria
