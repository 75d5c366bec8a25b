#include "velmoria/design/design_object.h"

#include <string>

#include <gtest/gtest.h>

#include "tests/support/design_kinds.h"
#include "tests/support/expect_raised.h"
#include "tests/support/scoped_apartment.h"
#include "velmoria/properties/properties.h"

namespace velmoria::test {
namespace {

class DesignObjectTest : public testing::Test {
 protected:
  ScopedApartment apartment_;
};

TEST_F(DesignObjectTest, TwoListsOverOneDefinitionDriftApart) {
  const auto object = MakeDesign<ClassKind>({.Name = "Order"});
  const auto other = Make<Class>();
  other->Bind(object->Data(), Parents());
  EXPECT_EQ(other->Actions()->Count(), 0);
  object->Actions()->SetupItem({.Name = "Get"});
  EXPECT_EQ(object->Actions()->Count(), 1);
  EXPECT_EQ(other->Actions()->Count(), 0);
}

TEST_F(DesignObjectTest, AListBuiltLaterSeesTheDefinitionsOfOthers) {
  const auto object = MakeDesign<ClassKind>({.Name = "Order"});
  object->Actions()->SetupItem({.Name = "Get"});
  const auto other = Make<Class>();
  other->Bind(object->Data(), Parents());
  EXPECT_EQ(other->Actions()->Item("Get")->Data(), object->Actions()->Item("Get")->Data());
  EXPECT_NE(other->Actions()->Item("Get"), object->Actions()->Item("Get"));
}

// How an index that is not found is shown.

struct ShownIndex {
  Variant Index;
  const char* Text;
};

TEST_F(DesignObjectTest, AnIndexIsShownByItsType) {
  const ShownIndex rows[] = {
      {"x", "Index: 'x'"},
      {std::int16_t{7}, "Index: 7"},
      {std::int32_t{7}, "Index: 7"},
      {7.5, "Index: 7.5"},
      {Decimal(7), "Index: 7"},
      {Byte{7}, "Index: 7"},
      {7.5F, "Index: (Single)"},
      {Currency{}, "Index: (Currency)"},
      {Date::From(1998, 6, 1), "Index: (Date)"},
      {true, "Index: (Boolean)"},
      {Variant(), "Index: (Empty)"},
      {Variant::Null(), "Index: (Null)"},
      {Variant(ServerPtr()), "Index: (Nothing)"},
      {Variant::Missing(), "Index: (Error)"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.Text);
    ExpectRaised(zErrors{15061}, [&] { Make<Class>()->Actions()->Item(row.Index); }, {.Text = row.Text, .Count = 1});
  }
}

TEST_F(DesignObjectTest, MembersAreFoundInAnyCaseAndByPosition) {
  const auto actions = Make<Class>()->Actions();
  const auto get = actions->SetupItem({.Name = "Get"});
  EXPECT_EQ(actions->Item("gET"), get);
  EXPECT_EQ(actions->Item(1), get);
}

TEST_F(DesignObjectTest, NamesThatDifferOnlyInCaseAreDuplicates) {
  const auto actions = Make<Class>()->Actions();
  actions->SetupItem({.Name = "Get"});
  ExpectRaised(zErrors{15003}, [&] { actions->Add(MakeDesign<ActionKind>({.Name = "GET"})); }, {.Text = "Name: 'GET'"});
}

TEST_F(DesignObjectTest, RenameToTheSameNameInAnotherCaseFails) {
  const auto actions = Make<Class>()->Actions();
  actions->SetupItem({.Name = "a"});
  ExpectRaised(zErrors{15147}, [&] { actions->RenameItem("a", "A"); }, {.Text = "Name: 'a'  NewName: 'A'"});
  EXPECT_EQ(actions->Item(1)->Name(), "a");
}

TEST_F(DesignObjectTest, PositionsOfEngineCollectionsAreEngines) {
  const auto sources = Make<Action>()->Sources();
  sources->SetupItem({.Engine = engOracle, .SourceType = stTable});
  sources->SetupItem({.Engine = engODBC, .SourceType = stTable}, {.Before = static_cast<std::int32_t>(engOracle)});
  EXPECT_EQ((*sources->begin())->Engine(), engODBC);
  ExpectRaised(zErrors{15017}, [&] { sources->SetupItem({.Engine = engSybase, .SourceType = stTable}, {.Before = 1}); },
               {.Text = "Engine: '4'  Before: '1'"});
}

TEST_F(DesignObjectTest, EmptyPositionsAreShownAsEmpty) {
  const auto actions = Make<Class>()->Actions();
  actions->SetupItem({.Name = "Get"});
  ExpectRaised(zErrors{15003}, [&] { actions->SetupItem({.Name = "Get"}, {.Before = Variant()}); },
               {.Text = "Before: '(Empty)'  After: '(Missing)'"});
}

TEST_F(DesignObjectTest, APlaceThatIsNoIndexIsShownByItsType) {
  const auto actions = Make<Class>()->Actions();
  ExpectRaised(zErrors{15003}, [&] { actions->SetupItem({.Name = "Get"}, {.Before = Variant::Null()}); },
               {.Text = "Before: '(Null)'"});
}

// Dirty.

TEST_F(DesignObjectTest, UntouchedChildrenLeaveTheParentClean) {
  EXPECT_FALSE(Make<Server>()->Dirty());
  EXPECT_FALSE(Make<Class>()->Dirty());
  EXPECT_FALSE(Make<Database>()->Dirty());
}

TEST_F(DesignObjectTest, AMemberThatCameOrWentMakesTheParentDirty) {
  const auto object = Make<Class>();
  EXPECT_EQ(object->Actions()->Count(), 0);
  EXPECT_FALSE(object->Dirty());
  object->Actions()->Add(Make<Action>());
  EXPECT_TRUE(object->Dirty());
}

TEST_F(DesignObjectTest, RegisteredListsBearNoStampOfTheirOwn) {
  const auto servers = ServerSample::Bound();
  servers->Add(Make<Server>());
  EXPECT_FALSE(servers->Data()->Dirty());
}

}  // namespace
}  // namespace velmoria::test
