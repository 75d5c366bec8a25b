#include "velmoria/core/profile.h"

#include <utility>

#include "velmoria/core/apartment_impl.h"
#include "velmoria/core/errors_ignored_impl.h"
#include "velmoria/core/messages.h"
#include "velmoria/core/product.h"
#include "velmoria/core/stored_setting_impl.h"
#include "velmoria/platform/posix/settings_store.h"
#include "velmoria/properties/attribute_data.h"
#include "velmoria/properties/attributes.h"
#include "velmoria/runtime/text.h"

namespace velmoria {

namespace {

constexpr std::string_view kSection = "Profile";

// As stored when it is no value of its type; a value without a text form leaves none.
std::string ValueText(const AttributeData& data) {
  Variant value = data.StoredValue();
  WithErrorsIgnored([&] { value = data.Value(); });
  return TextOrNone([&] { return value.AsText(); });
}

SettingsStore::Entries EntriesOf(const Attributes& attributes) {
  SettingsStore::Entries entries;
  long long position = 0;
  for (const auto& attribute : attributes) {
    const auto number = NumberText(++position);
    entries.emplace_back(number + "Name", attribute->Name());
    entries.emplace_back(number + "DataType", NumberText(static_cast<std::int32_t>(attribute->DataType())));
    entries.emplace_back(number + "Value", ValueText(*attribute->Data()));
  }
  return entries;
}

bool MayCreate(const ProfileItemArguments& arguments) {
  const auto& index = arguments.Index;
  return index.IsGiven() && !index.IsNumber() && !index.IsObject() && !arguments.DefaultValue.IsMissing();
}

}  // namespace

Profile::Profile(std::shared_ptr<SettingsStore> store) : store_(std::move(store)), attributes_(Make<Attributes>()) {}

Profile::~Profile() {
  if (isLoaded_) WithErrorsIgnored([this] { Update(); });
}

void Profile::Load() try {
  for (long long position = 1;; ++position) {
    const auto number = NumberText(position);
    const auto name = StoredSetting(*store_, kSection, number + "Name");
    if (!name) break;
    LoadItem(number, *name);
  }
  isLoaded_ = true;
} catch (...) { Failed("Initialize"); }

// A name that stands twice counts once.
void Profile::LoadItem(const std::string& number, const std::string& name) {
  if (attributes_->Find(name)) return;
  const Variant type = store_->GetSetting(ProductVersionLabel, kSection, number + "DataType", "0");
  const Variant text = store_->GetSetting(ProductVersionLabel, kSection, number + "Value", "");
  auto dataType = dtVariant;
  WithErrorsIgnored([&] { dataType = zDataTypes{type.AsLong()}; });
  const auto attribute = attributes_->SetupItem({.Name = name, .DataType = dataType});
  attribute->Data()->SetStoredValue(text);
}

std::string Profile::Details() const { return attributes_->Details(); }

std::int32_t Profile::Count() const { return attributes_->Count(); }

Profile::Iterator Profile::begin() const { return attributes_->begin(); }

Profile::Iterator Profile::end() const { return attributes_->end(); }

void Profile::Remove(const Variant& index) try { attributes_->Remove(index); } catch (...) {
  Failed("Remove");
}

void Profile::Add(const AttributePtr& item, const Position& position) try {
  attributes_->Add(item, position);
} catch (...) { Failed("Add"); }

AttributePtr Profile::SetupItem(const ProfileSetupItemArguments& arguments) {
  const Suspension quiet{"Profile.SetupItem"};
  AttributePtr attribute;
  WithErrorsIgnored([&] {
    attribute = attributes_->Find(arguments.Name);
    if (attribute) return;
    attribute = attributes_->SetupItem(
        {.Name = arguments.Name, .Value = arguments.Value, .DataType = arguments.DataType, .Size = arguments.Size});
  });
  return attribute;
}

AttributePtr Profile::Item(const ProfileItemArguments& arguments) {
  const Suspension quiet{"Profile.Item"};
  AttributePtr attribute;
  WithErrorsIgnored([&] {
    attribute = attributes_->Find(arguments.Index);
    if (attribute || !MayCreate(arguments)) return;
    attribute = attributes_->SetupItem({.Name = arguments.Index.AsText(),
                                        .Value = arguments.DefaultValue,
                                        .DataType = arguments.DefaultDataType,
                                        .Size = arguments.DefaultSize});
  });
  return attribute;
}

void Profile::Update() try {
  const auto entries = EntriesOf(*attributes_);
  store_->ReplaceSection(ProductVersionLabel, kSection, entries);
  auto& apartment = Apartment();
  if (apartment.Messages) apartment.Messages->SaveLogSettings(apartment);
} catch (...) { Failed("Update"); }

}  // namespace velmoria
