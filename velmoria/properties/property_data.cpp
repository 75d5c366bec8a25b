#include "velmoria/properties/property_data.h"

#include <algorithm>
#include <array>
#include <utility>

#include "velmoria/core/display.h"
#include "velmoria/core/now.h"
#include "velmoria/properties/attribute_data.h"
#include "velmoria/properties/attributes_data.h"
#include "velmoria/properties/checked_value_impl.h"
#include "velmoria/runtime/text.h"

namespace velmoria {

namespace {

constexpr std::array<std::string_view, 8> kOperators{"=", ">", "<>", "=>", "=<", "<", "<=", ">="};

zPropertyFlags DefaultFlags(zPropertyStyles style, zDataTypes dataType) {
  auto flags = dataType == dtString ? pfAllowZeroLength : pfNone;
  if (style == psParameter || style == psLinkParameter) flags = flags | pfInput;
  return flags;
}

AttributesDataPtr MakeAttributes(const ColumnFacts& facts) {
  auto attributes = Make<AttributesData>();
  if (facts.OrdinalPosition == 0) return attributes;
  const auto add = [&](const char* name, const Variant& value, zDataTypes dataType) {
    attributes->SetupItem({.Name = name, .Value = value, .DataType = dataType}, {}, true);
  };
  add("Attributes", static_cast<std::int16_t>(facts.Attributes), dtInteger);
  add("ChunkRequired", facts.ChunkRequired, dtBoolean);
  add("OrdinalPosition", static_cast<std::int16_t>(facts.OrdinalPosition), dtInteger);
  return attributes;
}

}  // namespace

PropertyData::PropertyData() = default;

PropertyData::PropertyData(const PropertyData& like, Date created)
    : fields_(like.fields_),
      style_(like.style_),
      orderNumber_(like.orderNumber_),
      dateCreated_(created),
      columnFacts_(like.columnFacts_) {}

PropertyData::~PropertyData() = default;

void PropertyData::Setup(zPropertyStyles style, const PropertyFields& fields, std::int32_t orderNumber,
                         bool clean) try {
  style_ = style;
  orderNumber_ = orderNumber;
  dateCreated_ = Now();
  auto& own = fields_.Own();
  own = fields;
  own.Value = Variant();
  own.DefaultValue = Variant();
  if (fields.Flags == pfNone) own.Flags = DefaultFlags(style, fields.DataType);
  if (fields.Operator.empty()) own.Operator = "=";
  if (fields.Value.IsGiven()) SetValue(fields.Value);
  own.Locked = false;  // a Locked definition would refuse its own DefaultValue
  if (!fields.DefaultValue.IsMissing()) SetDefaultValue(fields.DefaultValue);
  own.Locked = fields.Locked;
  modified_ = clean ? Variant() : Variant(dateCreated_);
} catch (...) { Failed("Setup"); }

PropertyDataPtr PropertyData::Copy(const std::string& name, bool recursive, const Variant& value) const try {
  auto fields = *fields_;
  if (!name.empty()) fields.Name = name;
  fields.Value = value;
  fields.Modifiable = true;
  fields.Description.clear();
  fields.Locked = false;
  auto copy = Make<PropertyData>();
  copy->Setup(style_, fields, 0, true);
  if (recursive && attributes_) copy->attributes_ = attributes_->Copy();
  if (recursive) copy->columnFacts_ = columnFacts_;
  return copy;
} catch (...) { Failed("Copy"); }

template <class T>
void PropertyData::Let(T PropertyFields::* field, T value) {
  if ((*fields_).*field == value) return;
  fields_.Own().*field = std::move(value);
  SetDirty();
}

template <class T>
void PropertyData::Let(T& field, T value) {
  if (field == value) return;
  field = std::move(value);
  SetDirty();
}

void PropertyData::SetName(std::string value) { Let(&PropertyFields::Name, std::move(value)); }

void PropertyData::SetDataType(zDataTypes value) { Let(&PropertyFields::DataType, value); }

void PropertyData::SetSize(std::int32_t value) { Let(&PropertyFields::Size, value); }

void PropertyData::SetOperator(std::string value) try {
  if (std::ranges::find(kOperators, value) == kOperators.end()) {
    Raise(errInvalid_Operator, "Operator (Let)", {value});
  }
  Let(&PropertyFields::Operator, std::move(value));
} catch (...) { Failed("Operator (Let)"); }

void PropertyData::SetOrFlag(bool value) { Let(&PropertyFields::OrFlag, value); }

void PropertyData::SetSourceName(std::string value) { Let(&PropertyFields::SourceName, std::move(value)); }

void PropertyData::SetSourceColumn(std::string value) { Let(&PropertyFields::SourceColumn, std::move(value)); }

void PropertyData::SetSourceTable(std::string value) { Let(&PropertyFields::SourceTable, std::move(value)); }

void PropertyData::SetSourceDataType(zSourceDataTypes value) { Let(&PropertyFields::SourceDataType, value); }

void PropertyData::SetModifiable(bool value) { Let(&PropertyFields::Modifiable, value); }

void PropertyData::SetFlags(zPropertyFlags value) { Let(&PropertyFields::Flags, value); }

void PropertyData::SetFormatText(std::string value) { Let(&PropertyFields::FormatText, std::move(value)); }

void PropertyData::SetInputMask(std::string value) { Let(&PropertyFields::InputMask, std::move(value)); }

void PropertyData::SetCaption(std::string value) { Let(&PropertyFields::Caption, std::move(value)); }

void PropertyData::SetDescription(std::string value) { Let(&PropertyFields::Description, std::move(value)); }

void PropertyData::SetLocked(bool value) { Let(&PropertyFields::Locked, value); }

void PropertyData::SetEngine(zEngines value) { Let(&PropertyFields::Engine, value); }

void PropertyData::SetPropertiesName(std::string value) { Let(propertiesName_, std::move(value)); }

void PropertyData::SetDateCreated(Date value) { Let(dateCreated_, value); }

void PropertyData::SetDateModified(Date value) { Let(dateModified_, value); }

void PropertyData::SetModifiedBy(std::string value) { Let(modifiedBy_, std::move(value)); }

AttributesDataPtr PropertyData::AttributesData() {
  if (!attributes_) attributes_ = MakeAttributes(columnFacts_);
  return attributes_;
}

void PropertyData::SetAttributesData(AttributesDataPtr value) {
  attributes_ = std::move(value);
  SetDirty();
}

std::string PropertyData::SourceKey() const {
  if (fields_->SourceTable.empty() || fields_->SourceColumn.empty()) return {};
  return fields_->SourceTable + "." + fields_->SourceColumn;
}

bool PropertyData::HasSourceKey(std::string_view sourceKey) const noexcept {
  const auto& table = fields_->SourceTable;
  const auto& column = fields_->SourceColumn;
  return !table.empty() && !column.empty() && sourceKey.size() == table.size() + 1 + column.size() &&
         sourceKey.starts_with(table) && sourceKey[table.size()] == '.' && sourceKey.ends_with(column);
}

std::string PropertyData::FlagsDisplay() const { return velmoria::FlagsDisplay(fields_->Flags); }

std::string PropertyData::DataTypeName() const { return velmoria::DataTypeName(fields_->DataType); }

std::string PropertyData::SourceDataTypeName() const {
  return velmoria::SourceDataTypeName(fields_->SourceDataType, fields_->Engine);
}

std::string PropertyData::Details() const {
  const auto value = fields_->DataType == dtByteArray ? std::string("(Byte Array)") : ValueText(fields_->Value);
  return "Property: " + Quoted(fields_->Name) + "  Value: " + Quoted(value) + "  Data Type: " + Quoted(DataTypeName()) +
         "  Size: " + NumberText(fields_->Size) + "  SourceName: " + Quoted(fields_->SourceName) +
         "  Source Data Type: " + Quoted(SourceDataTypeName());
}

}  // namespace velmoria
