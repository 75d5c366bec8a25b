#include "velmoria/design/relationship_data.h"

#include "velmoria/design/design_collection_data_impl.h"
#include "velmoria/design/design_data_impl.h"
#include "velmoria/design/link_data.h"
#include "velmoria/properties/parents_data.h"
#include "velmoria/runtime/text.h"

namespace velmoria {

template class DesignData<RelationshipKind>;
template class DesignCollectionData<RelationshipKind>;

RelationshipData::RelationshipData() = default;
RelationshipData::~RelationshipData() = default;

std::string RelationshipData::Details() const {
  return "Association: " + Quoted(AssociationName(Fields().Association)) +
         " Related Server: " + Quoted(Fields().RelatedServerName) +
         " Related Class: " + Quoted(Fields().RelatedClassName) +
         " Related Action: " + Quoted(Fields().RelatedActionName);
}

void RelationshipData::Enter(Parents& parents) { parents.Relationship = this; }

void RelationshipData::LoadAllDetail() {
  LinksData()->LoadCollection();
  DesignData::LoadAllDetail();
}

LinksDataPtr RelationshipData::LinksData() {
  if (!linksData_) linksData_ = Make<velmoria::LinksData>();
  return linksData_;
}

void RelationshipData::CopyChildren(const RelationshipData& source) {
  SetChild(linksData_, CopyOf(source.linksData_));
  DesignData::CopyChildren(source);
}

bool RelationshipData::ChildrenDirty() const { return IsDirty(linksData_) || DesignData::ChildrenDirty(); }

}  // namespace velmoria
