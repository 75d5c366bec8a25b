#pragma once

#include "velmoria/core/display.h"
#include "velmoria/core/now.h"
#include "velmoria/design/design_data.h"
#include "velmoria/properties/parents_data.h"
#include "velmoria/properties/properties_data.h"

namespace velmoria {

template <class Kind>
DesignData<Kind>::DesignData() = default;

template <class Kind>
DesignData<Kind>::~DesignData() = default;

template <class Kind>
std::string DesignData<Kind>::EngineName() const
  requires EngineKind<Kind>
{
  return velmoria::EngineName(fields_.*Kind::KeyField);
}

template <class Kind>
void DesignData<Kind>::Setup(typename Kind::Fields fields) {
  Adopt(std::move(fields));
}

template <class Kind>
void DesignData<Kind>::Adopt(typename Kind::Fields fields) {
  fields_ = std::move(fields);
  dateCreated_ = Now();
  dirty_ = dateCreated_;
}

template <class Kind>
void DesignData<Kind>::Stamp() {
  dirty_ = Now();
}

template <class Kind>
PropertiesDataPtr DesignData<Kind>::UserPropertiesData() {
  return Made(userPropertiesData_);
}

template <class Kind>
void DesignData<Kind>::SetUserProperties(const PropertiesDataPtr& value) {
  SetChild(userPropertiesData_, value);
}

template <class Kind>
Ref<typename Kind::Data> DesignData<Kind>::Copy(const Key& key, bool recursive) const try {
  auto fields = fields_;
  if (key != Key()) fields.*Kind::KeyField = key;
  auto copy = Make<typename Kind::Data>();
  DesignData& made = *copy;
  made.SetupCopy(std::move(fields));
  const auto& source = static_cast<const typename Kind::Data&>(*this);
  made.CopyParts(source, recursive);
  if (recursive) made.CopyChildren(source);
  return copy;
} catch (...) { Failed("Copy"); }

// A list brings in what is below its members, too.
template <class Kind>
void DesignData<Kind>::LoadAllDetail() {
  const auto load = [](auto& child) {
    Made(child);
    if constexpr (requires { child->LoadCollection(); }) child->LoadCollection();
  };
  std::apply([load](auto&... child) { (load(child), ...); }, children_);
  Made(userPropertiesData_);
}

template <class Kind>
void DesignData<Kind>::Enter(velmoria::Parents& parents) {
  parents.*SlotOf<typename Kind::Data> = static_cast<typename Kind::Data*>(this);
}

template <class Kind>
void DesignData<Kind>::CopyParts(const typename Kind::Data&, bool) {}

template <class Kind>
void DesignData<Kind>::CopyChildren(const typename Kind::Data& source) {
  const DesignData& original = source;
  const auto copy = [&]<class T>(Ref<T>& child) { SetChild(child, CopyOf(original.Existing<T>())); };
  std::apply([copy](auto&... child) { (copy(child), ...); }, children_);
  SetUserProperties(CopyOf(original.UserPropertiesForCopy()));
}

template <class Kind>
bool DesignData<Kind>::ChildrenDirty() const {
  return std::apply([](const auto&... child) { return (IsDirty(child) || ...); }, children_) ||
         IsDirty(userPropertiesData_);
}

}  // namespace velmoria
