#include "tests/unit/properties/every_parent.h"

#include "velmoria/brokering/key_format_data.h"
#include "velmoria/design/action_data.h"
#include "velmoria/design/class_data.h"
#include "velmoria/design/connector_data.h"
#include "velmoria/design/database_data.h"
#include "velmoria/design/link_data.h"
#include "velmoria/design/relationship_data.h"
#include "velmoria/design/server_data.h"
#include "velmoria/design/source_data.h"
#include "velmoria/velmoria.h"

namespace velmoria::test {

Parents EveryParent(const SampleDesign& design) {
  const auto shop = Framework().Databases()->Item("Shop");
  const auto action = design.Order->Actions()->Item("Get");
  const auto lines = design.Order->Relationships()->SetupItem({.Name = "Lines"});
  Parents all;
  all.Server = design.Sales->Data();
  all.Class = design.Order->Data();
  all.Action = action->Data();
  all.Source = action->Sources()->Item()->Data();
  all.Relationship = lines->Data();
  all.Link = lines->Links()->SetupItem({.Name = "Id"})->Data();
  all.Database = shop->Data();
  all.Connector = shop->Connectors()->Item(engODBC)->Data();
  all.KeyFormat = Framework().CreateKeyFormat({.Name = "Keys"})->Data();
  return all;
}

}  // namespace velmoria::test
