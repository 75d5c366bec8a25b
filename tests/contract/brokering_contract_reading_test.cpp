// Objects and collections read over the real drivers: every kind of value, the largest and smallest of them, and tables
// that are not what they were.

#include <limits>

#include "tests/contract/brokering_contract.h"

namespace velmoria::test {
namespace {

TEST_P(BrokeringContract, ObjectHasAValueOfEveryKind) {
  MakeKinds();
  FillKinds();
  AddClass("Kind", "kinds");
  const auto kind = One("Kind", 1);
  EXPECT_EQ(Value(kind, "i"), Variant(-7));
  EXPECT_EQ(Value(kind, "s"), Variant(std::int16_t{300}));
  EXPECT_EQ(Value(kind, "b"), Variant(Decimal::Parse("9007199254740993")));
  EXPECT_EQ(Value(kind, "d"), Variant(1.5));
  EXPECT_EQ(Value(kind, "n"), Driver().NumericValue);
  EXPECT_EQ(Value(kind, "v"), Variant("x"));
  EXPECT_EQ(Value(kind, "da"), Variant(Date::From(2026, 11, 20)));
  EXPECT_EQ(Value(kind, "ti"), Driver().TimeValue);
  EXPECT_EQ(Value(kind, "ts"), Variant(Date::From(2026, 11, 20, 14, 3, 5)));
  EXPECT_EQ(Value(kind, "f"), Driver().TrueValue);
  EXPECT_EQ(Value(kind, "y").AsInteger(), 200);
  EXPECT_EQ(Value(kind, "l"), Variant(std::vector<Byte>{'l', 'o', 'n', 'g'}));
}

TEST_P(BrokeringContract, NullOfEveryKindIsNullAndThatOfALongColumnIsEmpty) {
  MakeKinds();
  FillKinds();
  AddClass("Kind", "kinds");
  const auto kind = One("Kind", 2);
  for (const auto* name : {"i", "s", "b", "d", "n", "da", "ti", "ts", "f", "y"}) {
    EXPECT_TRUE(Value(kind, name).IsNull()) << name;
    EXPECT_FALSE(kind->FindProperty(name)->EmptyValue()) << name;
  }
  EXPECT_EQ(Value(kind, "v"), Variant(""));
  for (const auto* name : {"l", "x"}) EXPECT_TRUE(Value(kind, name).IsEmpty()) << name;
}

TEST_P(BrokeringContract, CollectionHasEveryRowByPositionKeyAndIdentity) {
  AddOrders(25);
  const auto orders = All("Order");
  ASSERT_EQ(orders->Count(), 25);
  int visited = 0;
  for (const auto& order : *orders) EXPECT_EQ(IdOf(order), ++visited);
  EXPECT_EQ(visited, 25);
  EXPECT_EQ(Value(orders->Item("17"), "name"), Variant("name 17"));
  const auto identifier = Framework{}.CreateIdentifier("Order");
  identifier->Properties()->Item("id")->SetValue(9);
  EXPECT_EQ(Value(orders->Item(identifier), "total"), Variant(90));
}

TEST_P(BrokeringContract, KeyThatNoRowHasAndOneThatSeveralHaveAreRefusedByTheirNumbers) {
  MakeTable("twins", "id int, name varchar(10)");
  Run("INSERT INTO {t}twins VALUES (1, 'a'), (1, 'b')");
  AddClass("Twin", "twins");
  ExpectRaised(errBusinessObject_Get, [] { One("Twin", 2); });
  ExpectRaised(errMismatch_Count, [] { One("Twin", 1); });
  EXPECT_EQ(All("Twin")->Count(), 2);
}

TEST_P(BrokeringContract, EmptyTableIsAnEmptyCollection) {
  AddOrders(0);
  const auto orders = All("Order");
  EXPECT_EQ(orders->Count(), 0);
  EXPECT_TRUE(orders->NewEnum().empty());
}

TEST_P(BrokeringContract, LargestAndSmallestNumbersComeBackToTheLastDigit) {
  MakeKinds();
  AddClass("Kind", "kinds");
  Run("INSERT INTO {t}kinds (v, i, s, b, n, d) VALUES ('', 2147483647, 32767, 9223372036854775807, 999999999.999,"
      " 1.79769313486231e308)");
  Run("INSERT INTO {t}kinds (v, i, s, b, n, d) VALUES ('', -2147483648, -32768, -9223372036854775808, -999999999.999,"
      " -1.79769313486231e308)");
  const auto most = One("Kind", 1);
  const auto least = One("Kind", 2);
  EXPECT_EQ(Value(most, "i"), Variant(std::numeric_limits<std::int32_t>::max()));
  EXPECT_EQ(Value(least, "i"), Variant(std::numeric_limits<std::int32_t>::min()));
  EXPECT_EQ(Value(most, "s"), Variant(std::int16_t{32767}));
  EXPECT_EQ(Value(least, "s"), Variant(std::int16_t{-32768}));
  EXPECT_EQ(Value(most, "b"), Variant(Decimal::Parse("9223372036854775807")));
  EXPECT_EQ(Value(least, "b"), Variant(Decimal::Parse("-9223372036854775808")));
  EXPECT_EQ(Value(most, "n").AsText(), "999999999.999");
  EXPECT_EQ(Value(least, "n").AsText(), "-999999999.999");
  EXPECT_EQ(Value(most, "d"), Variant(1.79769313486231e308));
  EXPECT_EQ(Value(least, "d"), Variant(-1.79769313486231e308));
}

TEST_P(BrokeringContract, NumberThatItsColumnCannotHoldIsRefusedAndNamesTheColumn) {
  if (!Driver().WhyNothingTooLarge.empty()) GTEST_SKIP() << Driver().WhyNothingTooLarge;
  MakeTable("narrow", "id int NOT NULL PRIMARY KEY, s smallint");
  Run("INSERT INTO {t}narrow VALUES (1, 5), (2, 40000)");
  AddClass("Narrow", "narrow");
  EXPECT_EQ(Value(One("Narrow", 1), "s"), Variant(std::int16_t{5}));
  const auto error = Thrown([] { One("Narrow", 2); });
  ASSERT_TRUE(error);
  EXPECT_GT(error->CatalogueNumber(), 15000);
  EXPECT_TRUE(WarnedOf("in the column 's'")) << Messages().Details();
  Messages().Clear();
}

TEST_P(BrokeringContract, FirstAndLastDayAreRead) {
  MakeKinds();
  AddClass("Kind", "kinds");
  Run("INSERT INTO {t}kinds (v, da, ts) VALUES ('', '" + Profile().FirstDay + "', '9999-12-31 23:59:59')");
  Run("INSERT INTO {t}kinds (v, da, ts) VALUES ('', '9999-12-31', '1899-12-30 00:00:00')");
  EXPECT_EQ(Value(One("Kind", 1), "da").AsText(), Profile().FirstDay);
  EXPECT_EQ(Value(One("Kind", 1), "ts"), Variant(Date::From(9999, 12, 31, 23, 59, 59)));
  EXPECT_EQ(Value(One("Kind", 2), "da"), Variant(Date::From(9999, 12, 31)));
  EXPECT_EQ(Value(One("Kind", 2), "ts"), Variant(Date{}));
}

TEST_P(BrokeringContract, DayThatADateCannotHoldIsRefused) {
  if (!Profile().WhyNoOddDays.empty()) GTEST_SKIP() << Profile().WhyNoOddDays;
  MakeKinds();
  AddClass("Kind", "kinds");
  if (!Profile().AllowOddDays.empty()) Run(Profile().AllowOddDays);
  std::int32_t id = 0;
  for (const auto& day : Profile().OddDays) {
    SCOPED_TRACE(day);
    Run("INSERT INTO {t}kinds (v, da) VALUES ('', " + day + ")");
    EXPECT_FALSE(EndsRightOrNumbered([&] { Value(One("Kind", ++id), "da"); }));
  }
}

TEST_P(BrokeringContract, TextOfManyLettersIsReadAndFound) {
  AddOrders(1);
  const std::string text = "O'Neil \xE2\x82\xAC\xC3\x9F \\ \"?\" {d} ; --";
  const auto order = One("Order", 1);
  Set(order, "name", text);
  order->Update();
  EXPECT_EQ(Value(One("Order", 1), "name"), Variant(text));
  auto name = Parameter("name", dtString);
  AddAction("Order", {.Name = "Named", .Text = "{t}orders"}, {name});
  const auto parameters = ActionOf("Order", "Named")->CreateParameters();
  parameters->Item("name")->SetValue(text);
  EXPECT_EQ(
      Framework{}.GetBusinessObjects({.ClassName = "Order", .ActionName = "Named", .Parameters = parameters})->Count(),
      1);
}

TEST_P(BrokeringContract, RowOfAThousandColumnsIsReadAndWritten) {
  std::string columns = "id int NOT NULL PRIMARY KEY";
  std::string values = "1";
  for (int number = 2; number <= 1000; ++number) {
    columns += ", c" + std::to_string(number) + " int";
    values += ", " + std::to_string(number);
  }
  MakeTable("wide", columns);
  Run("INSERT INTO {t}wide VALUES (" + values + ")");
  AddClass("Wide", "wide");
  const auto wide = One("Wide", 1);
  EXPECT_EQ(wide->PropertyCount(), 1000);
  for (const auto* name : {"c2", "c500", "c1000"}) EXPECT_EQ(Value(wide, name).AsText(), name + 1);
  Set(wide, "c777", 7);
  wide->Update();
  EXPECT_EQ(Stored("SELECT c777 + c778 FROM {t}wide"), "785");
}

TEST_P(BrokeringContract, RowOfTenMegabytesIsReadWhole) {
  MakeKinds();
  const auto half = Replaced(Profile().Repeated, "{count}", "5000000");
  Run("INSERT INTO {t}kinds (v, l) VALUES ('a', " + half + ")");
  Run("INSERT INTO {t}kinds (v, l) VALUES ('b', " + half + ")");
  AddClass("Kind", "kinds");
  const auto kinds = All("Kind");
  for (const int row : {2, 1}) {
    const auto value = Value(kinds->Item(row), "l");
    ASSERT_EQ(value.Bytes().size(), 5'000'000U);
    EXPECT_EQ(value.Bytes().back(), Byte{'x'});
  }
}

TEST_P(BrokeringContract, TwoColumnsOfOneNameAreRefused) {
  AddOrders(3);
  AddAction("Order", {.Name = "Twice", .Text = "SELECT id, name AS id FROM {t}orders", .Type = stSQL});
  const auto error = Thrown([] { All("Order", "Twice"); });
  ASSERT_TRUE(error);
  EXPECT_NE(error->Description().find("This key is already in use in this collection"), std::string::npos);
  ASSERT_TRUE(Messages().Item("15123"));
  EXPECT_EQ(Messages().Item("15123")->ExtraText(), "Processing RDO Column, id");
  Messages().Clear();
  EXPECT_EQ(All("Order")->Count(), 3);
}

TEST_P(BrokeringContract, ColumnDroppedBetweenTwoReadsIsMissingFromTheSecond) {
  if (!Profile().WhyNoDroppedColumn.empty()) GTEST_SKIP() << Profile().WhyNoDroppedColumn;
  AddOrders(40);
  ActionOf("Order")->SetObjectBuffer(10);
  const auto before = All("Order");
  EXPECT_EQ(Value(before->Item(10), "total"), Variant(100));
  Run("ALTER TABLE {t}orders DROP COLUMN total");
  EndsRightOrNumbered([&] { EXPECT_EQ(Value(before->Item(35), "total"), Variant(350)); });
  EXPECT_EQ(One("Order", 3)->PropertyCount(), 2);
  EXPECT_EQ(Value(All("Order")->Item(35), "name"), Variant("name 35"));
}

TEST_P(BrokeringContract, UpdateOfAColumnDroppedMeanwhileIsRefusedAndChangesNothing) {
  if (!Driver().WhyNoChangedColumns.empty()) GTEST_SKIP() << Driver().WhyNoChangedColumns;
  AddOrders(2);
  const auto order = One("Order", 2);
  Run("ALTER TABLE {t}orders DROP COLUMN total");
  Set(order, "name", "new");
  Set(order, "total", 1);
  ExpectRaised(errPersistence_Update, [&] { order->Update(); });
  EXPECT_EQ(Stored("SELECT name FROM {t}orders WHERE id = 2"), "name 2");
  EXPECT_TRUE(order->Dirty());
}

TEST_P(BrokeringContract, TableThatVanishedIsRefusedByItsNumberAndTheNextRequestWorks) {
  AddOrders(40);
  ActionOf("Order")->SetObjectBuffer(10);
  AddAction("Order", {.Name = "Rest", .Text = "SELECT 1 AS id", .Type = stSQL});
  const auto orders = All("Order");
  Run("DROP TABLE {t}orders");
  EndsRightOrNumbered([&] {
    for (int row = 1; row <= 40; ++row) EXPECT_EQ(IdOf(orders->Item(row)), row);
  });
  ExpectRaised(errRDO_Table, [] { All("Order"); }, {.Text = Filled("{t}orders")});
  ExpectRaised(errRDO_Table, [] { One("Order", 1); }, {.Text = Filled("{t}orders")});
  EXPECT_EQ(All("Order", "Rest")->Count(), 1);
}

TEST_P(BrokeringContract, ViewIsReadAsATableIs) {
  AddOrders(3);
  Run("CREATE VIEW {t}dear AS SELECT id, total FROM {t}orders WHERE total > 10");
  AddAction("Order", {.Name = "Dear", .Text = "{t}dear", .Type = stView});
  EXPECT_EQ(All("Order", "Dear")->Count(), 2);
  EXPECT_EQ(Value(Framework{}.GetBusinessObject({.ClassName = "Order", .KeyValue1 = 3, .ActionName = "Dear"}), "total"),
            Variant(30));
  Run("DROP VIEW {t}dear");
  ExpectRaised(errRDO_View, [] { All("Order", "Dear"); });
}

INSTANTIATE_TEST_SUITE_P(, BrokeringContract, testing::ValuesIn(BrokeringProfiles()),
                         [](const auto& profile) { return profile.param.Name; });

}  // namespace
}  // namespace velmoria::test
