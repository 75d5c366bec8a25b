#include "velmoria/design/class_data.h"

#include "velmoria/design/action_data.h"
#include "velmoria/design/design_collection_data_impl.h"
#include "velmoria/design/design_data_impl.h"
#include "velmoria/design/relationship_data.h"
#include "velmoria/properties/parents_data.h"
#include "velmoria/runtime/text.h"

namespace velmoria {

template class DesignData<ClassKind>;
template class DesignCollectionData<ClassKind>;

ClassData::ClassData() = default;
ClassData::~ClassData() = default;

std::string ClassData::Details() const {
  return "Class: " + Quoted(Name()) + "  ActiveXClass: " + Quoted(Fields().ActiveXClass) +
         "  DefaultAction: " + Quoted(Fields().DefaultActionName) +
         "  SingleAction: " + Quoted(Fields().SingleActionName) + "  NewAction: " + Quoted(Fields().NewActionName);
}

void ClassData::Enter(Parents& parents) { parents.Class = this; }

void ClassData::LoadAllDetail() {
  static_cast<void>(PropertiesData());
  ActionsData()->LoadCollection();
  RelationshipsData()->LoadCollection();
  DesignData::LoadAllDetail();
}

PropertiesDataPtr ClassData::PropertiesData() {
  if (!propertiesData_) propertiesData_ = Make<velmoria::PropertiesData>();
  return propertiesData_;
}

ActionsDataPtr ClassData::ActionsData() {
  if (!actionsData_) actionsData_ = Make<velmoria::ActionsData>();
  return actionsData_;
}

RelationshipsDataPtr ClassData::RelationshipsData() {
  if (!relationshipsData_) relationshipsData_ = Make<velmoria::RelationshipsData>();
  return relationshipsData_;
}

// The copy's user properties are the identifier's once more; those of the source are not carried over.
void ClassData::CopyChildren(const ClassData& source) {
  SetChild(relationshipsData_, CopyOf(source.relationshipsData_));
  SetChild(actionsData_, CopyOf(source.actionsData_));
  SetChild(propertiesData_, CopyOf(source.propertiesData_));
  SetUserProperties(CopyOf(source.propertiesData_));
}

bool ClassData::ChildrenDirty() const {
  return IsDirty(propertiesData_) || IsDirty(actionsData_) || IsDirty(relationshipsData_) ||
         DesignData::ChildrenDirty();
}

}  // namespace velmoria
