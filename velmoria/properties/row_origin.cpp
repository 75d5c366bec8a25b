#include "velmoria/data/database_agent_impl.h"
#include "velmoria/data/recordset_impl.h"
#include "velmoria/design/action.h"
#include "velmoria/design/class.h"
#include "velmoria/properties/row_origin_impl.h"

namespace velmoria {

namespace {

ClassPtr ClassOf(const Recordset& recordset) {
  const auto& agent = recordset.DatabaseAgent();
  return agent ? agent->Class() : ClassPtr();
}

}  // namespace

ActionPtr ActionOf(const Recordset& recordset) {
  const auto& agent = recordset.DatabaseAgent();
  return agent ? agent->Action() : ActionPtr();
}

std::string ServerNameOf(const Recordset& recordset) {
  const auto classObject = ClassOf(recordset);
  return classObject ? classObject->ServerName() : std::string();
}

std::string ClassNameOf(const Recordset& recordset) {
  const auto classObject = ClassOf(recordset);
  return classObject ? classObject->Name() : std::string();
}

std::string ActionNameOf(const Recordset& recordset) {
  const auto action = ActionOf(recordset);
  return action ? action->Name() : std::string();
}

zEditFlags EditFlagsOf(const Recordset& recordset) {
  const auto action = ActionOf(recordset);
  return action ? action->EditFlags() : efNone;
}

}  // namespace velmoria
