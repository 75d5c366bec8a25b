#include "velmoria/core/apartment_impl.h"
#include "velmoria/core/messages.h"
#include "velmoria/design/action.h"
#include "velmoria/design/actions.h"
#include "velmoria/design/class.h"
#include "velmoria/design/classes.h"
#include "velmoria/design/server.h"
#include "velmoria/properties/properties.h"

namespace velmoria {

void Server::ActionMetaDataLoad() try {
  SetUseMetaData(true);
  Present(Apartment().Messages)->Clear();
  for (const auto& owner : *Classes()) {
    for (const auto& action : *owner->Actions()) LoadSchema(*owner, *action);
  }
} catch (...) { Failed("ActionMetaDataLoad"); }

void Server::LoadSchema(const Class& owner, Action& action) {
  try {
    KeepSchema(owner.Name(), action.Name(), action.CreateProperties());
  } catch (...) {
    Present(Apartment().Messages)
        ->SetupItem({.Number = errNotSupported_Properties,
                     .TypeName = std::string(ReportedType()),
                     .RoutineName = "ActionMetaDataLoad",
                     .TypeFlags = tfVelmoria,
                     .SeverityFlags = svfWarning,
                     .Replace1 = action.Name(),
                     .Replace2 = action.UsageFlagsDisplay()});
  }
}

void Server::KeepSchema(const std::string& className, const std::string& actionName, const PropertiesPtr& columns) {
  if (!UseMetaData()) return;
  Classes()->Item(className)->Actions()->Item(actionName)->SetSchemaCache(columns->Copy());
}

void Server::ActionMetaDataClear() try {
  for (const auto& owner : *Classes()) {
    for (const auto& action : *owner->Actions()) action->SetSchemaCache({});
  }
} catch (...) { Failed("ActionMetaDataClear"); }

}  // namespace velmoria
