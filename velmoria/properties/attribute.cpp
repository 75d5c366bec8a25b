#include "velmoria/properties/attribute.h"

#include <utility>

#include "velmoria/properties/attribute_data.h"

namespace velmoria {

Attribute::Attribute(AttributeDataPtr data) : data_(std::move(data)) {}

Attribute::~Attribute() = default;

Variant Attribute::Value() const try { return data_->Value(); } catch (...) {
  Failed("Value (Get)");
}

void Attribute::SetValue(const Variant& value) try { data_->SetValue(value); } catch (...) {
  Failed("Value (Let)");
}

std::string Attribute::Name() const { return data_->Name(); }

zDataTypes Attribute::DataType() const { return data_->DataType(); }

void Attribute::SetDataType(zDataTypes value) try {
  if (data_->Locked()) Raise(errVelmoria_Locked, "DataType (Let)");
  data_->SetDataType(value);
} catch (...) { Failed("DataType (Let)"); }

std::int32_t Attribute::Size() const { return data_->Size(); }

void Attribute::SetSize(std::int32_t value) try {
  if (data_->Locked()) Raise(errVelmoria_Locked, "Size (Let)");
  data_->SetSize(value);
} catch (...) { Failed("Size (Let)"); }

bool Attribute::Modifiable() const { return data_->Modifiable(); }

void Attribute::SetModifiable(bool value) try {
  if (data_->Locked()) Raise(errVelmoria_Locked, "Modifiable (Let)");
  data_->SetModifiable(value);
} catch (...) { Failed("Modifiable (Let)"); }

bool Attribute::Locked() const { return data_->Locked(); }

void Attribute::SetLocked(bool value) try { data_->SetLocked(value); } catch (...) {
  Failed("Locked (Let)");
}

std::string Attribute::DataTypeName() const { return data_->DataTypeName(); }

std::string Attribute::Details() const { return data_->Details(); }

std::string Attribute::StateDetails() const { return data_->Details(); }

AttributePtr Attribute::Copy() const try { return Make<Attribute>(data_->Copy()); } catch (...) {
  Failed("Copy");
}

}  // namespace velmoria
