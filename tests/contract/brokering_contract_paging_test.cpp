// Results read in pages over the real drivers: forwards, backwards and whole, by cursors that scroll and by one that
// does not, and with filters that are applied here.

#include "tests/contract/brokering_contract.h"

namespace velmoria::test {
namespace {

std::string Span(int first, int last) {
  std::string text;
  for (int id = first; id <= last; ++id) text += (id == first ? "" : " ") + std::to_string(id);
  return text;
}

class PagingContract : public BrokeringContract {
 protected:
  void SetUp() override {
    BrokeringContract::SetUp();
    AddOrders(25);
    AddAction("Order", {.Name = "Text", .Text = "SELECT * FROM {t}orders ORDER BY id", .Type = stSQL});
  }
  /// An agent for the Action in pages of so many rows, over a connection with that cursor.
  DatabaseAgentPtr InPagesOf(std::int32_t rows, const PropertiesPtr& filters = {}) {
    ActionOf("Order", "Text")->SetObjectBuffer(rows);
    return AgentOf("Order", "Text", filters);
  }
  static RecordsetPtr Next(const DatabaseAgentPtr& agent, const RecordsetPtr& previous = {}) {
    return agent->GetRecordset(0, previous, false);
  }
  static PropertiesPtr Filter(const char* name, const std::string& comparison, const Variant& value,
                              zDataTypes type = dtLongInteger) {
    auto filters = Framework{}.CreateProperties();
    filters->SetupItem({.Name = name, .Value = value, .DataType = type, .Operator = comparison, .Flags = pfInput});
    return filters;
  }
  void ConnectWith(zCursorTypes type) {
    const auto connectors = Framework{}.Databases()->Item("Shop")->Connectors();
    connectors->Item()->SetCursorType(type);
    const auto engine = std::to_string(static_cast<int>(Profile().Engine));
    if (type == crtNone) Framework{}.Profile()->Item({.Index = "Default CursorType for Engine " + engine})->SetValue(0);
  }
};

std::string Name(zCursorTypes type) { return std::to_string(static_cast<int>(type)); }

constexpr zCursorTypes kScrolling[] = {crtKeyset, crtDynamic, crtStatic};

TEST_P(PagingContract, PagesFollowOneAnotherForwardsToTheEnd) {
  const auto agent = InPagesOf(10);
  auto page = Next(agent);
  EXPECT_EQ(Ids(page), Span(1, 10));
  EXPECT_TRUE(page->PrevBookmark().IsEmpty());
  EXPECT_EQ(page->VirtualFirstNumber(), 0);
  page = Next(agent, page);
  EXPECT_EQ(Ids(page), Span(11, 20));
  EXPECT_EQ(page->VirtualFirstNumber(), 9);
  page = Next(agent, page);
  EXPECT_EQ(Ids(page), Span(21, 25));
  EXPECT_EQ(page->VirtualFirstNumber(), 18);
  EXPECT_TRUE(page->NextBookmark().IsEmpty());
}

TEST_P(PagingContract, PagesReadFromTheEndLeaveOutTheLastRowAndGoToTheFirst) {
  const auto agent = InPagesOf(-10);
  auto page = Next(agent);
  EXPECT_EQ(Ids(page), Span(15, 24));
  EXPECT_EQ(page->VirtualFirstNumber(), 0);
  EXPECT_FALSE(page->NextBookmark().IsEmpty());
  page = Next(agent, page);
  EXPECT_EQ(Ids(page), Span(5, 14));
  EXPECT_EQ(page->VirtualFirstNumber(), -11);
  page = Next(agent, page);
  EXPECT_EQ(Ids(page), Span(1, 10));
  EXPECT_TRUE(page->PrevBookmark().IsEmpty());
}

TEST_P(PagingContract, WholeResultIsOnePageAndBehindAnotherPageItIsTheRest) {
  const auto whole = InPagesOf(0);
  const auto page = Next(whole);
  EXPECT_EQ(Ids(page), Span(1, 25));
  EXPECT_EQ(page->VirtualFirstNumber(), -1);
  EXPECT_TRUE(page->NextBookmark().IsEmpty());
  const auto first = Next(InPagesOf(10));
  EXPECT_EQ(Ids(Next(whole, first)), Span(11, 25));
}

TEST_P(PagingContract, PageIsTheSameUnderEveryCursorThatScrolls) {
  for (const auto type : kScrolling) {
    SCOPED_TRACE(static_cast<int>(type));
    ConnectWith(type);
    AddAction("Order",
              {.Name = "By " + Name(type), .Text = "{t}orders", .ObjectBuffer = 7, .ConnectionsName = Name(type)});
    const auto agent = AgentOf("Order", "By " + Name(type));
    const auto second = Next(agent, Next(agent));
    EXPECT_EQ(Ids(second), Span(8, 14));
    EXPECT_EQ(Ids(Next(agent)), Span(1, 7));
    EXPECT_EQ(Ids(Next(agent, second)), Span(15, 21));
    EXPECT_EQ(agent->RowCount(), 25);
  }
}

TEST_P(PagingContract, ResultThatCannotScrollIsRefusedByEveryKindOfPage) {
  ConnectWith(crtNone);
  for (const std::int32_t rows : {0, 10, -10}) {
    SCOPED_TRACE(rows);
    const auto agent = InPagesOf(rows);
    ExpectRaised(errNotSupported_Cursor, [&] { Next(agent); }, {.Text = "CursorType: '(None)'"});
  }
}

TEST_P(PagingContract, ResultThatCannotScrollIsReadByAFilter) {
  ConnectWith(crtNone);
  const auto agent = InPagesOf(0, Filter("total", ">", 200));
  EXPECT_EQ(Ids(Next(agent)), Span(21, 25));
}

TEST_P(PagingContract, RowsAreCountedWithoutFiltersAndPagesAreTheSameBehindIt) {
  const auto agent = InPagesOf(10);
  const auto first = Next(agent);
  EXPECT_EQ(agent->RowCount(), 25);
  EXPECT_EQ(Ids(Next(agent, first)), Span(11, 20));
  EXPECT_EQ(InPagesOf(10, Filter("total", ">", 200))->RowCount(), 25);
}

struct Comparison {
  const char* Operator;
  std::int32_t Value;
  std::string Ids;
};

TEST_P(PagingContract, FilterComparesByEveryOperator) {
  const Comparison comparisons[] = {
      {"=", 30, "3"},       {"<>", 30, "1 2 " + Span(4, 25)},
      {">", 230, "24 25"},  {"<", 30, "1 2"},
      {">=", 240, "24 25"}, {"=>", 240, "24 25"},
      {"<=", 20, "1 2"},    {"=<", 20, "1 2"},
  };
  for (const auto& [comparison, value, ids] : comparisons) {
    SCOPED_TRACE(comparison);
    EXPECT_EQ(Ids(Next(InPagesOf(0, Filter("total", comparison, value)))), ids);
  }
}

TEST_P(PagingContract, FilterPassesNullOnlyForNullAndForNotEqual) {
  Run("UPDATE {t}orders SET total = NULL WHERE id = 8");
  EXPECT_EQ(Ids(Next(InPagesOf(0, Filter("total", "=", Variant::Null())))), "8");
  EXPECT_EQ(Ids(Next(InPagesOf(0, Filter("total", "<>", Variant::Null())))), Span(1, 7) + " " + Span(9, 25));
  EXPECT_EQ(Ids(Next(InPagesOf(0, Filter("total", "<", 100)))), Span(1, 7) + " 9");
  EXPECT_EQ(Ids(Next(InPagesOf(0, Filter("total", "<>", 10)))), Span(2, 25));
}

TEST_P(PagingContract, FilteredPagesFollowOneAnotherAndTheFirstTellsWhetherItIsAll) {
  const auto agent = InPagesOf(4, Filter("total", ">", 160));
  auto page = Next(agent);
  EXPECT_EQ(Ids(page), Span(17, 20));
  EXPECT_EQ(page->VirtualFirstNumber(), 0);
  page = Next(agent, page);
  EXPECT_EQ(Ids(page), Span(21, 24));
  EXPECT_EQ(page->VirtualFirstNumber(), 3);
  page = Next(agent, page);
  EXPECT_EQ(Ids(page), "25");
  EXPECT_TRUE(page->NextBookmark().IsEmpty());
  EXPECT_EQ(Next(InPagesOf(4, Filter("total", ">", 220)))->VirtualFirstNumber(), -1);
  EXPECT_EQ(Next(InPagesOf(4, Filter("total", ">", 999)))->Count(), 0);
}

TEST_P(PagingContract, CollectionFindsEveryPositionInAnyOrderWhateverItsPages) {
  for (const std::int32_t rows : {0, 1, 7, 25, 100}) {
    SCOPED_TRACE(rows);
    ActionOf("Order")->SetObjectBuffer(rows);
    const auto orders = All("Order");
    ASSERT_EQ(orders->Count(), 25);
    for (const int position : {11, 25, 3, 24, 1}) EXPECT_EQ(IdOf(orders->Item(position)), position);
    EXPECT_EQ(IdOf(orders->Item("13")), 13);
    ExpectRaised(errPersistence_Row, [&] { orders->Item(26); });
    int visited = 0;
    for (const auto& order : *orders) EXPECT_EQ(IdOf(order), ++visited);
    EXPECT_EQ(visited, 25);
  }
}

TEST_P(PagingContract, NewObjectJoinsTheLastPageOnly) {
  ActionOf("Order")->SetObjectBuffer(10);
  const auto orders = All("Order");
  ExpectRaised(errBusinessObjects_Buffer, [&] { orders->SetupItem(); });
  orders->Item(25);
  const auto added = orders->SetupItem();
  Set(added, "id", 26);
  orders->Update();
  EXPECT_EQ(Stored("SELECT count(*) FROM {t}orders"), "26");
}

TEST_P(PagingContract, RowsOfAPageLeftBehindAreWrittenFromTheObjects) {
  ActionOf("Order")->SetObjectBuffer(10);
  const auto orders = All("Order");
  const auto first = orders->Item(1);
  const auto last = orders->Item(25);
  Set(first, "name", "first");
  Set(last, "name", "last");
  orders->Update();
  EXPECT_EQ(Stored("SELECT name FROM {t}orders WHERE id = 1"), "first");
  EXPECT_EQ(Stored("SELECT name FROM {t}orders WHERE id = 25"), "last");
}

INSTANTIATE_TEST_SUITE_P(, PagingContract, testing::ValuesIn(BrokeringProfiles()),
                         [](const auto& profile) { return profile.param.Name; });

}  // namespace
}  // namespace velmoria::test
