#include "velmoria/design/link_data.h"

#include "velmoria/design/design_collection_data_impl.h"
#include "velmoria/design/design_data_impl.h"
#include "velmoria/properties/property_data.h"
#include "velmoria/runtime/text.h"

namespace velmoria {

template class DesignData<LinkKind>;
template class DesignCollectionData<LinkKind>;

namespace {

// Asking for an end that nobody has described yet leaves the Link clean.
PropertyDataPtr MakeEnd(zPropertyStyles style) {
  auto end = Make<PropertyData>();
  end->Setup(style, {}, 0, true);
  return end;
}

PropertyDataPtr CopyOfEnd(const PropertyDataPtr& end, bool recursive) {
  return end ? end->Copy({}, recursive) : PropertyDataPtr();
}

}  // namespace

LinkData::LinkData() = default;
LinkData::~LinkData() = default;

std::string LinkData::Details() const { return "Link: " + Quoted(Name()); }

PropertyDataPtr LinkData::PropertyData() {
  if (!propertyData_) propertyData_ = MakeEnd(psLinkProperty);
  return propertyData_;
}

PropertyDataPtr LinkData::ParameterData() {
  if (!parameterData_) parameterData_ = MakeEnd(psLinkParameter);
  return parameterData_;
}

void LinkData::CopyParts(const LinkData& source, bool recursive) {
  linkType_ = source.linkType_;
  propertyData_ = CopyOfEnd(source.propertyData_, recursive);
  parameterData_ = CopyOfEnd(source.parameterData_, recursive);
}

bool LinkData::ChildrenDirty() const {
  return IsDirty(parameterData_) || IsDirty(propertyData_) || DesignData::ChildrenDirty();
}

}  // namespace velmoria
