#pragma once

#include "velmoria/core/display.h"
#include "velmoria/core/now.h"
#include "velmoria/design/design_data.h"
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
  if (!userPropertiesData_) userPropertiesData_ = Make<PropertiesData>();
  return userPropertiesData_;
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

template <class Kind>
void DesignData<Kind>::LoadAllDetail() {
  static_cast<void>(UserPropertiesData());
}

template <class Kind>
void DesignData<Kind>::CopyParts(const typename Kind::Data&, bool) {}

template <class Kind>
void DesignData<Kind>::CopyChildren(const typename Kind::Data& source) {
  const DesignData& original = source;
  SetUserProperties(CopyOf(original.userPropertiesData_));
}

template <class Kind>
bool DesignData<Kind>::ChildrenDirty() const {
  return IsDirty(userPropertiesData_);
}

}  // namespace velmoria
