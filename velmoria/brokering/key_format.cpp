#include "velmoria/brokering/key_format.h"

#include <utility>

#include "velmoria/brokering/key_format_data.h"
#include "velmoria/data/recordset_impl.h"
#include "velmoria/properties/parents_data.h"
#include "velmoria/properties/properties.h"
#include "velmoria/properties/properties_data.h"
#include "velmoria/properties/properties_impl.h"
#include "velmoria/properties/property_data.h"
#include "velmoria/runtime/text.h"

namespace velmoria {

namespace {

// What a format and its Properties have in common; the format itself stays a parent of its Properties.
constexpr ParentSlots OwnSlots(const ParentSlots& slots) {
  return {.Server = slots.Server, .Class = slots.Class, .Action = slots.Action};
}

}  // namespace

KeyFormat::KeyFormat() : data_(Make<KeyFormatData>()), parents_(std::make_unique<Parents>()) {}

KeyFormat::~KeyFormat() = default;

void KeyFormat::Bind(KeyFormatDataPtr data, const Parents& parents) {
  data_ = std::move(data);
  *parents_ = parents;
}

KeyFormatDataPtr KeyFormat::Data() const { return data_; }

void KeyFormat::SetParents(const Parents& parents) try {
  if (auto conflict = parents_->Take(parents)) Raise(conflict->Number, "SetParents", {conflict->Name});
  if (properties_) properties_->SetParents(psNone, parents);
} catch (...) { Failed("SetParents"); }

void KeyFormat::ClearParents(const ParentSlots& slots) {
  parents_->Clear(OwnSlots(slots));
  if (properties_) properties_->ClearParents(psNone, OwnSlots(slots));
}

KeyFormatPtr KeyFormat::Copy(bool recursive) const try {
  auto copy = Make<KeyFormat>();
  copy->Bind(data_->Copy(recursive), {});
  return copy;
} catch (...) { Failed("Copy"); }

void KeyFormat::RefuseLocked(std::string_view routine) const {
  if (data_->Fields().Locked) Raise(errVelmoria_Locked, routine);
}

void KeyFormat::RefuseEmptyKey(std::string_view name, std::string_view routine) const {
  if (data_->Fields().EmptyKey) Raise(errKeyFormat_EmptyKey, routine, {std::string(name)});
}

std::string KeyFormat::Name() const { return data_->Fields().Name; }

void KeyFormat::SetName(const std::string& value) try {
  RefuseLocked("Name (Let)");
  data_->SetName(value);
} catch (...) { Failed("Name (Let)"); }

std::string KeyFormat::Separator() const { return data_->Fields().Separator; }

void KeyFormat::SetSeparator(const std::string& value) try {
  RefuseLocked("Separator (Let)");
  if (value == Separator()) return;
  RefuseEmptyKey("Separator", "Separator (Let)");
  data_->SetSeparator(value);
} catch (...) { Failed("Separator (Let)"); }

bool KeyFormat::Mixed() const { return data_->Fields().Mixed; }

void KeyFormat::SetMixed(bool value) try {
  RefuseLocked("Mixed (Let)");
  if (value == Mixed()) return;
  RefuseEmptyKey("Mixed", "Mixed (Let)");
  data_->SetMixed(value);
} catch (...) { Failed("Mixed (Let)"); }

bool KeyFormat::IncludeNames() const { return data_->Fields().IncludeNames; }

void KeyFormat::SetIncludeNames(bool value) try {
  RefuseLocked("IncludeNames (Let)");
  if (value == IncludeNames()) return;
  RefuseEmptyKey("IncludeNames", "IncludeNames (Let)");
  data_->SetIncludeNames(value);
} catch (...) { Failed("IncludeNames (Let)"); }

bool KeyFormat::EmptyKey() const { return data_->Fields().EmptyKey; }

void KeyFormat::SetEmptyKey(bool value) try {
  RefuseLocked("EmptyKey (Let)");
  data_->SetEmptyKey(value);
} catch (...) { Failed("EmptyKey (Let)"); }

bool KeyFormat::Locked() const { return data_->Fields().Locked; }

void KeyFormat::SetLocked(bool value) { data_->SetLocked(value); }

PropertiesPtr KeyFormat::Properties() const {
  if (!properties_) {
    auto parents = *parents_;
    parents.KeyFormat = data_;
    properties_ = Make<velmoria::Properties>();
    properties_->Bind({.Style = psUser, .PropertiesData = data_->PropertiesData(), .Parents = parents});
  }
  return properties_;
}

std::string KeyFormat::Details() const {
  std::string kind = "Identifier Key";
  if (EmptyKey()) {
    kind = "Empty Key Format";
  } else if (Properties()->Count() > 0) {
    kind = "Properties Key";
  }
  return kind + " " + data_->FieldsText() + "  Name: " + Quoted(Name());
}

}  // namespace velmoria
