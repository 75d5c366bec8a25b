#include "velmoria/properties/properties.h"

#include <utility>

#include "velmoria/brokering/identifier.h"
#include "velmoria/core/display.h"
#include "velmoria/data/database_agent_impl.h"
#include "velmoria/data/recordset_impl.h"
#include "velmoria/design/action_data.h"
#include "velmoria/design/class.h"
#include "velmoria/design/class_data.h"
#include "velmoria/design/server_data.h"
#include "velmoria/design/source_data.h"
#include "velmoria/properties/properties_data.h"
#include "velmoria/properties/properties_impl.h"
#include "velmoria/properties/properties_parts_impl.h"
#include "velmoria/properties/property_data.h"

namespace velmoria {

namespace {

// The parents that a collection of a style takes from its binding.
Parents ParentsOfStyle(zPropertyStyles style, const Parents& given) {
  Parents taken;
  switch (style) {
    case psNonPersistent:
    case psPersistent:
    case psDefinition: break;
    case psParameter: taken.Source = given.Source; [[fallthrough]];
    case psIdentifier:
      taken.Server = given.Server;
      taken.Class = given.Class;
      break;
    default: taken = given;
  }
  taken.Action = given.Action;
  return taken;
}

// Identifiers and parameters find their definition through their parents.
constexpr bool KeepsDefinition(zPropertyStyles style) {
  return style != psIdentifier && style != psParameter && style != psNonPersistent;
}

}  // namespace

Properties::Properties() = default;

Properties::~Properties() {
  identifier_.reset();  // which holds members
  if (recordset_) recordset_->KeepMembers(std::move(members_));
}

void Properties::Bind(const PropertiesBinding& binding) {
  name_ = binding.Name;
  style_ = binding.Style;
  if (KeepsDefinition(style_)) data_ = binding.PropertiesData;
  auto parents = ParentsOfStyle(style_, binding.Parents);
  if (!parents.IsEmpty()) MakeRare().Family = std::move(parents);
  if (style_ != psPersistent) return;
  if (name_.empty()) name_ = NameOf(binding.Parents.Action);
  recordset_ = binding.Recordset;
  row_ = binding.Row;
}

void Properties::BindRow(RecordsetPtr recordset, std::int32_t row, std::string name) {
  style_ = psPersistent;
  data_ = recordset->Columns();
  recordset_ = std::move(recordset);
  row_ = row;
  name_ = std::move(name);
}

void Properties::Setup(const std::string& name, bool locked, bool supportsAdd, bool supportsRemove,
                       zEngines engine) try {
  if (items_ || !members_.empty() || locked_) Raise(errVelmoria_Locked, "Setup");
  name_ = name;
  locked_ = locked;
  noAdd_ = !supportsAdd;
  noRemove_ = !supportsRemove;
  engine_ = engine;
} catch (...) { Failed("Setup"); }

Properties::Rare& Properties::MakeRare() const {
  if (!rare_) rare_ = std::make_unique<Rare>();
  return *rare_;
}

const Parents& Properties::HeldParents() const { return rare_ ? rare_->Family : Parents::None(); }

void Properties::SetName(const std::string& value) try {
  if (recordset_ || locked_) Raise(errVelmoria_Locked, "Name (Let)");
  name_ = value;
} catch (...) { Failed("Name (Let)"); }

void Properties::SetLocked(bool value) try {
  if (style_ == psPersistent || style_ == psCached) Raise(errVelmoria_Locked, "Locked (Let)");
  locked_ = value;
} catch (...) { Failed("Locked (Let)"); }

void Properties::SetSupportsAdd(bool value) try {
  if (locked_) Raise(errVelmoria_Locked, "SupportsAdd (Let)");
  noAdd_ = !value;
} catch (...) { Failed("SupportsAdd (Let)"); }

void Properties::SetSupportsRemove(bool value) try {
  if (locked_) Raise(errVelmoria_Locked, "SupportsRemove (Let)");
  noRemove_ = !value;
} catch (...) { Failed("SupportsRemove (Let)"); }

RecordsetPtr Properties::Recordset() const { return recordset_; }

PropertiesDataPtr Properties::Data() const {
  LoadItems();
  return data_;
}

void Properties::SetParents(zPropertyStyles style, const Parents& parents) try {
  if (auto conflict = MakeRare().Family.Take(parents)) Raise(conflict->Number, "SetParents", {conflict->Name});
  if (style != psNone) style_ = style;
  if (!items_) return;
  for (const auto& item : items_->List) item->SetParents(style, parents);
} catch (...) { Failed("SetParents"); }

void Properties::ClearParents(zPropertyStyles style, const ParentSlots& slots) {
  if (rare_) rare_->Family.Clear(slots);
  if (style != psNone) style_ = style;
  if (!items_) return;
  for (const auto& item : items_->List) item->ClearParents(style, slots);
}

IdentifierPtr Properties::Identifier() try {
  if (!identifier_ && recordset_) {
    identifier_ = recordset_->DatabaseAgent()->Class()->CreateIdentifier(PropertiesPtr(this));
  }
  return identifier_;
} catch (...) { Failed("Identifier (Get)"); }

void Properties::SetIdentifier(IdentifierPtr value) { identifier_ = std::move(value); }

void Properties::SetActionName(std::string value) { MakeRare().ActionName = std::move(value); }

PropertyPtr Properties::ReturnValueParameter() const try {
  if (recordset_) return {};
  for (const auto& item : *this) {
    if (has(item->Flags(), pfReturnValue)) return item;
  }
  return {};
} catch (...) { Failed("ReturnValueParameter (Get)"); }

StatisticsPtr Properties::Statistics() {
  auto& statistics = MakeRare().OwnStatistics;
  if (!statistics) statistics = Make<velmoria::Statistics>();
  return statistics;
}

PropertiesPtr Properties::Copy(const std::string& name, bool recursive) try {
  Parents parents;
  parents.Action = HeldParents().Action;
  auto copy = Make<Properties>();
  copy->Bind({.Style = psNone, .Parents = parents, .Name = name.empty() ? Name() : name});
  copy->SetActionName(ActionName());
  for (const auto& item : *this) copy->Add(item->Copy({}, recursive));
  return copy;
} catch (...) { Failed("Copy"); }

}  // namespace velmoria
