#pragma once

#include "tests/support/sample_design.h"
#include "velmoria/core/catalogue.h"
#include "velmoria/properties/parents_data.h"

namespace velmoria::test {

/// A parent of each kind: "Sales", "Order" and its "Get" with the Source, a Relationship "Lines" with a Link "Id",
/// "Shop" with its Connector, and a KeyFormat "Keys".
Parents EveryParent(const SampleDesign& design);

/// A slot of EveryParent that is filled already: what is raised for it, and the name told.
struct ParentConflictRow {
  bool ParentSlots::* Slot;
  zErrors Number;
  const char* Name;
};

/// In the order in which a conflict is looked for.
inline constexpr ParentConflictRow kParentConflicts[] = {
    {&ParentSlots::Server, errParent_Server, "Sales"},
    {&ParentSlots::Class, errParent_Class, "Order"},
    {&ParentSlots::Action, errParent_Action, "Get"},
    {&ParentSlots::Source, errParent_Source, "Generic ODBC"},
    {&ParentSlots::Relationship, errParent_Relationship, "Lines"},
    {&ParentSlots::Link, errParent_Link, "Link: 'Id'"},
    {&ParentSlots::Database, errParent_Database, "Shop"},
    {&ParentSlots::Connector, errParent_Connector, "Generic ODBC"},
    {&ParentSlots::KeyFormat, errParent_KeyFormat, "Keys"},
};

inline ParentSlots SlotOf(const ParentConflictRow& row) {
  ParentSlots slots;
  slots.*row.Slot = true;
  return slots;
}

}  // namespace velmoria::test
