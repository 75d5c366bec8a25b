#include "velmoria/properties/property.h"

#include <utility>

#include "velmoria/core/display.h"
#include "velmoria/data/recordset_impl.h"
#include "velmoria/properties/checked_value_impl.h"
#include "velmoria/properties/property_data.h"
#include "velmoria/properties/property_impl.h"
#include "velmoria/properties/row_origin_impl.h"
#include "velmoria/runtime/format.h"
#include "velmoria/runtime/text.h"

namespace velmoria {

Property::Property() = default;

Property::~Property() = default;

void Property::Bind(PropertyDataPtr data, const Parents& parents, zEditFlags editFlags) {
  data_ = std::move(data);
  editFlags_ = editFlags;
  if (!parents.IsEmpty()) MakeRare().Family = parents;
}

void Property::Bind(PropertyDataPtr data, RecordsetPtr recordset, std::int32_t row, zEditFlags editFlags) {
  data_ = std::move(data);
  recordset_ = std::move(recordset);
  row_ = row;
  editFlags_ = editFlags == efNone && recordset_ ? EditFlagsOf(*recordset_) : editFlags;
}

bool Property::LeaveRow() noexcept {
  const bool isPlain = state_ == kStateAtFirst && !locked_ && !copyMark_ && !rare_;
  if (!isPlain || !IsHeldOnce() || BeforeValueChange.HasListeners() || AfterValueChange.HasListeners()) return false;
  recordset_.reset();
  return true;
}

// One that nobody has bound is as good as one made without a name.
void Property::MakeDefinition() const {
  auto definition = Make<PropertyData>();
  definition->Setup(psNonPersistent, {.Name = {}});
  data_ = std::move(definition);
}

RecordsetPtr Property::Recordset() const { return recordset_; }

Property::Rare& Property::MakeRare() {
  if (!rare_) rare_ = std::make_unique<Rare>();
  return *rare_;
}

const Parents& Property::HeldParents() const { return rare_ ? rare_->Family : Parents::None(); }

void Property::SetParents(zPropertyStyles style, const Parents& parents) try {
  if (auto conflict = MakeRare().Family.Take(parents)) Raise(conflict->Number, "SetParents", {conflict->Name});
  if (style != psNone) Data()->SetStyle(style);
} catch (...) { Failed("SetParents"); }

void Property::ClearParents(zPropertyStyles style, const ParentSlots& slots) {
  if (rare_) rare_->Family.Clear(slots);
  if (style != psNone) Data()->SetStyle(style);
}

PropertyPtr Property::Copy(const std::string& name, bool recursive) const try {
  auto copy = Make<Property>();
  copy->Bind(Data()->Copy(name, recursive, StoredValue()), Parents{}, EditFlags());
  return copy;
} catch (...) { Failed("Copy"); }

AttributesPtr Property::Attributes() try {
  auto& attributes = MakeRare().OwnAttributes;
  if (!attributes) {
    attributes = Make<velmoria::Attributes>();
    attributes->Bind(Data());
  }
  return attributes;
} catch (...) { Failed("Attributes (Get)"); }

void Property::SetAttributes(AttributesPtr value) try {
  RefuseLocked("Attributes (Let)");
  MakeRare().OwnAttributes = std::move(value);
} catch (...) { Failed("Attributes (Let)"); }

Variant Property::DisplayValue() const try {
  if (Data()->DataType() == dtByteArray) return "(Byte Array)";
  auto value = Value();
  if (value.IsNull()) return "(Null)";
  if (value.IsEmpty()) return "(Empty)";
  return Data()->FormatText().empty() ? value : Formatted(value);
} catch (...) { Failed("DisplayValue"); }

Variant Property::Formatted(const Variant& value) const try {
  return velmoria::FormatText(value, Data()->FormatText());
} catch (...) { Failed("DisplayValue", errProperty_DisplayValue, {Data()->FormatText()}); }

std::string Property::Details() const {
  return "Property: " + Quoted(Data()->Name()) + "  Value: " + ValueText(DisplayValue()) +
         "  DataType: " + Quoted(DataTypeName()) + "  SourceName: " + Quoted(Data()->SourceName()) +
         "  SourceDataType: " + Quoted(SourceDataTypeName());
}

}  // namespace velmoria
