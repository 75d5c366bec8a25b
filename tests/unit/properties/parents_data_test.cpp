#include "velmoria/properties/parents_data.h"

#include <gtest/gtest.h>

#include "tests/support/sample_design.h"
#include "tests/support/scoped_apartment.h"
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
namespace {

class ParentsTest : public testing::Test {
 protected:
  ParentsTest() {
    const SampleDesign design;
    const auto shop = Framework().Databases()->Item("Shop");
    all_.Server = design.Sales->Data();
    all_.Class = design.Order->Data();
    all_.Action = design.Order->Actions()->Item("Get")->Data();
    all_.Source = design.Order->Actions()->Item("Get")->Sources()->Item()->Data();
    const auto lines = design.Order->Relationships()->SetupItem({.Name = "Lines"});
    all_.Relationship = lines->Data();
    all_.Link = lines->Links()->SetupItem({.Name = "Id"})->Data();
    all_.Database = shop->Data();
    all_.Connector = shop->Connectors()->Item(engODBC)->Data();
    all_.KeyFormat = Framework().CreateKeyFormat({.Name = "Keys"})->Data();
  }

  ScopedApartment apartment_;
  Parents all_;
};

TEST_F(ParentsTest, TakesWhatIsGivenIntoFreeSlots) {
  Parents parents;
  EXPECT_TRUE(parents.IsEmpty());
  EXPECT_FALSE(parents.Take(all_));
  EXPECT_EQ(parents.Server, all_.Server);
  EXPECT_EQ(parents.KeyFormat, all_.KeyFormat);
  EXPECT_FALSE(parents.IsEmpty());
}

TEST_F(ParentsTest, FirstFilledSlotInOrderIsTheConflict) {
  struct Expected {
    bool ParentSlots::* Slot;
    zErrors Number;
    const char* Name;
  };
  constexpr Expected kOrder[] = {{&ParentSlots::Server, errParent_Server, "Sales"},
                                 {&ParentSlots::Class, errParent_Class, "Order"},
                                 {&ParentSlots::Action, errParent_Action, "Get"},
                                 {&ParentSlots::Source, errParent_Source, "Generic ODBC"},
                                 {&ParentSlots::Relationship, errParent_Relationship, "Lines"},
                                 {&ParentSlots::Link, errParent_Link, "Link: 'Id'"},
                                 {&ParentSlots::Database, errParent_Database, "Shop"},
                                 {&ParentSlots::Connector, errParent_Connector, "Generic ODBC"},
                                 {&ParentSlots::KeyFormat, errParent_KeyFormat, "Keys"}};
  Parents parents = all_;
  for (const auto& expected : kOrder) {
    const auto conflict = parents.Take(all_);
    ASSERT_TRUE(conflict);
    EXPECT_EQ(conflict->Number, expected.Number);
    EXPECT_EQ(conflict->Name, expected.Name);
    ParentSlots slot;
    slot.*expected.Slot = true;
    parents.Clear(slot);
  }
  EXPECT_FALSE(parents.Take(all_));
}

TEST_F(ParentsTest, ConflictTakesNothing) {
  Parents parents;
  parents.KeyFormat = all_.KeyFormat;
  EXPECT_TRUE(parents.Take(all_));
  EXPECT_FALSE(parents.Server);
}

TEST_F(ParentsTest, TakenInTurnWhatCameBeforeTheConflictStays) {
  Parents parents;
  parents.Class = all_.Class;
  const auto conflict = parents.TakeInTurn(all_);
  ASSERT_TRUE(conflict);
  EXPECT_EQ(conflict->Number, errParent_Class);
  EXPECT_EQ(parents.Server, all_.Server);
  EXPECT_FALSE(parents.Action);
}

TEST_F(ParentsTest, ClearEmptiesTheSlotsNamed) {
  Parents parents = all_;
  parents.Clear({.Server = true, .Database = true});
  EXPECT_FALSE(parents.Server);
  EXPECT_FALSE(parents.Database);
  EXPECT_TRUE(parents.Class);
  parents.Clear(ParentSlots::All());
  EXPECT_TRUE(parents.IsEmpty());
}

}  // namespace
}  // namespace velmoria::test
