#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "tests/support/sample_rows.h"
#include "tests/support/scoped_apartment.h"
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
#include "velmoria/properties/properties_impl.h"
#include "velmoria/velmoria.h"

namespace velmoria::test {
namespace {

class PropertiesBindingTest : public testing::Test {
 protected:
  PropertiesBindingTest() : all_(EveryParent(rows_.Design)), given_(Make<PropertiesData>()) {
    given_->SetupItem(psUser, {.Name = "Given"});
  }
  PropertiesPtr Bound(zPropertyStyles style, const std::string& name = "N") const {
    auto properties = Make<Properties>();
    properties->Bind({.Style = style, .PropertiesData = given_, .Parents = all_, .Name = name});
    return properties;
  }
  PropertiesPtr BoundWith(zPropertyStyles style, const Parents& parents) const {
    auto properties = Make<Properties>();
    properties->Bind({.Style = style, .PropertiesData = given_, .Parents = parents});
    return properties;
  }

  ScopedApartment apartment_;
  SampleRows rows_{efDelete};
  Parents all_;
  PropertiesDataPtr given_;
};

// Each slot as a letter, in the order in which a conflict is looked for.
std::string FilledSlots(const PropertiesPtr& properties, const Parents& all) {
  std::string filled;
  const auto probe = [&](auto slot, char letter) {
    Parents one;
    one.*slot = all.*slot;
    if (Thrown([&] { properties->SetParents(psNone, one); })) filled += letter;
    Framework().Messages()->Clear();
  };
  probe(&Parents::Server, 'S');
  probe(&Parents::Class, 'C');
  probe(&Parents::Action, 'A');
  probe(&Parents::Source, 'O');
  probe(&Parents::Relationship, 'R');
  probe(&Parents::Link, 'L');
  probe(&Parents::Database, 'D');
  probe(&Parents::Connector, 'N');
  probe(&Parents::KeyFormat, 'K');
  return filled;
}

struct StyleRow {
  const char* Name;
  zPropertyStyles Style;
  const char* Slots;
  const char* Members;  // "" for none
};

constexpr StyleRow kStyles[] = {
    {"None", psNone, "SCAORLDNK", "Given"},
    {"Identifier", psIdentifier, "SCA", "Id"},
    {"Parameter", psParameter, "SCAO", "Asked"},
    {"NonPersistent", psNonPersistent, "A", ""},
    {"Persistent", psPersistent, "A", "Given"},
    {"User", psUser, "SCAORLDNK", "Given"},
    {"Definition", psDefinition, "A", "Given"},
    {"LinkProperty", psLinkProperty, "SCAORLDNK", "Given"},
    {"LinkParameter", psLinkParameter, "SCAORLDNK", "Given"},
    {"Cached", psCached, "SCAORLDNK", "Given"},
};

class PropertiesStyleTest : public PropertiesBindingTest, public testing::WithParamInterface<StyleRow> {};

INSTANTIATE_TEST_SUITE_P(Table, PropertiesStyleTest, testing::ValuesIn(kStyles),
                         [](const auto& each) { return each.param.Name; });

TEST_P(PropertiesStyleTest, TakesItsOwnParents) {
  const auto properties = Bound(GetParam().Style);
  EXPECT_EQ(properties->Style(), GetParam().Style);
  EXPECT_EQ(properties->Name(), "N");
  EXPECT_EQ(FilledSlots(properties, all_), GetParam().Slots);
}

TEST_P(PropertiesStyleTest, MakesTheMembersOfItsDefinition) {
  all_.Source->ParametersData()->SetupItem(psParameter, {.Name = "Asked"});
  const auto properties = Bound(GetParam().Style);
  std::string names;
  for (const auto& item : *properties) names += item->Name();
  EXPECT_EQ(names, GetParam().Members);
  EXPECT_EQ(static_cast<bool>(properties->Data()), !names.empty());
}

TEST_P(PropertiesStyleTest, IsTransientWithoutADefinition) {
  const auto properties = Make<Properties>();
  properties->Bind({.Style = GetParam().Style});
  EXPECT_EQ(properties->Count(), 0);
  properties->SetupItem({.Name = "A"});
  ExpectRaised(errNotSupported_Rename, [&] { properties->RenameItem("A", "B"); });
}

TEST_P(PropertiesStyleTest, OnlyAPersistentOneTakesTheNameOfTheActionForNone) {
  EXPECT_EQ(Bound(GetParam().Style, "")->Name(), GetParam().Style == psPersistent ? "Get" : "");
}

TEST_P(PropertiesStyleTest, OnlyPersistentAndCachedRefuseLocked) {
  for (const bool value : {true, false}) {
    const auto properties = Bound(GetParam().Style);
    if (GetParam().Style == psPersistent || GetParam().Style == psCached) {
      ExpectRaised(errVelmoria_Locked, [&] { properties->SetLocked(value); }, {.Text = "Properties.Locked (Let)"});
    } else {
      properties->SetLocked(value);
      EXPECT_EQ(properties->Locked(), value);
    }
  }
}

TEST_P(PropertiesStyleTest, MembersMadeHereHaveItsStyleAndItsParents) {
  const auto properties = Bound(GetParam().Style);
  const auto member = properties->SetupItem({.Name = "Made"});
  EXPECT_EQ(member->Data()->Style(), GetParam().Style);
  const bool hasServer = std::string(GetParam().Slots).starts_with("S");
  EXPECT_EQ(member->ServerName(), hasServer ? "Sales" : "");
  EXPECT_EQ(member->ActionName(), "Get");
}

TEST_P(PropertiesStyleTest, OnlyAParameterHasTheEngineOfTheSource) {
  const auto properties = Make<Properties>();
  properties->Setup("N", false, true, true, engSybase);
  properties->Bind({.Style = GetParam().Style, .Parents = all_});
  EXPECT_EQ(properties->Engine(), GetParam().Style == psParameter ? engODBC : engSybase);
  EXPECT_EQ(properties->EngineName(), GetParam().Style == psParameter ? "Generic ODBC" : "Sybase SQL Server");
}

TEST_F(PropertiesBindingTest, MembersAreMadeOnceAndNotBeforeTheyAreAskedFor) {
  const auto properties = Bound(psUser);
  given_->SetupItem(psUser, {.Name = "Early"});
  EXPECT_EQ(properties->Count(), 2);
  given_->SetupItem(psUser, {.Name = "Late"});
  EXPECT_EQ(properties->Count(), 2);
}

TEST_F(PropertiesBindingTest, ParameterWithoutASourceHasItsOwnEngine) {
  const auto properties = Make<Properties>();
  properties->Setup("N", false, true, true, engSybase);
  properties->Bind({.Style = psParameter});
  EXPECT_EQ(properties->Engine(), engSybase);
  EXPECT_EQ(properties->SetupItem({.Name = "A"})->Engine(), engSybase);
}

TEST_F(PropertiesBindingTest, NamesAreThoseOfTheParents) {
  const auto properties = Bound(psUser);
  EXPECT_EQ(properties->ServerName(), "Sales");
  EXPECT_EQ(properties->ClassName(), "Order");
  EXPECT_EQ(properties->ActionName(), "Get");
  EXPECT_EQ(properties->RelationshipName(), "Lines");
  EXPECT_EQ(properties->LinkName(), "Id");
  EXPECT_EQ(properties->DatabaseName(), "Shop");
}

TEST_F(PropertiesBindingTest, NamesAreEmptyWithoutParents) {
  const auto properties = Make<Properties>();
  for (const auto& name :
       {properties->ServerName(), properties->ClassName(), properties->ActionName(), properties->RelationshipName(),
        properties->LinkName(), properties->DatabaseName(), properties->Name()}) {
    EXPECT_EQ(name, "");
  }
}

TEST_F(PropertiesBindingTest, NamesOfParentsGoBeforeThoseOfTheRow) {
  Parents parents;
  parents.Server = rows_.Design.Stock->Data();
  parents.Class = rows_.Design.Item->Data();
  parents.Action = rows_.Design.Order->Actions()->Item("All")->Data();
  const auto row = rows_.Row(0);
  row->SetParents(psNone, parents);
  EXPECT_EQ(row->ServerName(), "Stock");
  EXPECT_EQ(row->ClassName(), "Item");
  EXPECT_EQ(row->ActionName(), "All");
}

TEST_F(PropertiesBindingTest, KeptActionNameShowsWhenThereIsNoActionLeft) {
  const auto properties = Bound(psDefinition);
  properties->SetActionName("Kept");
  EXPECT_EQ(properties->ActionName(), "Get");
  properties->ClearParents(psNone, {.Action = true});
  EXPECT_EQ(properties->ActionName(), "Kept");
}

TEST_F(PropertiesBindingTest, EditFlagsAreThoseOfTheActionBeforeThoseOfTheMembers) {
  all_.Action = Framework().CreateAction({.Name = "Edit", .EditFlags = efInsert | efUpdate})->Data();
  const auto properties = BoundWith(psDefinition, all_);
  properties->AddShared(rows_.Row(0)->Item("Id"));
  EXPECT_EQ(properties->EditFlags(), efInsert | efUpdate);
  EXPECT_EQ(properties->EditFlagsDisplay(), EditFlagsDisplay(efInsert | efUpdate));
  properties->ClearParents(psNone, {.Action = true});
  EXPECT_EQ(properties->EditFlags(), efDelete);
}

// SetParents and ClearParents

TEST_F(PropertiesBindingTest, AParentIsGivenOnceAndTheFirstOneThatIsThereIsRefused) {
  const auto properties = Bound(psUser);
  for (const auto& row : kParentConflicts) {
    ExpectRaised(row.Number, [&] { properties->SetParents(psNone, all_); },
                 {.Text = std::string("'") + row.Name + "'", .Count = 1});
    properties->ClearParents(psNone, SlotOf(row));
  }
  properties->SetParents(psNone, all_);
  EXPECT_EQ(FilledSlots(properties, all_), "SCAORLDNK");
}

TEST_F(PropertiesBindingTest, RefusedParentsLeaveTheCollectionAsItWas) {
  Parents server;
  server.Server = all_.Server;
  const auto properties = BoundWith(psUser, server);
  ExpectRaised(errParent_Server, [&] { properties->SetParents(psDefinition, all_); });
  EXPECT_EQ(properties->ClassName(), "");
  EXPECT_EQ(properties->Style(), psUser);
}

TEST_F(PropertiesBindingTest, ParentsAndStyleReachTheMembersThatAreThere) {
  const auto properties = BoundWith(psUser, {});
  const auto member = properties->Item("Given");
  properties->SetParents(psDefinition, all_);
  EXPECT_EQ(properties->Style(), psDefinition);
  EXPECT_EQ(member->Data()->Style(), psDefinition);
  EXPECT_EQ(member->ClassName(), "Order");
  properties->ClearParents(psUser, {.Class = true});
  EXPECT_EQ(properties->Style(), psUser);
  EXPECT_EQ(member->Data()->Style(), psUser);
  EXPECT_EQ(member->ClassName(), "");
  EXPECT_EQ(member->ServerName(), "Sales");
}

TEST_F(PropertiesBindingTest, ParentsReachTheMembersThatAreMadeLater) {
  const auto properties = BoundWith(psUser, {});
  properties->SetParents(psNone, all_);
  EXPECT_EQ(properties->Item("Given")->ClassName(), "Order");
}

TEST_F(PropertiesBindingTest, ClearingParentsThatWereNeverGivenIsNothing) {
  const auto properties = Make<Properties>();
  properties->ClearParents(psUser, ParentSlots::All());
  EXPECT_EQ(properties->Style(), psUser);
  EXPECT_EQ(properties->Count(), 0);
}

// Setup

TEST_F(PropertiesBindingTest, SetupStoresWhatItIsGiven) {
  const auto properties = Make<Properties>();
  properties->Setup("N", true, false, false, engOracle);
  EXPECT_EQ(properties->Name(), "N");
  EXPECT_TRUE(properties->Locked());
  EXPECT_FALSE(properties->SupportsAdd());
  EXPECT_FALSE(properties->SupportsRemove());
  EXPECT_EQ(properties->Engine(), engOracle);
}

TEST_F(PropertiesBindingTest, SetupIsRefusedWhenLockedOrOnceTheMembersWereAskedFor) {
  const auto locked = Make<Properties>();
  locked->SetLocked(true);
  ExpectRaised(errVelmoria_Locked, [&] { locked->Setup("N", false, true, true); }, {.Text = "Properties.Setup"});
  const auto asked = Make<Properties>();
  EXPECT_EQ(asked->Count(), 0);
  ExpectRaised(errVelmoria_Locked, [&] { asked->Setup("N", false, true, true); }, {.Text = "Properties.Setup"});
  EXPECT_EQ(asked->Name(), "");
}

TEST_F(PropertiesBindingTest, SetupOfARowIsRefusedOnceItsMembersWereAskedFor) {
  const auto row = rows_.Row(0);
  row->Setup("N", false, true, true);
  EXPECT_EQ(row->Count(), 7);
  ExpectRaised(errVelmoria_Locked, [&] { row->Setup("M", false, true, true); }, {.Text = "Properties.Setup"});
  EXPECT_EQ(row->Name(), "N");
}

}  // namespace
}  // namespace velmoria::test
