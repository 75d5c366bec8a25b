#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "tests/support/sample_rows.h"
#include "tests/support/scoped_apartment.h"
#include "velmoria/properties/properties_impl.h"
#include "velmoria/properties/property_data.h"
#include "velmoria/velmoria.h"

namespace velmoria::test {
namespace {

class PropertiesStateTest : public testing::Test {
 protected:
  static PropertiesPtr Transient() { return Framework().CreateProperties(); }

  ScopedApartment apartment_;
};

TEST_F(PropertiesStateTest, ModifiableAsksAllOrOne) {
  const auto properties = Transient();
  properties->SetupItem({.Name = "A"});
  EXPECT_TRUE(properties->Modifiable(true));
  EXPECT_TRUE(properties->Modifiable(false));
  properties->SetupItem({.Name = "B", .Modifiable = false});
  EXPECT_FALSE(properties->Modifiable(true));
  EXPECT_TRUE(properties->Modifiable(false));
  properties->Remove("A");
  EXPECT_FALSE(properties->Modifiable(true));
  EXPECT_FALSE(properties->Modifiable(false));
}

TEST_F(PropertiesStateTest, AnEmptyCollectionAnswersModifiableWithTheQuestion) {
  EXPECT_FALSE(Transient()->Modifiable(false));
  EXPECT_TRUE(Transient()->Modifiable(true));
}

TEST_F(PropertiesStateTest, RowIsModifiableAsItsDefinitionsAre) {
  const SampleRows rows;
  EXPECT_TRUE(rows.Row(0)->Modifiable());
  rows.Row(1)->Item("Name")->SetModifiable(false);
  EXPECT_FALSE(rows.Row(0)->Modifiable());
  EXPECT_TRUE(rows.Row(0)->Modifiable(false));
}

TEST_F(PropertiesStateTest, EmptyValuesNeedsEveryMemberEmpty) {
  const auto properties = Transient();
  EXPECT_TRUE(properties->EmptyValues());
  properties->SetupItem({.Name = "A"});
  EXPECT_TRUE(properties->EmptyValues());
  properties->SetupItem({.Name = "B", .Value = 1});
  EXPECT_FALSE(properties->EmptyValues());
}

TEST_F(PropertiesStateTest, RequiresValuesWhenAMemberDoes) {
  const auto properties = Transient();
  properties->SetupItem({.Name = "A"});
  EXPECT_FALSE(properties->RequiresValues());
  const auto required = properties->SetupItem({.Name = "B", .Flags = pfInput | pfRequired});
  EXPECT_TRUE(properties->RequiresValues());
  required->SetValue(1);
  EXPECT_FALSE(properties->RequiresValues());
}

TEST_F(PropertiesStateTest, FreeDirtyAndDirtyValuesAreTwoQuestions) {
  const auto properties = Transient();
  properties->SetupItem({.Name = "A"});
  properties->ClearDirty();
  EXPECT_FALSE(properties->Dirty());
  properties->Item("A")->SetCaption("c");
  EXPECT_TRUE(properties->Dirty());
  EXPECT_FALSE(properties->DirtyValues());
  properties->ClearDirty();
  properties->Item("A")->SetValue(1);
  EXPECT_TRUE(properties->DirtyValues());
}

TEST_F(PropertiesStateTest, BoundDirtyIsThatOfTheRow) {
  const SampleRows rows;
  const auto row = rows.Row(0);
  row->Item("Name")->SetCaption("c");
  EXPECT_FALSE(row->Dirty());
  row->Item("Name")->SetValue("Eve");
  EXPECT_TRUE(row->Dirty());
  EXPECT_TRUE(row->DirtyValues());
  EXPECT_FALSE(rows.Row(1)->Dirty());
}

TEST_F(PropertiesStateTest, BoundNamesComeFromTheRow) {
  const SampleRows rows(efUpdate);
  const auto row = rows.Row(0);
  EXPECT_EQ(row->Name(), "Get");
  EXPECT_EQ(rows.Rows->GetPersistentProperties(0, "Key")->Name(), "Key");
  EXPECT_EQ(row->ServerName(), "Sales");
  EXPECT_EQ(row->ClassName(), "Order");
  EXPECT_EQ(row->ActionName(), "Get");
  EXPECT_EQ(row->DatabaseName(), "");
  EXPECT_EQ(row->Engine(), engODBC);
  EXPECT_EQ(row->EngineName(), "Generic ODBC");
  EXPECT_EQ(row->EditFlags(), efUpdate);
  EXPECT_EQ(row->EditFlagsDisplay(), "Update");
}

TEST_F(PropertiesStateTest, APropertiesNameOfTheActionIsConsultedByNothing) {
  const SampleRows rows;
  rows.Action->SetPropertiesName("Row");
  EXPECT_EQ(rows.Row(0)->Name(), "Get");
}

TEST_F(PropertiesStateTest, FreeEditFlagsAreTheOrOfTheMembers) {
  const SampleRows rows(efUpdate | efInsert);
  const auto properties = Transient();
  properties->SetupItem({.Name = "A"});
  EXPECT_EQ(properties->EditFlags(), efNone);
  EXPECT_EQ(properties->EditFlagsDisplay(), "(None)");
  properties->Add(rows.Row(0)->Item("Id")->Copy());
  rows.Action->SetEditFlags(efDelete);
  properties->Add(rows.Row(0)->Item("Name")->Copy());
  EXPECT_EQ(properties->EditFlags(), efUpdate | efInsert | efDelete);
}

TEST_F(PropertiesStateTest, ARowIsEmptyOnlyWhenAllItsColumnsAre) {
  const SampleRows rows;
  EXPECT_FALSE(rows.Row(0)->EmptyValues());
  EXPECT_TRUE(rows.NewRow()->EmptyValues());
}

TEST_F(PropertiesStateTest, ClearDirtyLeavesRowsAndUnaskedMembersAlone) {
  const SampleRows rows;
  const auto row = rows.Row(0);
  row->Item("Name")->SetValue("Eve");
  row->ClearDirty();
  EXPECT_TRUE(row->DirtyValues());
  auto data = Make<PropertiesData>();
  data->SetupItem(psUser, {.Name = "A"});
  const auto unasked = Make<Properties>();
  unasked->Bind({.Style = psUser, .PropertiesData = data});
  unasked->ClearDirty();
  EXPECT_TRUE(data->Item("A")->Dirty());
}

// Details

class PropertiesDetailsTest : public PropertiesStateTest {
 protected:
  static PropertiesPtr WithMembers(zPropertyStyles style) {
    auto data = Make<PropertiesData>();
    data->SetupItem(style, {.Name = "A", .Value = 1, .DataType = dtLongInteger});
    data->SetupItem(style, {.Name = "B", .Value = "x", .DataType = dtString});
    auto properties = Make<Properties>();
    properties->Bind({.Style = style, .PropertiesData = data});
    return properties;
  }
};

TEST_F(PropertiesDetailsTest, FirstLineTellsTheStyle) {
  struct Expected {
    zPropertyStyles Style;
    const char* Line;
  };
  constexpr Expected kLines[] = {
      {psNone, "Properties Count 2"},
      {psUser, "User Properties Count 2"},
      {psDefinition, "Properties Count 2"},
      {psLinkProperty, "Properties Count 2"},
      {psLinkParameter, "Properties Count 2"},
      {psCached, "Properties Count 2"},
      {psPersistent, "Persistent Properties Count 2 built using "},
  };
  for (const auto& expected : kLines) {
    const auto details = WithMembers(expected.Style)->Details();
    EXPECT_EQ(details.substr(0, details.find("\r\n")), expected.Line) << static_cast<int>(expected.Style);
  }
}

TEST_F(PropertiesDetailsTest, MembersFollowIndented) {
  const auto properties = WithMembers(psUser);
  EXPECT_EQ(properties->Details(), "User Properties Count 2\r\n    " + properties->Item("A")->Details() + "\r\n    " +
                                       properties->Item("B")->Details());
  EXPECT_EQ(Transient()->Details(), "Properties Count 0");
}

TEST_F(PropertiesDetailsTest, IdentifierAndParameterTellEngineAndOwner) {
  const SampleDesign design;
  const auto identifiers = design.Line->Properties();
  EXPECT_EQ(identifiers->Details(),
            "Identifier Definition Properties Count 2 for '(Unknown)' Source of 'Line'\r\n    " +
                identifiers->Item(1)->Details() + "\r\n    " + identifiers->Item(2)->Details());
  const auto parameters = design.Order->Actions()->Item("Get")->Sources()->Item()->Parameters();
  EXPECT_EQ(parameters->Details(), "Parameter Definition Properties Count 0 for 'Generic ODBC' Source of 'Get'");
}

TEST_F(PropertiesDetailsTest, DetailsOfARowTellItsAction) {
  const SampleRows rows;
  EXPECT_TRUE(rows.Row(0)->Details().starts_with("Persistent Properties Count 7 built using " + rows.Action->Details() +
                                                 "\r\n    Property: 'Id'  Value: 1"));
}

TEST_F(PropertiesDetailsTest, RecordNothingWhenAMemberCannotBeShown) {
  const auto properties = Transient();
  properties->SetupItem({.Name = "A", .Value = "abc"})->SetDataType(dtLongInteger);
  const auto error = Thrown([&] { static_cast<void>(properties->Details()); });
  ASSERT_TRUE(error);
  EXPECT_EQ(Framework().Messages()->Count(), 1);
  EXPECT_EQ(Framework().Messages()->Item(1)->RoutineName(), "Details (Get)");
}

}  // namespace
}  // namespace velmoria::test
