#include "velmoria/properties/properties_data.h"

#include <algorithm>
#include <utility>

#include "velmoria/core/details_text_impl.h"
#include "velmoria/core/insert_at_impl.h"
#include "velmoria/core/now.h"
#include "velmoria/core/statistics.h"
#include "velmoria/properties/property.h"
#include "velmoria/properties/property_data.h"
#include "velmoria/properties/property_texts_impl.h"
#include "velmoria/runtime/text.h"

namespace velmoria {

PropertiesData::PropertiesData() = default;

PropertiesData::~PropertiesData() = default;

const PropertyDataPtr& PropertiesData::Item(const Variant& index) const try {
  if (const auto* item = items_.Find(index)) return *item;
  Raise(errItem_Property, "Item", PropertyKeyTexts(PropertyKey{.Index = index}));
} catch (...) { Failed("Item"); }

PropertyDataPtr PropertiesData::Find(const Variant& index, std::string_view sourceName,
                                     std::string_view sourceKey) const {
  if (const auto* item = items_.Find(index)) return *item;
  if (sourceName.empty() && sourceKey.empty()) return {};
  for (const auto& item : items_) {
    if (!sourceName.empty() && item->SourceName() == sourceName) return item;
    if (item->HasSourceKey(sourceKey)) return item;
  }
  return {};
}

void PropertiesData::Add(const PropertyDataPtr& item, const Position& position) try {
  Insert(item, position);
  SetDirty();
} catch (...) { Failed("Add"); }

PropertyDataPtr PropertiesData::SetupItem(zPropertyStyles style, const PropertyFields& fields, const Position& position,
                                          bool clean) try {
  auto item = Make<PropertyData>();
  item->Setup(style, fields, 0, clean);
  Insert(item, position);
  if (!clean) SetDirty();
  return item;
} catch (...) { Failed("SetupItem"); }

void PropertiesData::Insert(const PropertyDataPtr& item, const Position& position) {
  const auto place = PlaceOf(items_, position.IsBoth() ? Position{} : position);
  items_.Insert(place, item, item->Name());
  if (orderFixed_) {
    item->SetOrderNumber(++lastOrder_);
    item->FixOrderNumber();
  } else {
    Renumber(place);
  }
  ++generation_;
}

void PropertiesData::FixOrder() noexcept {
  orderFixed_ = true;
  for (const auto& item : items_) item->FixOrderNumber();
}

void PropertiesData::Renumber(std::size_t from) {
  if (orderFixed_) return;
  for (auto place = from; place <= items_.Count(); ++place) {
    items_.At(place)->SetOrderNumber(static_cast<std::int32_t>(place));
  }
  lastOrder_ = Count();
}

void PropertiesData::Remove(const std::string& name) try {
  const auto item = Item(name);
  const auto place = items_.PositionOf(std::string_view(name));
  items_.RemoveAt(place);
  item->SetOrderNumber(0);
  Renumber(place);
  ++generation_;
  SetDirty();
} catch (...) { Failed("Remove"); }

void PropertiesData::RenameItem(const std::string& name, const std::string& newName) try {
  if (items_.FindKey(newName)) Raise(errRename_Property, "RenameItem", {name, newName});
  const auto item = Item(name);
  items_.Rename(items_.PositionOf(std::string_view(name)), newName);
  item->SetName(newName);
  ++generation_;
  SetDirty();
} catch (...) { Failed("RenameItem"); }

PropertiesDataPtr PropertiesData::Copy(bool recursive) const try {
  auto copy = Make<PropertiesData>();
  for (const auto& item : items_) copy->Add(item->Copy({}, recursive));
  return copy;
} catch (...) { Failed("Copy"); }

PropertiesDataPtr PropertiesData::Twin() const {
  auto twin = Make<PropertiesData>();
  const auto created = Now();
  twin->items_ = items_.Mapped([&](const auto& item) { return Make<PropertyData>(*item, created); });
  twin->generation_ = generation_;
  twin->lastOrder_ = lastOrder_;
  return twin;
}

bool PropertiesData::Dirty() const {
  return !modified_.IsEmpty() || std::ranges::any_of(items_, [](const auto& item) { return item->Dirty(); });
}

void PropertiesData::SetDirty() { modified_ = Now(); }

void PropertiesData::ClearDirty() {
  modified_ = Variant();
  for (const auto& item : items_) item->ClearDirty();
}

bool PropertiesData::Modifiable(bool all) const {
  const auto modifiable = [](const auto& item) { return item->Modifiable(); };
  return all ? std::ranges::all_of(items_, modifiable) : std::ranges::any_of(items_, modifiable);
}

std::string PropertiesData::Details() const try {
  Suspension quiet{"PropertiesData.Details (Get)"};
  return DetailsOf("Properties Count " + NumberText(Count()), items_);
} catch (...) { Failed("Details (Get)"); }

StatisticsPtr PropertiesData::Statistics() {
  if (!statistics_) statistics_ = Make<velmoria::Statistics>();
  return statistics_;
}

}  // namespace velmoria
