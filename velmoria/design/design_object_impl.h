#pragma once

#include <utility>

#include "velmoria/design/design_object.h"
#include "velmoria/design/parent_change_impl.h"
#include "velmoria/properties/properties.h"
#include "velmoria/properties/properties_data.h"

namespace velmoria {

template <class Kind>
DesignObject<Kind>::DesignObject() : parents_(std::make_unique<velmoria::Parents>()) {}

template <class Kind>
DesignObject<Kind>::~DesignObject() = default;

template <class Kind>
std::string DesignObject<Kind>::Name() const
  requires NamedKind<Kind>
{
  return Get(Kind::KeyField);
}

template <class Kind>
zEngines DesignObject<Kind>::Engine() const
  requires EngineKind<Kind>
{
  return Get(Kind::KeyField);
}

template <class Kind>
std::string DesignObject<Kind>::EngineName() const
  requires EngineKind<Kind>
{
  return Data()->EngineName();
}

template <class Kind>
bool DesignObject<Kind>::Locked() const {
  return Get(&Kind::Fields::Locked);
}

template <class Kind>
void DesignObject<Kind>::SetLocked(bool value) {
  Data()->Store(&Kind::Fields::Locked, value);
}

template <class Kind>
std::string DesignObject<Kind>::Description() const {
  return Get(&Kind::Fields::Description);
}

template <class Kind>
void DesignObject<Kind>::SetDescription(std::string value) {
  Let("Description (Let)", &Kind::Fields::Description, std::move(value));
}

template <class Kind>
Date DesignObject<Kind>::DateCreated() const {
  return Data()->DateCreated();
}

template <class Kind>
Date DesignObject<Kind>::DateModified() const {
  return Data()->DateModified();
}

template <class Kind>
std::string DesignObject<Kind>::ModifiedBy() const {
  return Data()->ModifiedBy();
}

template <class Kind>
bool DesignObject<Kind>::Dirty() const {
  return Data()->Dirty();
}

template <class Kind>
std::string DesignObject<Kind>::Details() const {
  return Data()->Details();
}

template <class Kind>
PropertiesPtr DesignObject<Kind>::UserProperties() try {
  if (!userProperties_) {
    userProperties_ = BoundProperties(psUser, Data()->UserPropertiesData(), ParentsForChildren());
  }
  return userProperties_;
} catch (...) { Failed("UserProperties (Get)"); }

template <class Kind>
Ref<typename Kind::Facade> DesignObject<Kind>::Copy(const typename Kind::KeyPolicy::Key& key, bool recursive) const
    try {
  auto copy = Make<typename Kind::Facade>();
  copy->Bind(Data()->Copy(key, recursive), velmoria::Parents());
  return copy;
} catch (...) { Failed("Copy"); }

template <class Kind>
void DesignObject<Kind>::Bind(const Ref<typename Kind::Data>& data, const Parents& parents) {
  data_ = data;
  *parents_ = parents;
}

template <class Kind>
Ref<typename Kind::Data> DesignObject<Kind>::Data() const {
  if (!data_) data_ = Make<typename Kind::Data>();
  return data_;
}

template <class Kind>
void DesignObject<Kind>::SetParents(const Parents& given) try {
  if (const auto conflict = parents_->TakeInTurn(given)) {
    Raise(conflict->Number, Kind::SetParentsRoutine, {conflict->Name});
  }
  PassOn(ParentChange(given));
} catch (...) { Failed(Kind::SetParentsRoutine); }

template <class Kind>
void DesignObject<Kind>::ClearParents(const ParentSlots& slots) {
  parents_->Clear(slots);
  PassOn(ParentChange(slots));
}

template <class Kind>
template <class T>
T DesignObject<Kind>::Get(T Kind::Fields::* field) const {
  if (!data_) Data();
  return data_->Fields().*field;
}

template <class Kind>
template <class T>
void DesignObject<Kind>::Let(std::string_view routine, T Kind::Fields::* field, std::type_identity_t<T> value) {
  if (!Lists(Kind::SetWhileLocked, field)) RefuseLocked(routine);
  Data()->Let(field, std::move(value));
}

template <class Kind>
void DesignObject<Kind>::RefuseLocked(std::string_view routine) const {
  if (Kind::SettersObeyLocked && Locked()) Raise(errVelmoria_Locked, routine);
}

// A report makes nothing.
template <class Kind>
std::string DesignObject<Kind>::StateDetails() const {
  return data_ ? data_->Details() : std::string();
}

template <class Kind>
void DesignObject<Kind>::PassOn(const ParentChange& change) {
  change.To(userProperties_);
}

template <class Kind>
velmoria::Parents DesignObject<Kind>::ParentsForChildren() const {
  auto parents = *parents_;
  Data()->Enter(parents);
  return parents;
}

template <class Kind>
template <class Collection>
Ref<Collection> DesignObject<Kind>::Child(Ref<Collection>& child) {
  if (!child) {
    auto made = Make<Collection>();
    made->Bind(ParentsForChildren());
    child = std::move(made);
  }
  return child;
}

}  // namespace velmoria
