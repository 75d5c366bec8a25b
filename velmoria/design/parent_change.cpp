#include "velmoria/brokering/key_format_data.h"
#include "velmoria/data/recordset_impl.h"
#include "velmoria/design/action_data.h"
#include "velmoria/design/class_data.h"
#include "velmoria/design/connector_data.h"
#include "velmoria/design/database_data.h"
#include "velmoria/design/link_data.h"
#include "velmoria/design/parent_change_impl.h"
#include "velmoria/design/relationship_data.h"
#include "velmoria/design/server_data.h"
#include "velmoria/design/source_data.h"
#include "velmoria/properties/properties.h"
#include "velmoria/properties/properties_data.h"
#include "velmoria/properties/properties_impl.h"
#include "velmoria/properties/property.h"

namespace velmoria {

void ParentChange::To(const PropertiesPtr& child) const {
  if (!child) return;
  if (given_) child->SetParents(child->Style(), *given_);
  if (cleared_) child->ClearParents(child->Style(), *cleared_);
}

void ParentChange::To(const PropertyPtr& child) const {
  if (!child) return;
  if (given_) child->SetParents(psNone, *given_);
  if (cleared_) child->ClearParents(psNone, *cleared_);
}

PropertiesPtr BoundProperties(zPropertyStyles style, const PropertiesDataPtr& data, const Parents& parents) {
  auto properties = Make<Properties>();
  properties->Bind({.Style = style, .PropertiesData = data, .Parents = parents});
  return properties;
}

}  // namespace velmoria
