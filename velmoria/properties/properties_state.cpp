#include <algorithm>

#include "velmoria/core/details_text_impl.h"
#include "velmoria/core/display.h"
#include "velmoria/data/recordset_impl.h"
#include "velmoria/design/action.h"
#include "velmoria/design/action_data.h"
#include "velmoria/design/class_data.h"
#include "velmoria/design/database_data.h"
#include "velmoria/design/link_data.h"
#include "velmoria/design/relationship_data.h"
#include "velmoria/design/server_data.h"
#include "velmoria/design/source_data.h"
#include "velmoria/properties/properties_data.h"
#include "velmoria/properties/properties_parts_impl.h"
#include "velmoria/properties/row_origin_impl.h"
#include "velmoria/runtime/text.h"

namespace velmoria {

namespace {

std::string SourceOf(const Properties& properties, const std::string& owner) {
  return " for " + Quoted(properties.EngineName()) + " Source of " + Quoted(owner);
}

std::string HeadingOf(const Properties& properties) {
  const auto count = NumberText(properties.Count());
  switch (properties.Style()) {
    case psIdentifier:
      return "Identifier Definition Properties Count " + count + SourceOf(properties, properties.ClassName());
    case psParameter:
      return "Parameter Definition Properties Count " + count + SourceOf(properties, properties.ActionName());
    case psPersistent: {
      const auto recordset = properties.Recordset();
      const auto action = recordset ? ActionOf(*recordset) : ActionPtr();
      return "Persistent Properties Count " + count + " built using " + (action ? action->Details() : std::string());
    }
    case psUser: return "User Properties Count " + count;
    default: return "Properties Count " + count;
  }
}

}  // namespace

bool Properties::Modifiable(bool all) const try {
  if (recordset_) return data_->Modifiable(all);
  for (const auto& item : *this) {
    if (item->Modifiable() != all) return !all;
  }
  return all;
} catch (...) { Failed("Modifiable"); }

bool Properties::Dirty() const try {
  if (recordset_) return recordset_->IsDirty(row_);
  return std::any_of(begin(), end(), [](const auto& item) { return item->Dirty(); });
} catch (...) { Failed("Dirty (Get)"); }

bool Properties::DirtyValues() const try {
  if (recordset_) return recordset_->IsDirty(row_);
  return std::any_of(begin(), end(), [](const auto& item) { return item->DirtyValue(); });
} catch (...) { Failed("DirtyValues"); }

bool Properties::EmptyValues() const try {
  return std::all_of(begin(), end(), [](const auto& item) { return item->EmptyValue(); });
} catch (...) { Failed("EmptyValues (Get)"); }

bool Properties::RequiresValues() const try {
  return std::any_of(begin(), end(), [](const auto& item) { return item->RequiresValue(); });
} catch (...) { Failed("RequiresValues (Get)"); }

zEditFlags Properties::EditFlags() const try {
  if (recordset_) return EditFlagsOf(*recordset_);
  if (const auto& action = HeldParents().Action) return action->Fields().EditFlags;
  auto flags = efNone;
  for (const auto& item : *this) flags = flags | item->EditFlags();
  return flags;
} catch (...) { Failed("EditFlags (Get)"); }

std::string Properties::EditFlagsDisplay() const { return velmoria::EditFlagsDisplay(EditFlags()); }

zStateFlags Properties::StateFlags() const try {
  if (recordset_) return recordset_->StateFlags(row_);
  auto flags = zStateFlags{};
  for (const auto& item : *this) flags = flags | item->StateFlags();
  return flags;
} catch (...) { Failed("StateFlags (Get)"); }

void Properties::SetStateFlags(zStateFlags flags) try {
  if (recordset_) return recordset_->SetStateFlags(row_, flags);
  if (style_ != psCached) {
    Raise(errProperties_Transient, "StateFlags (Let)",
          {"Changing StateFlags is only permitted with Action-bound Properties collections."});
  }
  for (const auto& item : *this) item->SetStateFlags(flags);
} catch (...) { Failed("StateFlags (Let)"); }

std::string Properties::StateFlagsDisplay() const { return velmoria::StateFlagsDisplay(StateFlags()); }

void Properties::ClearDirty() {
  if (recordset_ || !items_) return;
  for (const auto& item : items_->List) item->ClearDirty();
}

std::string Properties::Name() const { return recordset_ && name_.empty() ? ActionNameOf(*recordset_) : name_; }

std::string Properties::ServerName() const {
  if (const auto& server = HeldParents().Server) return server->Name();
  return recordset_ ? ServerNameOf(*recordset_) : std::string();
}

std::string Properties::ClassName() const {
  if (const auto& classData = HeldParents().Class) return classData->Name();
  return recordset_ ? ClassNameOf(*recordset_) : std::string();
}

std::string Properties::ActionName() const {
  if (const auto& action = HeldParents().Action) return action->Name();
  auto name = recordset_ ? ActionNameOf(*recordset_) : std::string();
  return name.empty() && rare_ ? rare_->ActionName : name;
}

std::string Properties::LinkName() const { return NameOf(HeldParents().Link); }

std::string Properties::RelationshipName() const { return NameOf(HeldParents().Relationship); }

std::string Properties::DatabaseName() const { return NameOf(HeldParents().Database); }

zEngines Properties::Engine() const {
  const auto& source = HeldParents().Source;
  if (style_ == psParameter && source) return source->Engine();
  if (style_ == psPersistent && recordset_) return recordset_->Engine();
  return engine_;
}

std::string Properties::EngineName() const { return velmoria::EngineName(Engine()); }

std::string Properties::Details() const try {
  Suspension quiet{"Properties.Details (Get)"};
  return DetailsOf(HeadingOf(*this), *this);
} catch (...) { Failed("Details (Get)"); }

}  // namespace velmoria
