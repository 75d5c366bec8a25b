#include "tests/scenario/foreign_schema.h"
#include "tests/support/expect_raised.h"

namespace velmoria::test {
namespace {

class ForeignNavigationTest : public ForeignSchemaTest {};

TEST_F(ForeignNavigationTest, LinkOfTwoColumnsLeadsToTheBossAndAtTheTopToNobody) {
  const auto boss = Staff("FR", 2)->BusinessObjects("Boss")->Item(1);
  const auto top = boss->BusinessObjects("Boss")->Item(1);
  EXPECT_EQ(Value(boss, "Nick"), Variant("Cyd"));
  EXPECT_EQ(Value(top, "Nick"), Variant("Ada"));
  EXPECT_EQ(top->BusinessObjects("Boss")->Count(), 0);
}

TEST_F(ForeignNavigationTest, NullInOnePartOfALinkIsSoughtAsNull) {
  const BusinessContextPtr context = Staff("FR", 4)->GetModel()->BusinessContext();
  EXPECT_EQ(context->LoadBusinessObjects({.RelationshipName = "Boss"})->Count(), 0);
  EXPECT_EQ(apartment_.Messages().Item("15129")->ExtraText(),
            "SELECT * FROM STAFF WHERE Land = 'FR' And badge is Null");
  EXPECT_EQ(Values(Staff("FR", 1)->BusinessObjects("Reports"), "Nick"), "Dot;");
}

TEST_F(ForeignNavigationTest, ObjectThatIsItsOwnBossIsMetAsAnotherObjectAtEveryStep) {
  auto each = Staff("FR", 3);
  for (int step = 0; step < 3; ++step) {
    const auto next = each->BusinessObjects("Boss")->Item(1);
    EXPECT_NE(next, each);
    EXPECT_EQ(next->Key(), each->Key());
    each = next;
  }
}

TEST_F(ForeignNavigationTest, RelationshipToItselfWithoutLinksGivesTheSameRowOnceMore) {
  const auto one = Staff("DE", 2);
  const auto self = one->BusinessObjects("Self");
  ASSERT_EQ(self->Count(), 1);
  EXPECT_NE(self->Item(1), one);
  one->FindProperty("Nick")->SetValue("Benny");
  EXPECT_TRUE(Value(self->Item(1), "Nick").IsNull()) << "the other object has values of its own";
  EXPECT_EQ(self->Item(1)->ParentIdentifier(), one->Identifier());
}

TEST_F(ForeignNavigationTest, RelationshipWithoutLinksMakesAParameterOfEveryPartOfTheIdentity) {
  const BusinessContextPtr context = Staff("DE", 2)->GetModel()->BusinessContext();
  context->SetRelationshipName("Crew");
  const PropertiesPtr parameters = context->Parameters();
  ASSERT_EQ(parameters->Count(), 2);
  EXPECT_EQ(parameters->Item("Land")->Value(), Variant("DE"));
  EXPECT_EQ(parameters->Item("badge")->Value(), Variant(2));
  for (const auto& parameter : *parameters) EXPECT_EQ(parameter->Flags(), pfInput) << parameter->Name();
}

TEST_F(ForeignNavigationTest, NullInTheIdentityLeadsToTheRowsThatHaveItToo) {
  ForeignSchema::Relate(schema_.Class("Passage"), "Twins", schema_.Class("Passage"), "Get");
  const auto passages = All("Passage");
  EXPECT_EQ(passages->Item(1)->BusinessObjects("Twins")->Count(), 2);
  EXPECT_EQ(Values(passages->Item(4)->BusinessObjects("Twins"), "badge"), "2;");
  EXPECT_EQ(Values(passages->Item(5)->BusinessObjects("Twins"), "Seen"), "2026-01-05 09:00:00;");
}

TEST_F(ForeignNavigationTest, LinkWithoutAPropertyFindsItsSourceThroughTheParameter) {
  ForeignSchema::Relate(schema_.Class("Order Crew"), "Worker", schema_.Class("Staff"), "By Badge",
                        {{"", "Land"}, {"", "badge"}});
  EXPECT_EQ(Values(All("Order Crew")->Item(4)->BusinessObjects("Worker"), "Full Name"), "Cyd O'Rue;");
}

TEST_F(ForeignNavigationTest, ParameterThatIsNotDeclaredIsSoughtInTheColumnThatThePropertyCameFrom) {
  ForeignSchema::Relate(schema_.Class("Staff"), "Colleagues", schema_.Class("Staff"), "Get",
                        {{"BossLand", "Land"}, {"BossBadge", "badge"}});
  const auto one = Staff("DE", 2);
  EXPECT_EQ(Values(one->BusinessObjects("Colleagues"), "Full Name"), "Ben Oh;Cyd O'Rue;");
  const PropertyPtr added = one->GetModel()->BusinessContext()->Parameters()->Item("Land");
  EXPECT_EQ(added->SourceColumn(), "BossLand");
  EXPECT_EQ(added->Flags(), pfInput);
}

TEST_F(ForeignNavigationTest, LinkWhosePropertyIsNowhereIsToldWithBothNamesAndTheStepInHand) {
  ForeignSchema::Relate(schema_.Class("Staff"), "Broken", schema_.Class("Staff"), "By Badge",
                        {{"BossLand", "Land"}, {"BossNumber", "Number"}});
  const BusinessContextPtr context = Staff("DE", 2)->GetModel()->BusinessContext();
  const auto error = Thrown([&] { context->LoadBusinessObjects({.RelationshipName = "Broken"}); });
  const MessagePtr told = apartment_.Messages().Item("15057");
  ASSERT_TRUE(error && told);
  EXPECT_EQ(error->CatalogueNumber(), 15057);
  EXPECT_EQ(told->Description(),
            "Problem navigating Relationship Link.  Relationship: 'Broken'  Property: 'BossNumber'  "
            "Parameter: 'Number'");
  EXPECT_EQ(told->Replace1() + "|" + told->Replace2() + "|" + told->Replace3(), "Broken|BossNumber|Number");
  EXPECT_EQ(told->ExtraText(), "Property: 'BossNumber'  Parameter: 'Number'");
  EXPECT_EQ(told->StateDetails().find("  Server: 'People'  Class: 'Staff'  Action: 'By Badge'  Relationship: 'Broken'"),
            0U);
}

TEST_F(ForeignNavigationTest, LookUpsThatMissOnTheWayLeaveNoMessage) {
  const BusinessContextPtr context = All("Order Crew")->Item(1)->GetModel()->BusinessContext();
  apartment_.Messages().Clear();
  context->LoadBusinessObjects({.RelationshipName = "Order"});
  EXPECT_EQ(apartment_.Messages().Count(), 1) << apartment_.Messages().Details();
  EXPECT_EQ(apartment_.Messages().Item("15129")->ExtraText(), "SELECT * FROM \"Order\" WHERE region = 'N' And No = 1");
}

TEST_F(ForeignNavigationTest, ManyToManyGoesThroughTheObjectsOfTheLinkTable) {
  std::string titles;
  const auto parts = Staff("DE", 2)->BusinessObjects("Crew");
  for (const auto& part : *parts) titles += Values(part->BusinessObjects("Order"), "Title");
  EXPECT_EQ(titles, "Bridge;Null;");
  std::string names;
  const auto crew = Order("N", 1)->BusinessObjects("Crew");
  for (const auto& part : *crew) names += Values(part->BusinessObjects("Staff"), "Full Name");
  EXPECT_EQ(names, "Ada Lang;Ben Oh;Cyd O'Rue;");
}

TEST_F(ForeignNavigationTest, ManyToManyGoesThroughAStatementInBothDirections) {
  EXPECT_EQ(Values(Staff("DE", 2)->BusinessObjects("Orders"), "Title"), "Bridge;Null;");
  EXPECT_EQ(Values(Order("N", 1)->BusinessObjects("Staff"), "Nick"), "Ada;Null;Cyd;");
  EXPECT_EQ(Order("N", 2)->BusinessObjects("Staff")->Count(), 0);
  const auto around = Staff("FR", 1)->BusinessObjects("Orders")->Item(1)->BusinessObjects("Staff")->Item(3);
  EXPECT_EQ(around->Key(), "FR1");
}

TEST_F(ForeignNavigationTest, ChainGoesOverThreeClassesToTheOtherDatabaseAndBack) {
  const auto region = Staff("DE", 1)
                          ->BusinessObjects("Crew")
                          ->Item(1)
                          ->BusinessObjects("Order")
                          ->Item(1)
                          ->BusinessObjects("Region")
                          ->Item(1);
  EXPECT_EQ(Value(region, "Capital City"), Variant("Norville"));
  EXPECT_EQ(region->Identifier()->ServerName(), "Places");
  EXPECT_EQ(region->ParentIdentifier()->ClassName(), "Order");
  const auto head = region->BusinessObjects("Head")->Item(1);
  EXPECT_EQ(Value(head, "Nick"), Variant("Dot"));
  EXPECT_EQ(Value(head->BusinessObjects("Home")->Item(1), "Code"), Variant("S"));
}

TEST_F(ForeignNavigationTest, ClassOfOneNameOnBothServersIsThatOfTheServerThatTheRelationshipNames) {
  const ClassPtr other = ForeignSchema::AddClass(
      schema_.Places, "Staff", {{.Name = "Code", .DataType = dtString, .SourceColumn = "Code"}}, "region_of");
  ForeignSchema::Relate(schema_.Class("Staff"), "Province", other, "Get", {{"Home", "Code"}});
  schema_.Atlas.Run("alter table region_of add column Home varchar(4); update region_of set Home = Code");
  const auto one = Staff("DE", 1);
  const auto province = one->BusinessObjects("Province")->Item(1);
  EXPECT_EQ(Value(province, "Capital City"), Variant("Norville"));
  EXPECT_EQ(province->Identifier()->ServerName() + "." + province->Identifier()->ClassName(), "Places.Staff");
  EXPECT_EQ(one->BusinessObjects("Self")->Item(1)->Identifier()->ServerName(), "People");
}

TEST_F(ForeignNavigationTest, OtherDatabaseThatIsAwayIsAMissingCollectionAndTheFirstStaysInUse) {
  Framework{}.Databases()->Item("Places")->Connectors()->Item(engODBC)->SetConnectionString(
      "Driver=SQLite3;Database=" + schema_.Atlas.Path() + ".d/atlas.db");
  const auto order = Order("N", 1);
  apartment_.Messages().Clear();
  EXPECT_TRUE(Thrown([&] { order->BusinessObjects("Region"); }));
  EXPECT_NE(apartment_.Messages().Item("15063"), nullptr);
  EXPECT_NE(apartment_.Messages().Details().find("connect failed"), std::string::npos);
  EXPECT_EQ(order->BusinessObjects("Crew")->Count(), 3);
}

TEST_F(ForeignNavigationTest, LinkToNothingThatIsThereGivesAnEmptyCollection) {
  EXPECT_EQ(Staff("FR", 3)->BusinessObjects("Home")->Count(), 0);
  EXPECT_EQ(Staff("FR", 1)->BusinessObjects("Home")->Count(), 0);
  EXPECT_EQ(Framework{}.GetBusinessObject({.ClassName = "Region", .KeyValue1 = "S"})->BusinessObjects("Head")->Count(),
            0);
}

TEST_F(ForeignNavigationTest, IdentityOfTwoPartsLeadsToAKeyOfThree) {
  const auto sheets = Staff("DE", 1)->BusinessObjects("Sheets");
  EXPECT_EQ(Values(sheets, "Week Ending"), "2026-01-04;2026-01-11;");
  EXPECT_EQ(Values(sheets, "Hours"), "40;Null;");
}

TEST_F(ForeignNavigationTest, ColumnWithABlankIsLinkedOnlyThroughADeclaredParameterThatQuotesIt) {
  const ClassPtr staff = schema_.Class("Staff");
  ForeignSchema::AddAction(staff, "By Name", "STAFF",
                           {{.Name = "Full Name", .DataType = dtString, .SourceColumn = "\"Full Name\""}});
  ForeignSchema::Relate(staff, "Bare", staff, "Get", {{"Full Name", "Full Name"}});
  ForeignSchema::Relate(staff, "Quoted", staff, "By Name", {{"Full Name", "Full Name"}});
  const auto one = Staff("FR", 1);
  apartment_.Messages().Clear();
  EXPECT_TRUE(Thrown([&] { one->BusinessObjects("Bare"); }));
  EXPECT_NE(apartment_.Messages().Details().find("syntax error"), std::string::npos);
  EXPECT_EQ(Values(one->BusinessObjects("Quoted"), "Nick"), "Cyd;");
}

TEST_F(ForeignNavigationTest, IdentityOfTheLinkTableAsksTheOtherTableForColumnsThatItLacks) {
  ForeignSchema::Relate(schema_.Class("Order Crew"), "Unlinked", schema_.Class("Staff"), "Get");
  const auto part = All("Order Crew")->Item(1);
  apartment_.Messages().Clear();
  EXPECT_TRUE(Thrown([&] { part->BusinessObjects("Unlinked"); }));
  EXPECT_NE(apartment_.Messages().Details().find("no such column: region"), std::string::npos);
}

}  // namespace
}  // namespace velmoria::test
