#include <cstdint>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "tests/unit/data/agents/read_over_fake.h"

namespace velmoria::test {

namespace {

constexpr short kDouble = 8;
constexpr short kTimestamp = 93;
constexpr short kLongText = -1;
constexpr short kLongBytes = -4;

/// A statement that declares no parameters, so that those passed filter its rows.
class ResultFilterTest : public ReadOverFake {
 protected:
  ResultFilterTest() {
    driver_->Columns = {{"Id", kInteger}, {"Name", kVarchar, 40}, {"Amount", kDouble}, {"Placed", kTimestamp, 26}};
    driver_->Rows = {
        {"1", "Ada", "10", "2026-01-01 08:00:00"}, {"2", "Ben", "20", "2026-01-02 08:00:00"}, {"3", "Cyd", {}, {}},
        {"4", "Dan", "40", "2026-01-04 08:00:00"}, {"5", "Eve", "20", "2026-01-05 08:00:00"},
    };
  }

  RecordsetPtr Read(const PropertiesPtr& filters, std::int32_t buffer = 0) {
    if (!design_) Design({.SourceType = stSQL, .SourceText = "SELECT * FROM orders"});
    design_->Action->SetObjectBuffer(buffer);
    agent_ = design_->Agent(filters);
    return agent_->GetRecordset(0, nullptr, false);
  }
  static std::string Ids(const RecordsetPtr& page) {
    std::string text;
    for (std::int32_t row = 0; row < page->Count(); ++row)
      text += (row == 0 ? "" : " ") + std::to_string(IdAt(page, row));
    return text;
  }
  static PropertiesPtr Amount(const char* sign, const Variant& value) {
    return Parameter({.Name = "Amount", .Value = value, .DataType = dtDouble, .Operator = sign});
  }

  /// Rows 1 to 4 of a long column: of two values, of nothing and of Null.
  void HoldLongValues(short type, const std::string& first, const std::string& second) {
    driver_->Columns = {{"Id", kInteger}, {"Story", type, 255}};
    driver_->Rows = {{"1", first}, {"2", second}, {"3", ""}, {"4", {}}};
  }
  static PropertiesPtr Story(const char* sign, const Variant& value, zDataTypes type = dtByteArray) {
    return Parameter({.Name = "Story", .Value = value, .DataType = type, .Operator = sign});
  }
  static Variant Bytes(const std::string& text) { return std::vector<Byte>(text.begin(), text.end()); }

