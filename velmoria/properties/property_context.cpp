#include "velmoria/properties/property_context.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "velmoria/brokering/business_context_impl.h"
#include "velmoria/brokering/identifier.h"
#include "velmoria/brokering/key_format.h"
#include "velmoria/core/apartment_impl.h"
#include "velmoria/core/display.h"
#include "velmoria/core/index_text_impl.h"
#include "velmoria/core/insert_at_impl.h"
#include "velmoria/core/quietly_impl.h"
#include "velmoria/properties/properties.h"
#include "velmoria/properties/property.h"
#include "velmoria/properties/property_texts_impl.h"

namespace velmoria {

PropertyContext::PropertyContext() = default;
PropertyContext::~PropertyContext() = default;

std::string_view PropertyContext::ReportedType() const noexcept { return "PropertyContext"; }
std::string PropertyContext::StateDetails() const { return Details(); }

void PropertyContext::Setup(bool locked, bool supportsAdd, bool supportsRemove) try {
  if (locked_) Raise(errVelmoria_Locked, "Setup");
  items_.Clear();
  noAdd_ = !supportsAdd;
  noRemove_ = !supportsRemove;
  noLoad_ = true;
  locked_ = locked;
} catch (...) { Failed("Setup"); }

void PropertyContext::SetupWith(const PropertiesPtr& properties) try {
  transient_ = false;
  Add(properties);
  identifier_ = properties->Identifier();
} catch (...) { Failed("SetupWith"); }

PropertiesPtr PropertyContext::FindOrAsk(const Variant& index) {
  if (const PropertiesPtr* held = items_.Find(index)) return *held;
  PropertiesPtr supplied;
  ItemNotFound.Raise(index, supplied);
  return supplied;
}

PropertiesPtr PropertyContext::Item(const Variant& index) try {
  PropertiesPtr found = FindOrAsk(index);
  if (!found) Raise(errItem_Properties, "Item", {IndexText(index)});
  return found;
} catch (...) { Failed("Item"); }

std::int32_t PropertyContext::Count() const { return static_cast<std::int32_t>(items_.Count()); }

std::int32_t PropertyContext::PropertyCount() const {
  std::int32_t count = 0;
  for (const auto& properties : items_) count += properties->Count();
  return count;
}

PropertyPtr PropertyContext::FindByNumber(const Variant& index) const {
  constexpr double highest = std::numeric_limits<std::int32_t>::max();
  if (const double asked = index.AsDouble(); !(asked > 0 && asked <= highest)) return {};
  std::int32_t number = index.AsLong();
  for (const auto& properties : items_) {
    const std::int32_t count = properties->Count();
    if (number >= 1 && number <= count) return properties->Item(number);
    number -= count;
  }
  return {};
}

const PropertyPtr* PropertyContext::FindHeld(const Variant& name) const {
  return name.IsText() && !items_.IsEmpty() ? items_.At(1)->FindHeld(name) : nullptr;
}

PropertyPtr PropertyContext::FindByName(const PropertyKey& key) const {
  // By position, for a listener may add collections or remove them.
  for (std::size_t position = 1; position <= items_.Count(); ++position) {
    const PropertiesPtr properties = items_.At(position);
    if (PropertyPtr found = QuietlyWhenHeard(properties->ItemNotFound, "PropertyContext.FindProperty",
                                             [&] { return properties->FindOrAsk(key); })) {
      return found;
    }
  }
  return {};
}

PropertyPtr PropertyContext::FindOrAsk(const PropertyKey& key) {
  PropertyPtr found = key.Index.IsNumber() ? FindByNumber(key.Index) : FindByName(key);
  if (!found) PropertyNotFound.Raise(key, found);
  return found;
}

PropertyPtr PropertyContext::FindProperty(const Variant& index) { return FindProperty(PropertyKey{.Index = index}); }

PropertyPtr PropertyContext::FindProperty(const PropertyKey& key) try {
  PropertyPtr found = FindOrAsk(key);
  if (!found) Raise(errItem_Property, "FindProperty", PropertyKeyTexts(key));
  return found;
} catch (...) { Failed("FindProperty"); }

void PropertyContext::Insert(PropertiesPtr item, const Position& position, std::string_view routine) {
  if (position.IsBoth()) Raise(errAdd_Properties, routine, AddTexts(item->Name(), position), BothPositionsText);
  const std::string name = item->Name();
  InsertAt(items_, std::move(item), name, position);
}

void PropertyContext::Add(PropertiesPtr item, const Position& position) try {
  if (noAdd_) Raise(errNotSupported_Add, "Add");
  if (!item) Fail(RuntimeFailure::ObjectNotSet);
  // A listener may let go of the caller's own.
  const PropertiesPtr held = std::move(item);
  if (BeforeAdd.Raise(*held)) return;
  Insert(held, position, "Add");
  AfterAdd.Raise(*held);
} catch (...) { Failed("Add"); }

void PropertyContext::SetupItem(PropertiesPtr item, const Position& position) { Add(std::move(item), position); }

void PropertyContext::Remove(const Variant& index) try {
  if (noRemove_) Raise(errNotSupported_Remove, "Remove");
  const PropertiesPtr item = Item(index);
  if (BeforeRemove.Raise(*item)) return;
  if (!items_.RemoveKey(item->Name())) Fail(RuntimeFailure::InvalidArgument);
  AfterRemove.Raise(*item);
} catch (...) {
  if (noRemove_) Failed("Remove");
  Failed("Remove", errRemove_Properties, {IndexText(index)});
}

BusinessContext& PropertyContext::Broker(std::string_view routine) {
  if (transient_) Raise(errPropertyContext_Transient, routine);
  if (!businessContext_) {
    auto broker = Make<BusinessContext>();
    broker->Setup({.ServerName = Identity().ServerName(), .ClassName = Identity().ClassName()});
    businessContext_ = broker;
  }
  return *businessContext_;
}

PropertiesPtr PropertyContext::GetProperties(const std::string& actionName, PropertiesPtr parameters,
                                             const std::string& name) try {
  BusinessContext& broker = Broker("GetProperties");
  const IdentifierPtr identity = parameters ? IdentifierPtr{} : identifier_;
  return broker.GetProperties({identity, actionName, std::move(parameters), name});
} catch (...) { Failed("GetProperties"); }

PropertiesPtr PropertyContext::GetNewProperties(const std::string& actionName, const std::string& name) try {
  return Broker("GetNewProperties").GetNewProperties(identifier_, actionName, name);
} catch (...) { Failed("GetNewProperties"); }

PropertiesPtr PropertyContext::FindLoaded(const std::string& actionName, const std::string& name,
                                          std::string_view routine) {
  if (noLoad_) Raise(errProperties_Load, routine);
  if (transient_) Raise(errPropertyContext_Transient, routine);
  const std::string& held = name.empty() ? actionName : name;
  if (held.empty()) return {};
  return QuietlyWhenHeard(ItemNotFound, "PropertyContext.LoadProperties", [&] { return FindOrAsk(held); });
}

PropertiesPtr PropertyContext::LoadProperties(const LoadPropertiesArguments& arguments, const Position& position) try {
  if (PropertiesPtr held = FindLoaded(arguments.ActionName, arguments.Name, "LoadProperties")) return held;
  PropertiesPtr loaded = GetProperties(arguments.ActionName, arguments.Parameters, arguments.Name);
  Insert(loaded, position, "LoadProperties");
  return loaded;
} catch (...) { Failed("LoadProperties"); }

PropertiesPtr PropertyContext::LoadNewProperties(const LoadNewPropertiesArguments& arguments,
                                                 const Position& position) try {
  if (PropertiesPtr held = FindLoaded(arguments.ActionName, arguments.Name, "LoadNewProperties")) return held;
  PropertiesPtr loaded = GetNewProperties(arguments.ActionName, arguments.Name);
  Insert(loaded, position, "LoadNewProperties");
  return loaded;
} catch (...) { Failed("LoadNewProperties"); }

std::string PropertyContext::ActionName() try { return Broker("ActionName (Get)").ActionName(); } catch (...) {
  Failed("ActionName (Get)");
}

void PropertyContext::SetActionName(const std::string& value) try {
  Broker("ActionName (Let)").SetActionName(value);
} catch (...) { Failed("ActionName (Let)"); }

PropertiesPtr PropertyContext::Parameters() try { return Broker("Parameters (Get)").Parameters(); } catch (...) {
  Failed("Parameters (Get)");
}

void PropertyContext::SetParameters(PropertiesPtr value) try {
  Broker("Parameters (Set)").SetParameters(std::move(value));
} catch (...) { Failed("Parameters (Set)"); }

IdentifierPtr PropertyContext::Identifier() const { return identifier_; }

const Identifier& PropertyContext::Identity() const {
  if (!identifier_) Fail(RuntimeFailure::ObjectNotSet);
  return *identifier_;
}

std::string PropertyContext::PropertiesKey(velmoria::KeyFormat& format) {
  const std::string separator = format.Separator();
  std::string key;
  if (format.Mixed()) key = Identity().ServerName() + separator + Identity().ClassName();
  for (const auto& member : *format.Properties()) {
    const PropertyPtr found = FindProperty(PropertyKey{.Parameter = member});
    // A separator stands before the first name and two between a name and its value: stored keys compare exactly.
    if (format.IncludeNames()) key.append(separator).append(found->Name()).append(separator);
    if (!key.empty()) key += separator;
    key += found->Value().AsText();
  }
  return key;
}

std::string PropertyContext::Key(KeyFormatPtr keyFormat) try {
  if (!keyFormat) keyFormat = Present(Apartment().DefaultKeyFormat);
  const bool byProperties = keyFormat->Properties()->Count() > 0;
  std::string key = byProperties ? PropertiesKey(*keyFormat) : Identity().Key(keyFormat);
  if (keyFormat->EmptyKey()) Raise(errNotSupported_Key, "Key", {key});
  return key;
} catch (...) { Failed("Key"); }

void PropertyContext::Update() try { UpdateEach({items_.begin(), items_.end()}); } catch (...) {
  Failed("Update");
}

void PropertyContext::Delete() try {
  const std::vector<PropertiesPtr> members(items_.begin(), items_.end());
  auto next = members.begin();
  DeleteEach([&] { return next == members.end() ? PropertiesPtr{} : *next++; });
} catch (...) { Failed("Delete"); }

void PropertyContext::Undo() try {
  for (const auto& properties : items_) properties->Undo();
} catch (...) { Failed("Undo"); }

bool PropertyContext::Dirty() const {
  return std::any_of(begin(), end(), [](const auto& properties) { return properties->Dirty(); });
}

bool PropertyContext::DirtyValues() const {
  return std::any_of(begin(), end(), [](const auto& properties) { return properties->DirtyValues(); });
}

bool PropertyContext::Modifiable(bool all) const {
  const auto modifiable = [](const auto& properties) { return properties->Modifiable(true); };
  return all ? std::all_of(begin(), end(), modifiable) : std::any_of(begin(), end(), modifiable);
}

zEditFlags PropertyContext::EditFlags() const {
  zEditFlags flags = efNone;
  for (const auto& properties : items_) flags = flags | properties->EditFlags();
  return flags;
}

std::string PropertyContext::EditFlagsDisplay() const { return velmoria::EditFlagsDisplay(EditFlags()); }

zStateFlags PropertyContext::StateFlags() const {
  zStateFlags flags{};
  for (const auto& properties : items_) flags = flags | properties->StateFlags();
  return flags;
}

std::string PropertyContext::StateFlagsDisplay() const { return velmoria::StateFlagsDisplay(StateFlags()); }

std::string PropertyContext::Details() const {
  std::string details = "Properties Count " + NumberText(Count());
  if (identifier_) details += " for Identifier: " + identifier_->Key();
  for (const auto& properties : items_) {
    details +=
        "\r\n    Properties Count " + NumberText(properties->Count()) + " for Properties '" + properties->Name() + "'";
  }
  return details;
}

void PropertyContext::SetSupportsAdd(bool value) { LetUnlocked(locked_, noAdd_, !value, "SupportsAdd (Let)"); }
void PropertyContext::SetSupportsRemove(bool value) { LetUnlocked(locked_, noRemove_, !value, "SupportsRemove (Let)"); }
void PropertyContext::SetSupportsLoad(bool value) { LetUnlocked(locked_, noLoad_, !value, "SupportsLoad (Let)"); }

}  // namespace velmoria
