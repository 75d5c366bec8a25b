#include "tests/scenario/foreign_schema.h"
#include "tests/support/expect_raised.h"

namespace velmoria::test {
namespace {

class ForeignWriteTest : public ForeignSchemaTest {
 protected:
  /// The columns of the link table, in the order of its key.
  std::string Crew() {
    return Works("select Land || badge || region || No || ifnull(':' || Part, '') from \"Order Crew\" order by 1");
  }
  static void Set(const IBusinessObjectPtr& object, const char* property, const Variant& value) {
    object->FindProperty(property)->SetValue(value);
  }
};

TEST_F(ForeignWriteTest, RowOfFourKeyColumnsIsChangedAndItsNeighboursAreNot) {
  const auto part = Staff("DE", 2)->BusinessObjects("Crew")->Item(1);
  Set(part, "Part", "lead");
  Set(part, "Hours", Variant::Null());
  part->Update();
  EXPECT_EQ(Crew(), "DE1N1:lead|DE2N1:lead|DE2S1:help|FR1N1:help");
  EXPECT_EQ(Works("select Hours from \"Order Crew\" where badge = 2 and region = 'N'"), "NULL");
  EXPECT_EQ(part->StateFlags(), sfpersistent);
}

TEST_F(ForeignWriteTest, RowOfThreeKeyColumnsIsFoundByItsDate) {
  const auto sheet = Staff("DE", 1)->BusinessObjects("Sheets")->Item(2);
  Set(sheet, "Hours", 12.25);
  sheet->Update();
  EXPECT_EQ(Works("select Hours from \"Time Sheet\" order by Land, badge, \"Week Ending\""), "40.0|12.25|38.5");
  sheet->Delete();
  sheet->Update();
  EXPECT_EQ(Works("select \"Week Ending\" from \"Time Sheet\" where badge = 1"), "2026-01-04");
}

TEST_F(ForeignWriteTest, OnePartOfAKeyIsChangedAndTheRowIsSoughtUnderTheOld) {
  const auto part = All("Order Crew")->Item(3);
  Set(part, "region", "N");
  Set(part, "No", 2);
  part->Update();
  EXPECT_EQ(Crew(), "DE1N1:lead|DE2N1|DE2N2:help|FR1N1:help");
  EXPECT_EQ(part->Key(), "DE2N2");
  Set(part, "Part", "lead");
  part->Update();
  EXPECT_EQ(Crew(), "DE1N1:lead|DE2N1|DE2N2:lead|FR1N1:help");
}

TEST_F(ForeignWriteTest, ManyToManyIsJoinedByANewObjectOfTheLinkTableAndPartedByItsDeletion) {
  const auto order = Order("N", 2);
  const auto crew = order->BusinessObjects("Crew");
  const auto part = crew->SetupItem();
  Set(part, "Land", "FR");
  Set(part, "badge", 2);
  Set(part, "region", "N");
  Set(part, "No", 2);
  order->GetModel()->Update(true);
  EXPECT_EQ(Works("select Land || badge from \"Order Crew\" where region = 'N' and No = 2"), "FR2");
  EXPECT_EQ(Values(Order("N", 2)->BusinessObjects("Staff"), "Nick"), "Dot;");
  part->Delete();
  order->GetModel()->Update(true);
  EXPECT_EQ(Order("N", 2)->BusinessObjects("Staff")->Count(), 0);
  EXPECT_EQ(Works("select count(*) from STAFF") + Works("select count(*) from \"Order\""), "63");
}

TEST_F(ForeignWriteTest, SecondObjectOfTheSameFourColumnsIsRefusedAndStaysNewToBeCorrected) {
  const auto part = Framework{}.CreateBusinessObject({.ClassName = "Order Crew"});
  Set(part, "Land", "FR");
  Set(part, "badge", 1);
  Set(part, "region", "N");
  Set(part, "No", 1);
  EXPECT_TRUE(Thrown([&] { part->Update(); }));
  EXPECT_NE(apartment_.Messages().Details().find("UNIQUE constraint failed"), std::string::npos);
  apartment_.Messages().Clear();
  Set(part, "No", 2);
  part->Update();
  EXPECT_EQ(Works("select No from \"Order Crew\" where Land = 'FR'"), "1|2");
}

TEST_F(ForeignWriteTest, ObjectsReachedThroughAStatementAreReadOnly) {
  const auto order = Staff("DE", 2)->BusinessObjects("Orders")->Item(1);
  Set(order, "Title", "Viaduct");
  EXPECT_TRUE(Thrown([&] { order->Update(); }));
  const MessagePtr refusal = apartment_.Messages().Item("15170");
  ASSERT_NE(refusal, nullptr);
  EXPECT_EQ(refusal->Replace1() + "/" + refusal->Replace2(), "Update/Get/Create BusinessObjects or Properties");
  EXPECT_EQ(Works("select Title from \"Order\" where region = 'N' and No = 1"), "Bridge");
}

struct UnquotedName {
  const char* Class;
  const char* Property;
  const char* Quoted;
  const char* Stored;
};

TEST_F(ForeignWriteTest, ColumnWhoseNameNeedsQuotesIsWrittenOnceItsSourceColumnQuotesIt) {
  const UnquotedName names[] = {
      {"Order", "Group", "[Group]", "select \"Group\" from \"Order\" where region = 'N' and No = 1"},
      {"Staff", "Full Name", "\"Full Name\"", "select \"Full Name\" from STAFF where Land = 'DE' and badge = 1"},
  };
  for (const auto& name : names) {
    const auto object = All(name.Class)->Item(1);
    Set(object, name.Property, "It's new");
    EXPECT_TRUE(Thrown([&] { object->Update(); })) << name.Property;
    EXPECT_NE(apartment_.Messages().Details().find("syntax error"), std::string::npos);
    apartment_.Messages().Clear();
    EXPECT_NE(Works(name.Stored), "It's new");
    object->FindProperty(name.Property)->SetSourceColumn(name.Quoted);
    object->Update();
    EXPECT_EQ(Works(name.Stored), "It's new");
  }
}

TEST_F(ForeignWriteTest, QuotedSourceColumnHoldsForEveryRowOfTheResultAndForNoOther) {
  const auto staff = All("Staff");
  staff->Item(1)->FindProperty("Full Name")->SetSourceColumn("[Full Name]");
  Set(staff->Item(5), "Full Name", "Eve Sol");
  staff->Update();
  EXPECT_EQ(Works("select \"Full Name\" from STAFF where badge = 3"), "Eve Sol");
  const auto other = Staff("FR", 3);
  Set(other, "Full Name", "Eve Moon");
  EXPECT_TRUE(Thrown([&] { other->Update(); }));
}

TEST_F(ForeignWriteTest, NullsAreWrittenIntoEveryColumnThatTakesThem) {
  const auto one = Staff("FR", 2);
  for (const char* column : {"Nick", "BossLand", "BossBadge", "Home"}) Set(one, column, Variant::Null());
  one->Update();
  EXPECT_EQ(Works("select Land from STAFF where Nick is null and BossLand is null and BossBadge is null "
                  "and Home is null"),
            "FR");
  Set(one, "Nick", "");
  one->Update();
  EXPECT_EQ(Works("select quote(Nick) from STAFF where Land = 'FR' and badge = 2"), "''");
}

TEST_F(ForeignWriteTest, KeyColumnThatTheDatabaseRefusesNullStaysAsItIs) {
  const auto order = Order("N", 2);
  EXPECT_TRUE(Thrown([&] {
    Set(order, "region", Variant::Null());
    order->Update();
  }));
  EXPECT_EQ(Works("select count(*) from \"Order\" where region = 'N' and No = 2"), "1");
}

TEST_F(ForeignWriteTest, ViewIsRefusedByTheDatabase) {
  const auto one = All("Crew List")->Item(2);
  Set(one, "Part", "lead");
  EXPECT_TRUE(Thrown([&] { one->Update(); }));
  EXPECT_NE(apartment_.Messages().Details().find("cannot modify Crew List because it is a view"), std::string::npos);
  EXPECT_TRUE(one->Dirty());
}

TEST_F(ForeignWriteTest, ViewIsWrittenWhereATriggerOfTheDatabaseWritesForIt) {
  schema_.Works.Run(R"sql(
create trigger changed instead of update on "Crew List" begin
  update "Order Crew" set Part = new.Part
    where Land = old.Land and badge = old.badge and region = old.region and No = old.No;
end;
create trigger removed instead of delete on "Crew List" begin
  delete from "Order Crew" where Land = old.Land and badge = old.badge and region = old.region and No = old.No;
end;
)sql");
  const auto list = All("Crew List");
  Set(list->Item(2), "Part", "lead");
  list->Item(3)->Delete();
  list->Update();
  EXPECT_EQ(Crew(), "DE1N1:lead|DE2N1:lead|FR1N1:help");
}

TEST_F(ForeignWriteTest, RecursiveUpdateWritesTheRelatedObjectsOfBothDatabases) {
  const auto one = Staff("DE", 1);
  const auto home = one->BusinessObjects("Home")->Item(1);
  const auto sheet = one->BusinessObjects("Sheets")->Item(1);
  Set(one, "Nick", "Adele");
  Set(home, "HeadBadge", 1);
  Set(sheet, "Hours", 41);
  one->GetModel()->Update(true);
  EXPECT_EQ(Works("select Nick from STAFF where Land = 'DE' and badge = 1"), "Adele");
  EXPECT_EQ(Works("select Hours from \"Time Sheet\" where badge = 1"), "41.0|NULL");
  EXPECT_EQ(Atlas("select HeadBadge from region_of"), "1|NULL");
}

TEST_F(ForeignWriteTest, RecursiveUpdateReachesTheRelatedObjectsButNotWhatIsRelatedToThem) {
  const auto one = Staff("DE", 1);
  const auto part = one->BusinessObjects("Crew")->Item(1);
  const auto order = part->BusinessObjects("Order")->Item(1);
  Set(part, "Part", "boss");
  Set(order, "Title", "Viaduct");
  one->GetModel()->Update(true);
  EXPECT_EQ(Crew(), "DE1N1:boss|DE2N1|DE2S1:help|FR1N1:help");
  EXPECT_EQ(Works("select Title from \"Order\" where region = 'N' and No = 1"), "Bridge");
  part->GetModel()->Update(true);
  EXPECT_EQ(Works("select Title from \"Order\" where region = 'N' and No = 1"), "Viaduct");
}

TEST_F(ForeignWriteTest, RecursiveDeleteTakesTheRelatedRowsBehindTheObjectsOwn) {
  const auto one = Staff("DE", 2);
  one->BusinessObjects("Crew");
  one->BusinessObjects("Sheets");
  one->GetModel()->Delete(true);
  EXPECT_EQ(Works("select count(*) from \"Order Crew\""), "4");
  one->GetModel()->Update(true);
  EXPECT_EQ(Crew(), "DE1N1:lead|FR1N1:help");
  EXPECT_EQ(Works("select count(*) from STAFF where badge = 2 and Land = 'DE'"), "0");
  EXPECT_EQ(Works("select badge from \"Time Sheet\""), "1|1");
}

TEST_F(ForeignWriteTest, RecursiveDeleteLeavesWhatWasNeverLoaded) {
  const auto one = Staff("DE", 2);
  one->BusinessObjects("Sheets");
  one->GetModel()->Delete(true);
  one->GetModel()->Update(true);
  EXPECT_EQ(Works("select badge from \"Time Sheet\""), "1|1");
  EXPECT_EQ(Crew(), "DE1N1:lead|DE2N1|DE2S1:help|FR1N1:help");
}

TEST_F(ForeignWriteTest, FailureInTheSecondDatabaseLeavesWhatTheFirstHasWritten) {
  schema_.Atlas.Run("create trigger guard before update on region_of begin select raise(abort, 'guarded'); end");
  const auto one = Staff("DE", 1);
  const auto home = one->BusinessObjects("Home")->Item(1);
  Set(one, "Nick", "Adele");
  Set(home, "HeadBadge", 1);
  EXPECT_TRUE(Thrown([&] { one->GetModel()->Update(true); }));
  EXPECT_NE(apartment_.Messages().Details().find("guarded"), std::string::npos);
  EXPECT_EQ(Works("select Nick from STAFF where Land = 'DE' and badge = 1"), "Adele");
  EXPECT_EQ(Atlas("select HeadBadge from region_of"), "2|NULL");
  EXPECT_TRUE(home->Dirty());
}

TEST_F(ForeignWriteTest, TwoObjectsOfOneRowKnowNothingOfEachOther) {
  const auto one = Staff("FR", 3);
  const auto self = one->BusinessObjects("Boss")->Item(1);
  Set(one, "Nick", "Eva");
  Set(self, "Home", "N");
  one->GetModel()->Update(true);
  EXPECT_EQ(Works("select Nick || Home from STAFF where badge = 3"), "EvaN");
  EXPECT_EQ(Value(self, "Nick"), Variant("Eve"));
}

}  // namespace
}  // namespace velmoria::test
