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

struct KeyFormat::Family {
  Parents Held;
};

KeyFormat::KeyFormat() : family_(std::make_unique<Family>()) {}

KeyFormat::~KeyFormat() = default;

void KeyFormat::Bind(KeyFormatDataPtr data, const Parents& parents) {
  data_ = std::move(data);
  family_->Held = parents;
}

KeyFormatDataPtr KeyFormat::Data() const { return data_; }

void KeyFormat::SetParents(const Parents& parents) try {
  if (auto conflict = family_->Held.Take(parents)) Raise(conflict->Number, "SetParents", {conflict->Name});
  if (properties_) properties_->SetParents(psNone, parents);
} catch (...) { Failed("SetParents"); }

void KeyFormat::ClearParents(const ParentSlots& slots) {
  family_->Held.Clear(slots);
  if (properties_) properties_->ClearParents(psNone, slots);
}

KeyFormatPtr KeyFormat::Copy(bool recursive) const try {
  auto data = Make<KeyFormatData>();
  data->Setup(data_->Fields());
  if (recursive) {
    for (const auto& item : *data_->PropertiesData()) data->PropertiesData()->Add(item->Copy({}, true));
  }
  auto copy = Make<KeyFormat>();
  copy->Bind(std::move(data), {});
  return copy;
} catch (...) { Failed("Copy"); }

void KeyFormat::Refuse(const char* routine) const {
  if (data_->Fields().Locked) Raise(errVelmoria_Locked, routine);
}

void KeyFormat::RefuseEmptyKey(const char* name, const char* routine) const {
  if (data_->Fields().EmptyKey) Raise(errKeyFormat_EmptyKey, routine, {name});
}

std::string KeyFormat::Name() const { return data_->Fields().Name; }

void KeyFormat::SetName(const std::string& value) try {
  Refuse("Name (Let)");
  data_->SetName(value);
} catch (...) { Failed("Name (Let)"); }

std::string KeyFormat::Separator() const { return data_->Fields().Separator; }

void KeyFormat::SetSeparator(const std::string& value) try {
  Refuse("Separator (Let)");
  if (value == Separator()) return;
  RefuseEmptyKey("Separator", "Separator (Let)");
  data_->SetSeparator(value);
} catch (...) { Failed("Separator (Let)"); }

bool KeyFormat::Mixed() const { return data_->Fields().Mixed; }

void KeyFormat::SetMixed(bool value) try {
  Refuse("Mixed (Let)");
  if (value == Mixed()) return;
  RefuseEmptyKey("Mixed", "Mixed (Let)");
  data_->SetMixed(value);
} catch (...) { Failed("Mixed (Let)"); }

bool KeyFormat::IncludeNames() const { return data_->Fields().IncludeNames; }

void KeyFormat::SetIncludeNames(bool value) try {
  Refuse("IncludeNames (Let)");
  if (value == IncludeNames()) return;
  RefuseEmptyKey("IncludeNames", "IncludeNames (Let)");
  data_->SetIncludeNames(value);
} catch (...) { Failed("IncludeNames (Let)"); }

bool KeyFormat::EmptyKey() const { return data_->Fields().EmptyKey; }

void KeyFormat::SetEmptyKey(bool value) try {
  Refuse("EmptyKey (Let)");
  data_->SetEmptyKey(value);
} catch (...) { Failed("EmptyKey (Let)"); }

bool KeyFormat::Locked() const { return data_->Fields().Locked; }

void KeyFormat::SetLocked(bool value) { data_->SetLocked(value); }

PropertiesPtr KeyFormat::Properties() const {
  if (!properties_) {
    auto parents = family_->Held;
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
  return kind + " Mixed: " + Variant(Mixed()).AsText() + "  Separator: " + Quoted(Separator()) +
         "  IncludeNames: " + Variant(IncludeNames()).AsText() + "  Name: " + Quoted(Name());
}

}  // namespace velmoria
