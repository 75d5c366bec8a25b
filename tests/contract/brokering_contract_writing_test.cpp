// Objects written through the real drivers: new, changed and deleted ones, those of related classes with them, and the
// number that the server gives a new row.

#include <algorithm>

#include "tests/contract/brokering_contract.h"

namespace velmoria::test {
namespace {

void SetEveryKind(const IBusinessObjectPtr& kind, const RdoProfile& driver) {
  const std::pair<const char*, Variant> values[] = {
      {"i", -7},
      {"s", std::int16_t{300}},
      {"b", Decimal::Parse("9007199254740993")},
      {"d", 1.5},
      {"n", driver.NumericValue},
      {"v", "what's up?"},
      {"da", Date::From(2026, 11, 20)},
      {"ti", driver.TimeValue},
      {"ts", Date::From(2026, 11, 20, 14, 3, 5)},
      {"f", driver.TrueValue},
      {"y", 200},
      {"l", std::vector<Byte>{'l', 'o', 'n', 'g'}},
      {"x", std::vector<Byte>{'a', 'b'}},
  };
  for (const auto& [name, value] : values) kind->FindProperty(name)->SetValue(value);
}

TEST_P(BrokeringContract, NewObjectOfEveryKindOfValueIsInsertedAndReadAgain) {
  MakeKinds();
  AddClass("Kind", "kinds");
  const auto kind = Framework{}.CreateBusinessObject({.ClassName = "Kind"});
  SetEveryKind(kind, Driver());
  kind->Update();
  EXPECT_EQ(kind->StateFlags(), sfpersistent);
  const auto stored = One("Kind", 1);
  for (const auto& property : *kind->Properties(1)) {
    if (property->Name() == "id") continue;
    EXPECT_EQ(Value(stored, property->Name().c_str()), property->Value()) << property->Name();
  }
}

TEST_P(BrokeringContract, LineThatEndsInABackslashIsWrittenAndFoundAsItIs) {
  const std::string text = "a\\\nb\\\r\nc'\\\n";
  std::string longText = text + std::string(9000, 'x') + text;
  longText.erase(std::remove(longText.begin(), longText.end(), '\''), longText.end());  // not doubled in such a value
  MakeTable("lines", "id int NOT NULL PRIMARY KEY, name varchar(40), body text");
  AddClass("Line", "lines");
  const auto line = Framework{}.CreateBusinessObject({.ClassName = "Line"});
  Set(line, "id", 1);
  Set(line, "name", text);
  Set(line, "body", longText);
  line->Update();
  EXPECT_EQ(Value(One("Line", 1), "body"), Variant(std::vector<Byte>(longText.begin(), longText.end())));
  const auto byName = ActionOf("Line", "Get")->CreateParameters();
  byName->SetupItem({.Name = "name", .Value = text, .DataType = dtString, .SourceColumn = "name", .Flags = pfInput});
  const auto found = AgentOf("Line", "Get", byName)->GetRecordset(0, nullptr, false);
  ASSERT_EQ(found->Count(), 1);
  EXPECT_EQ(found->GetPersistentProperties(0, "")->Item("name")->Value(), Variant(text));
}

TEST_P(BrokeringContract, EveryKindOfValueIsChangedEmptiedAndSetAgain) {
  MakeKinds();
  Run("INSERT INTO {t}kinds (v) VALUES ('old')");
  AddClass("Kind", "kinds");
  const auto kind = One("Kind", 1);
  for (const bool given : {true, false, true}) {
    SetEveryKind(kind, Driver());
    for (const auto& property : *kind->Properties(1)) {
      const bool isLong = property->DataType() == dtByteArray;
      if (!given && !isLong && property->Name() != "id" && property->Name() != "v") property->SetValue(Variant::Null());
    }
    kind->Update();
    EXPECT_FALSE(kind->Dirty());
    const auto stored = One("Kind", 1);
    EXPECT_EQ(Value(stored, "ts"), given ? Variant(Date::From(2026, 11, 20, 14, 3, 5)) : Variant::Null());
    EXPECT_EQ(Value(stored, "i"), given ? Variant(-7) : Variant::Null());
    EXPECT_EQ(Value(stored, "f"), given ? Driver().TrueValue : Variant::Null());
  }
}

TEST_P(BrokeringContract, ObjectThatIsSavedAgainUnchangedSendsNothing) {
  AddOrders(3);
  const auto order = One("Order", 2);
  Set(order, "name", "new");
  order->Update();
  const auto sent = Odbc().Executions();
  order->Update();
  EXPECT_EQ(Odbc().Executions(), sent);
}

TEST_P(BrokeringContract, ChangedKeyIsFoundByTheOldOneAndTheRowIsAloneInIt) {
  AddOrders(3);
  const auto order = One("Order", 2);
  Set(order, "id", 20);
  Set(order, "name", Variant::Null());
  order->Update();
  EXPECT_EQ(Stored("SELECT count(*) FROM {t}orders WHERE id = 20 AND name IS NULL"), "1");
  EXPECT_EQ(Stored("SELECT count(*) FROM {t}orders WHERE name IS NOT NULL AND id < 4"), "2");
}

TEST_P(BrokeringContract, DeletedObjectIsGoneWithTheNextUpdateOnly) {
  AddOrders(3);
  const auto order = One("Order", 2);
  order->Delete();
  EXPECT_EQ(Stored("SELECT count(*) FROM {t}orders"), "3");
  order->Update();
  EXPECT_EQ(Stored("SELECT count(*) FROM {t}orders WHERE id = 2"), "0");
  EXPECT_EQ(Stored("SELECT count(*) FROM {t}orders"), "2");
  ExpectRaised(errPersistence_Deleted, [&] { order->Properties(1)->Update(); });
}

TEST_P(BrokeringContract, KeyThatIsTakenIsRefusedInTheServersWordsAndTheObjectStaysNewToBeCorrected) {
  AddOrders(3);
  const auto order = Framework{}.CreateBusinessObject({.ClassName = "Order"});
  Set(order, "id", 2);
  Set(order, "name", "twice");
  ExpectRaised(errPersistence_Insert, [&] { order->Update(); });
  EXPECT_TRUE(has(order->StateFlags(), sfNew));
  Set(order, "id", 4);
  order->Update();
  EXPECT_EQ(Stored("SELECT name FROM {t}orders WHERE id = 4"), "twice");
  EXPECT_EQ(Stored("SELECT name FROM {t}orders WHERE id = 2"), "name 2");
}

TEST_P(BrokeringContract, RowsOfACollectionAreWrittenInOneCall) {
  AddOrders(5);
  const auto orders = All("Order");
  Set(orders->Item(1), "name", "changed");
  orders->Item(2)->Delete();
  const auto added = orders->SetupItem();
  Set(added, "id", 6);
  Set(added, "name", "added");
  orders->Update();
  EXPECT_EQ(Stored("SELECT name FROM {t}orders WHERE id = 1"), "changed");
  EXPECT_EQ(Stored("SELECT name FROM {t}orders WHERE id = 6"), "added");
  EXPECT_EQ(Stored("SELECT count(*) FROM {t}orders"), "5");
}

TEST_P(BrokeringContract, RowThatIsGoneAlreadyIsChangedAndDeletedWithoutAFailure) {
  AddOrders(2);
  const auto one = One("Order", 1);
  const auto two = One("Order", 2);
  Run("DELETE FROM {t}orders");
  Set(one, "name", "new");
  one->Update();
  two->Delete();
  two->Update();
  EXPECT_EQ(Stored("SELECT count(*) FROM {t}orders"), "0");
}

/// Orders with lines, which lead from the one to the other.
class RelatedContract : public BrokeringContract {
 protected:
  void SetUp() override {
    BrokeringContract::SetUp();
    const auto order = AddOrders(2);
    MakeTable("lines", "orderid int NOT NULL, lineno int NOT NULL, product varchar(20), PRIMARY KEY (orderid, lineno)");
    Run("INSERT INTO {t}lines VALUES (1, 1, 'lamp'), (1, 2, 'chair'), (2, 1, 'rug')");
    AddClass("Line", "lines", {"orderid", "lineno"});
    AddAction("Line", {.Name = "Of Order", .Text = "{t}lines"}, {Parameter("orderid", dtLongInteger)});
    const auto lines = order->Relationships()->SetupItem(
        {.Name = "Lines", .RelatedServerName = "Sales", .RelatedClassName = "Line", .RelatedActionName = "Of Order"});
    const auto link = lines->Links()->SetupItem({.Name = "orderid"});
    link->Property()->SetName("id");
    link->Parameter()->SetName("orderid");
  }
};

TEST_P(RelatedContract, LinesAreThoseOfTheirOrder) {
  for (const int id : {1, 2}) EXPECT_EQ(One("Order", id)->BusinessObjects("Lines")->Count(), 3 - id);
}

TEST_P(RelatedContract, RecursiveUpdateWritesTheOrderItsLinesAndANewOne) {
  const auto order = One("Order", 1);
  const auto lines = order->BusinessObjects("Lines");
  Set(order, "name", "dear");
  Set(lines->Item(2), "product", "table");
  const auto added = lines->SetupItem();
  Set(added, "orderid", 1);
  Set(added, "lineno", 3);
  Set(added, "product", "vase");
  order->GetModel()->Update(true);
  EXPECT_EQ(Stored("SELECT name FROM {t}orders WHERE id = 1"), "dear");
  EXPECT_EQ(Stored("SELECT product FROM {t}lines WHERE orderid = 1 AND lineno = 2"), "table");
  EXPECT_EQ(Stored("SELECT product FROM {t}lines WHERE orderid = 1 AND lineno = 3"), "vase");
}

TEST_P(RelatedContract, RecursiveDeleteTakesTheLinesToo) {
  const auto order = One("Order", 1);
  order->BusinessObjects("Lines");
  order->GetModel()->Delete(true);
  EXPECT_EQ(Stored("SELECT count(*) FROM {t}lines"), "3");
  order->GetModel()->Update(true);
  EXPECT_EQ(Stored("SELECT count(*) FROM {t}orders"), "1");
  EXPECT_EQ(Stored("SELECT product FROM {t}lines"), "rug");
}

TEST_P(RelatedContract, FailureInALineLeavesWhatWasWrittenBeforeIt) {
  const auto order = One("Order", 1);
  const auto lines = order->BusinessObjects("Lines");
  Set(order, "name", "dear");
  Set(lines->Item(2), "lineno", 1);
  ExpectRaised(errPersistence_Update, [&] { order->GetModel()->Update(true); });
  EXPECT_EQ(Stored("SELECT name FROM {t}orders WHERE id = 1"), "dear");
  Set(lines->Item(2), "lineno", 7);
  order->GetModel()->Update(true);
  EXPECT_EQ(Stored("SELECT product FROM {t}lines WHERE lineno = 7"), "chair");
}

INSTANTIATE_TEST_SUITE_P(, RelatedContract, testing::ValuesIn(BrokeringProfiles()),
                         [](const auto& profile) { return profile.param.Name; });

/// A table whose rows the server numbers, and a class that asks for the number.
class CountedContract : public BrokeringContract {
 protected:
  void SetUp() override {
    BrokeringContract::SetUp();
    MakeKinds();
    AddClass("Kind", "kinds")->Properties()->Item("id")->SetFlags(pfNone);
  }
  static IBusinessObjectPtr NewKind() {
    auto kind = Framework{}.CreateBusinessObject({.ClassName = "Kind"});
    Set(kind, "v", "counted");
    return kind;
  }
  std::string InsertText() const {
    return Filled("INSERT INTO {t}kinds ( v ) VALUES ( 'counted' ) SELECT 'id' = @@IDENTITY");
  }
};

TEST_P(CountedContract, StatementGoesOutAsItStandsUnderEveryEngine) {
  const auto kind = NewKind();
  Thrown([&] { kind->Update(); });
  Messages().Clear();
  EXPECT_EQ(Odbc().Texts().back(), InsertText());
}

TEST_P(CountedContract, NumberOfANewRowComesBackWithTheInsert) {
  if (!Profile().WhyNoIdentity.empty()) GTEST_SKIP() << Profile().WhyNoIdentity;
  for (const int number : {1, 2, 3}) {
    const auto kind = NewKind();
    const auto sent = Odbc().Executions();
    kind->Update();
    EXPECT_EQ(Odbc().Executions(), sent + 1);
    EXPECT_EQ(IdOf(kind), number);
    Set(kind, "i", 10 * number);
    kind->Update();
    EXPECT_EQ(Stored("SELECT i FROM {t}kinds WHERE id = " + std::to_string(number)), std::to_string(10 * number));
  }
}

TEST_P(CountedContract, NumbersOfNewRowsReachTheirObjectsInACollection) {
  if (!Profile().WhyNoIdentity.empty()) GTEST_SKIP() << Profile().WhyNoIdentity;
  const auto kinds = All("Kind");
  const auto first = kinds->SetupItem();
  const auto second = kinds->SetupItem();
  Set(first, "v", "a");
  Set(second, "v", "b");
  kinds->Update();
  EXPECT_EQ(IdOf(first), 1);
  EXPECT_EQ(IdOf(second), 2);
  EXPECT_FALSE(kinds->Dirty());
}

TEST_P(CountedContract, NumberComesBackInsideATransaction) {
  if (!Profile().WhyNoIdentity.empty()) GTEST_SKIP() << Profile().WhyNoIdentity;
  const auto connection = ActionOf("Kind")->Connection();
  connection->TransBegin();
  const auto kind = NewKind();
  kind->Update();
  EXPECT_EQ(IdOf(kind), 1);
  connection->TransRollback();
  EXPECT_EQ(Stored("SELECT count(*) FROM {t}kinds"), "0");
}

TEST_P(CountedContract, ServerThatDoesNotTakeTheStatementRefusesTheInsertInItsOwnWords) {
  if (!Profile().WhyNoRefusal.empty()) GTEST_SKIP() << Profile().WhyNoRefusal;
  const auto kind = NewKind();
  const auto error = Thrown([&] { kind->Update(); });
  ASSERT_TRUE(error);
  EXPECT_TRUE(WarnedOf(Profile().NoIdentity)) << Messages().Details();
  Messages().Clear();
  EXPECT_TRUE(has(kind->StateFlags(), sfNew));
  EXPECT_EQ(Stored("SELECT count(*) FROM {t}kinds"), "0");
}

TEST_P(CountedContract, KeyWithFlagsOfItsOwnSparesTheServerTheQuestionAndStaysNull) {
  Framework{}.Servers()->Item("Sales")->Classes()->Item("Kind")->Properties()->Item("id")->SetFlags(pfInput);
  const auto kind = NewKind();
  kind->Update();
  EXPECT_EQ(Odbc().Texts().back(), Filled("INSERT INTO {t}kinds ( v ) VALUES ('counted' )"));
  EXPECT_TRUE(Value(kind, "id").IsNull());
  EXPECT_EQ(Stored("SELECT v FROM {t}kinds WHERE id = 1"), "counted");
}

// The end of the text is a comment to the server, and with it the question.
TEST_P(CountedContract, InsertThatReturnsNoNumberIsRefusedAlthoughTheRowIsWritten) {
  const auto kind = NewKind();
  ActionOf("Kind")->Sources()->Item()->SetSourceText(Filled("{t}kinds (v) VALUES ('silent') --"));
  ExpectRaised(errRDO_Identity_Insert, [&] { kind->Update(); }, {.Text = "Property: 'id'"});
  EXPECT_TRUE(has(kind->StateFlags(), sfNew));
  EXPECT_EQ(Stored("SELECT count(*) FROM {t}kinds WHERE v = 'silent'"), "1");
}

INSTANTIATE_TEST_SUITE_P(, CountedContract, testing::ValuesIn(BrokeringProfiles()),
                         [](const auto& profile) { return profile.param.Name; });

}  // namespace
}  // namespace velmoria::test
