#include "tests/scenario/foreign_schema.h"
#include "tests/support/expect_raised.h"

namespace velmoria::test {
namespace {

/// gate_log has no key: its class takes badge and Gate for one, which two rows share.
class ForeignKeylessTest : public ForeignSchemaTest {
 protected:
  std::string Log() { return Works("select ifnull(badge, '-') || ' ' || ifnull(Gate, '-') from gate_log"); }
  /// A class over the same table whose identity is the columns given.
  ClassPtr AddPassages(const char* name, const std::vector<PropertyFields>& key) const {
    return ForeignSchema::AddClass(schema_.People, name, key, "gate_log");
  }
};

TEST_F(ForeignKeylessTest, CollectionHasEveryRowAndTheFirstAnswersForAKeyThatTwoShare) {
  const auto passages = All("Passage");
  ASSERT_EQ(passages->Count(), 5);
  EXPECT_EQ(passages->Item("1north"), passages->Item(1));
  EXPECT_EQ(passages->Item(2)->Key(), "1north");
  EXPECT_NE(passages->Item(2), passages->Item(1));
}

TEST_F(ForeignKeylessTest, NullAddsNothingToAKey) {
  const auto passages = All("Passage");
  EXPECT_EQ(passages->Item(4)->Key(), "2");
  EXPECT_EQ(passages->Item(5)->Key(), "");
}

TEST_F(ForeignKeylessTest, SingleObjectIsReadWhereTheColumnsHappenToTellItApart) {
  const auto found = Framework{}.GetBusinessObject({.ClassName = "Passage", .KeyValue1 = 2, .KeyValue2 = "south"});
  EXPECT_EQ(Value(found, "Seen").AsText(), "2026-01-05 08:00:00");
  ExpectRaised(errMismatch_Count,
               [] { Framework{}.GetBusinessObject({.ClassName = "Passage", .KeyValue1 = 1, .KeyValue2 = "north"}); },
               {.Text = "Expected: 1  Found: 2"});
}

TEST_F(ForeignKeylessTest, ObjectWithANullInItsIdentityIsFoundAgainByIt) {
  const auto half = All("Passage")->Item(4);
  const auto again = Framework{}.GetBusinessObject({.Identifier = half->Identifier()});
  EXPECT_NE(again, half);
  EXPECT_EQ(Value(again, "badge"), Variant(2));
  EXPECT_TRUE(Value(again, "Gate").IsNull());
}

TEST_F(ForeignKeylessTest, KeyOfNullsFindsTheRowThatHasThem) {
  const auto found = Framework{}.GetBusinessObject(
      {.ClassName = "Passage", .KeyValue1 = Variant::Null(), .KeyValue2 = Variant::Null()});
  EXPECT_EQ(Value(found, "Seen").AsText(), "2026-01-05 09:00:00");
  ExpectRaised(errBusinessObject_Get,
               [] { Framework{}.GetBusinessObject({.ClassName = "Passage", .KeyValue1 = Variant::Null()}); });
}

TEST_F(ForeignKeylessTest, UpdateWritesEveryRowThatHasTheSameValues) {
  const auto passages = All("Passage");
  passages->Item(1)->FindProperty("Gate")->SetValue("east");
  passages->Update();
  EXPECT_EQ(Log(), "1 east|1 east|2 south|2 -|- -");
  EXPECT_EQ(Value(passages->Item(2), "Gate"), Variant("north")) << "its twin in memory has heard nothing";
}

TEST_F(ForeignKeylessTest, UpdateOfTheTwinThenFindsNoRowAndRaisesNothing) {
  const auto passages = All("Passage");
  passages->Item(1)->FindProperty("Gate")->SetValue("east");
  passages->Item(2)->FindProperty("Gate")->SetValue("west");
  passages->Update();
  EXPECT_EQ(Log(), "1 east|1 east|2 south|2 -|- -");
  EXPECT_FALSE(passages->Dirty());
}

TEST_F(ForeignKeylessTest, RowIsFoundByTheNullsOfItsKeyToo) {
  const auto passages = All("Passage");
  passages->Item(4)->FindProperty("Gate")->SetValue("west");
  passages->Item(5)->FindProperty("badge")->SetValue(9);
  passages->Update();
  EXPECT_EQ(Log(), "1 north|1 north|2 south|2 west|9 -");
}

TEST_F(ForeignKeylessTest, DeleteTakesEveryRowThatHasTheSameValues) {
  const auto passages = All("Passage");
  passages->Item(1)->Delete();
  passages->Update();
  EXPECT_EQ(Log(), "2 south|2 -|- -");
  EXPECT_EQ(passages->Item(1)->StateFlags(), sfdeleted);
  EXPECT_EQ(passages->Item(2)->StateFlags(), sfpersistent);
}

TEST_F(ForeignKeylessTest, DeleteOfRowsThatAreGoneAlreadyRaisesNothing) {
  const auto passages = All("Passage");
  passages->Item(1)->Delete();
  passages->Item(2)->Delete();
  passages->Item(4)->Delete();
  passages->Update();
  EXPECT_EQ(Log(), "2 south|- -");
  EXPECT_EQ(passages->Item(2)->StateFlags(), sfdeleted);
}

TEST_F(ForeignKeylessTest, InsertNeedsNoKey) {
  const auto passage = Framework{}.CreateBusinessObject({.ClassName = "Passage"});
  passage->FindProperty("Gate")->SetValue("west");
  passage->Update();
  EXPECT_EQ(Log(), "1 north|1 north|2 south|2 -|- -|- west");
  passage->FindProperty("badge")->SetValue(7);
  passage->Update();
  EXPECT_EQ(Log(), "1 north|1 north|2 south|2 -|- -|7 west");
}

TEST_F(ForeignKeylessTest, IdentityOfAllColumnsWritesOneRowUnlessAllAreEqual) {
  AddPassages("Sighting", {{.Name = "badge", .DataType = dtLongInteger},
                           {.Name = "Gate", .DataType = dtString},
                           {.Name = "Seen", .DataType = dtDate}});
  const auto sightings = All("Sighting");
  sightings->Item(2)->FindProperty("Gate")->SetValue("east");
  sightings->Update();
  EXPECT_EQ(Log(), "1 north|1 east|2 south|2 -|- -");
}

TEST_F(ForeignKeylessTest, ColumnsOfAnIdentityCountAsItsKeyWithoutAnyFlag) {
  const ClassPtr unflagged = AddPassages("Unflagged", {{.Name = "badge", .DataType = dtLongInteger}});
  unflagged->Properties()->Item("badge")->SetFlags(pfNone);
  const auto found = Framework{}.GetBusinessObjects({.ClassName = "Unflagged"});
  found->Item(3)->FindProperty("Gate")->SetValue("west");
  found->Update();
  EXPECT_EQ(Log(), "1 north|1 north|2 west|2 west|- -");
  schema_.Works.Run("delete from gate_log where badge = 2 and Seen is null");
  const auto single = Framework{}.GetBusinessObject({.ClassName = "Unflagged", .KeyValue1 = 2});
  single->Delete();
  single->Update();
  EXPECT_EQ(Log(), "1 north|1 north|- -");
}

TEST_F(ForeignKeylessTest, ClassWithoutAnyIdentityIsRefusedByEveryOperation) {
  const ClassPtr nameless = AddPassages("Nameless", {});
  ForeignSchema::AddAction(nameless, "Clear", "delete from gate_log", {}, stSQL);
  const RaisedExpectation expected{.Text = "Class: 'Nameless'"};
  ExpectRaised(errRequires_Identifier, [] { Framework{}.GetBusinessObjects({.ClassName = "Nameless"}); }, expected);
  ExpectRaised(
      errRequires_Identifier, [] { Framework{}.GetBusinessObject({.ClassName = "Nameless", .KeyValue1 = 1}); },
      expected);
  ExpectRaised(errRequires_Identifier, [] { Framework{}.CreateBusinessObject({.ClassName = "Nameless"}); }, expected);
  ExpectRaised(
      errRequires_Identifier,
      [] {
        Framework{}
            .CreateBusinessContext({.ClassName = "Nameless"})
            ->Execute({.ClassName = "Nameless", .ActionName = "Clear"});
      },
      expected);
  EXPECT_EQ(Log(), "1 north|1 north|2 south|2 -|- -");
}

TEST_F(ForeignKeylessTest, IdentityWhoseColumnTheTableLacksIsMissedWithTheFirstObject) {
  AddPassages("Misnamed", {{.Name = "Ticket", .DataType = dtLongInteger}});
  const auto passages = Framework{}.GetBusinessObjects({.ClassName = "Misnamed"});
  EXPECT_EQ(passages->Count(), 5);
  ExpectRaised(errIdentifier_Property, [&] { passages->Item(1); }, {.Text = "Class: 'Misnamed'"});
}

}  // namespace
}  // namespace velmoria::test
