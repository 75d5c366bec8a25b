#include "velmoria/design/class_data.h"

#include "velmoria/design/action_data.h"
#include "velmoria/design/design_collection_data_impl.h"
#include "velmoria/design/design_data_impl.h"
#include "velmoria/design/relationship_data.h"
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

PropertiesDataPtr ClassData::PropertiesData() { return Child<velmoria::PropertiesData>(); }

ActionsDataPtr ClassData::ActionsData() { return Child<velmoria::ActionsData>(); }

RelationshipsDataPtr ClassData::RelationshipsData() { return Child<velmoria::RelationshipsData>(); }

// The copy's user properties are the identifier's once more; those of the source are not carried over.
const PropertiesDataPtr& ClassData::UserPropertiesForCopy() const { return Existing<velmoria::PropertiesData>(); }

}  // namespace velmoria