  DatabaseAgentPtr agent_;
};

struct OperatorCase {
  const char* Operator;
  const char* Ids;
};

TEST_F(ResultFilterTest, EveryOperatorAsksOfTheColumnAndNoOrderingOfANull) {
  const OperatorCase cases[] = {
      {"=", "2 5"},    {"<>", "1 3 4"}, {">", "4"},      {"<", "1"},
      {">=", "2 4 5"}, {"=>", "2 4 5"}, {"<=", "1 2 5"}, {"=<", "1 2 5"},
  };
  for (const auto& row : cases) EXPECT_EQ(Ids(Read(Amount(row.Operator, 20.0))), row.Ids) << row.Operator;
}

TEST_F(ResultFilterTest, TextIsComparedByItsCharactersAndADateByItsSecond) {
  EXPECT_EQ(Ids(Read(Parameter({.Name = "Name", .Value = "Cyd", .DataType = dtString, .Operator = ">"}))), "4 5");
  const auto when = Variant("2026-01-02 08:00:00").AsDate();
  EXPECT_EQ(Ids(Read(Parameter({.Name = "Placed", .Value = when, .DataType = dtDate, .Operator = ">"}))), "4 5");
  EXPECT_EQ(Ids(Read(Parameter({.Name = "Placed", .Value = when, .DataType = dtDate}))), "2");
}

TEST_F(ResultFilterTest, NullFindsTheRowsWithoutAValue) {
  EXPECT_EQ(Ids(Read(Amount("=", Variant::Null()))), "3");
  EXPECT_EQ(Ids(Read(Amount("<>", Variant::Null()))), "1 2 4 5");
}

TEST_F(ResultFilterTest, AllOfThemMustHoldWhateverTheOrFlag) {
  const auto filters = Amount("=", 20.0);
  filters->SetupItem({.Name = "Name", .Value = "Eve", .DataType = dtString});
  filters->Item("Name")->SetOrFlag(true);
  EXPECT_EQ(Ids(Read(filters)), "5");
}

TEST_F(ResultFilterTest, AColumnIsFoundByTheNameOfItsSourceToo) {
  EXPECT_EQ(Ids(Read(Parameter({.Name = "Who", .Value = "Ben", .DataType = dtString, .SourceName = "Name"}))), "2");
}

TEST_F(ResultFilterTest, NothingMatchesAColumnThatTheResultDoesNotHave) {
  EXPECT_EQ(Read(Parameter({.Name = "Nowhere", .Value = 1, .DataType = dtLongInteger}))->Count(), 0);
}

TEST_F(ResultFilterTest, AColumnWithoutANameAnswersToNoFilter) {
  driver_->Columns = {{"Id", kInteger}, {"", kInteger}};
  driver_->Rows = {{"1", "7"}};
  EXPECT_EQ(Read(Parameter({.Name = "Nowhere", .Value = 7, .DataType = dtLongInteger}))->Count(), 0);
}

TEST_F(ResultFilterTest, AFilterWithoutAValueIsNoneUnlessItIsRequired) {
  EXPECT_EQ(Ids(Read(Parameter({.Name = "Amount", .DataType = dtDouble}))), "1 2 3 4 5");
  EXPECT_EQ(Ids(Read(Parameter({.Name = "Amount", .DataType = dtDouble, .Flags = pfInput | pfRequired}))), "1 2 3 4 5");
}

TEST_F(ResultFilterTest, TheStatisticSaysWithFilter) {
  const auto page = Read(Amount("=", 20.0));
  EXPECT_EQ(page->Statistics()->Item("Read 'Shop' Rows with Filter")->SubjectCount(), 2);
}

TEST_F(ResultFilterTest, PagesHoldMatchesAloneAndTheNextOneBeginsWithAMatch) {
  const auto first = Read(Amount("<=", 40.0), 2);
  EXPECT_EQ(Ids(first), "1 2");
  EXPECT_EQ(first->FirstBookmark().AsLong(), 1);
  EXPECT_EQ(first->LastBookmark().AsLong(), 2);
  EXPECT_EQ(first->NextBookmark().AsLong(), 4);
  EXPECT_EQ(first->VirtualFirstNumber(), 0);
  const auto second = agent_->GetRecordset(0, first, false);
  EXPECT_EQ(Ids(second), "4 5");
  EXPECT_EQ(second->PrevBookmark().AsLong(), 2);
  EXPECT_TRUE(second->NextBookmark().IsEmpty());
  EXPECT_EQ(second->VirtualFirstNumber(), 1);
  EXPECT_EQ(driver_->Texts.size(), 1U);
}

TEST_F(ResultFilterTest, AFirstPageThatHoldsAllMatchesIsTheWholeResult) {
  EXPECT_EQ(Read(Amount("=", 20.0), 2)->VirtualFirstNumber(), -1);
  EXPECT_EQ(Read(Amount("=", 20.0), 0)->VirtualFirstNumber(), -1);
}

TEST_F(ResultFilterTest, TheRowCountLeavesTheFilterOut) {
  const auto page = Read(Amount("=", 20.0), 1);
  EXPECT_EQ(page->VirtualCount(), 5);
}

TEST_F(ResultFilterTest, NegativeBuffersReadAllMatchesForwards) { EXPECT_EQ(Ids(Read(Amount("=", 20.0), -1)), "2 5"); }

TEST_F(ResultFilterTest, NoMatchIsAnEmptyPage) {
  const auto page = Read(Amount(">", 1000.0), 2);
  EXPECT_EQ(page->Count(), 0);
  EXPECT_TRUE(page->FirstBookmark().IsEmpty());
  EXPECT_TRUE(page->NextBookmark().IsEmpty());
}

TEST_F(ResultFilterTest, WhatTheColumnCannotBeComparedWithIsRaised) {
  ExpectRaised(errRDO_Resultset, [&] { Read(Parameter({.Name = "Amount", .Value = "many", .DataType = dtString})); },
               {.Text = "SourceText: 'SELECT * FROM orders'"});
}

TEST_F(ResultFilterTest, LongTextIsComparedAsTextWhateverItsLength) {
  const std::string story = "\xC3\xA9 " + std::string(5000, 's');
  HoldLongValues(kLongText, story, "short");
  const OperatorCase cases[] = {{"=", "2"}, {"<>", "1 3 4"}, {">", "1"}, {"<", "3"}, {">=", "1 2"}, {"<=", "2 3"}};
  for (const auto& row : cases) EXPECT_EQ(Ids(Read(Story(row.Operator, "short", dtString))), row.Ids) << row.Operator;
  EXPECT_EQ(Ids(Read(Story("=", story, dtString))), "1");
  EXPECT_EQ(Ids(Read(Story("=", story))), "1");
  EXPECT_EQ(Ids(Read(Story("=", Bytes(story)))), "1");
  EXPECT_EQ(Ids(Read(Story("=", "", dtString))), "3");
}

TEST_F(ResultFilterTest, LongBytesAreComparedWithBytes) {
  HoldLongValues(kLongBytes, "\xFFz", "\x01");
  EXPECT_EQ(Ids(Read(Story("=", Bytes("\xFFz")))), "1");
  EXPECT_EQ(Ids(Read(Story("<>", Bytes("\xFFz")))), "2 3 4");
  EXPECT_EQ(Ids(Read(Story(">", Bytes("\x01")))), "1");
  ExpectRaised(errRDO_Resultset, [&] { Read(Story("=", "z")); }, {.Text = "SourceText: 'SELECT * FROM orders'"});
}

TEST_F(ResultFilterTest, NullFindsTheRowsWithoutALongValue) {
  for (const auto type : {kLongText, kLongBytes}) {
    HoldLongValues(type, "a", "b");
    EXPECT_EQ(Ids(Read(Story("=", Variant::Null()))), "4");
    EXPECT_EQ(Ids(Read(Story("<>", Variant::Null()))), "1 2 3");
  }
}

TEST_F(ResultFilterTest, LongValueThatBeginsAPageIsTestedAgainAsItIs) {
  HoldLongValues(kLongText, "a", "a");
  const auto both = Story("=", "a", dtString);
  both->SetupItem({.Name = "Again", .Value = "b", .DataType = dtString, .Operator = "<", .SourceName = "Story"});
  const auto first = Read(both, 1);
  EXPECT_EQ(Ids(first), "1");
  EXPECT_EQ(Ids(agent_->GetRecordset(0, first, false)), "2");
}

TEST_F(ResultFilterTest, LongValueThatTheResultCannotGoBackToIsRefusedByTheCursor) {
  driver_->Scrolls = false;
  HoldLongValues(kLongText, "a", "b");
  ExpectRaised(errNotSupported_Cursor, [&] { Read(Story("=", "b", dtString)); });
}

}  // namespace

}  // namespace velmoria::test
