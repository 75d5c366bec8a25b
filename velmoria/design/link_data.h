#pragma once

#include <string>

#include "velmoria/core/enumerations.h"
#include "velmoria/design/design_collection_data.h"
#include "velmoria/design/design_data.h"
#include "velmoria/design/link_kind.h"

namespace velmoria {

extern template class DesignData<LinkKind>;
extern template class DesignCollectionData<LinkKind>;

class LinkData final : public DesignData<LinkKind> {
 public:
  LinkData();
  ~LinkData() override;

  std::string Details() const override;
  // The definitions of both ends; clean when they are made here.
  PropertyDataPtr PropertyData();
  PropertyDataPtr ParameterData();

  /// ltPropertyParameter unless a definition file says otherwise.
  zLinkTypes LinkType() const noexcept { return linkType_; }
  /// As it was stored: it does not make the object dirty.
  void SetLinkType(zLinkTypes value) noexcept { linkType_ = value; }

 private:
  void CopyParts(const LinkData& source, bool recursive) override;
  bool ChildrenDirty() const override;

  PropertyDataPtr propertyData_;
  PropertyDataPtr parameterData_;
  zLinkTypes linkType_ = ltPropertyParameter;
};

}  // namespace velmoria
