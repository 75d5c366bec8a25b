#include <gtest/gtest.h>

#include "tests/support/rdo_builders.h"

namespace velmoria::test {
namespace {

/// What is not asked of the driver for every result.
class RdoShapeTest : public RdoTest {
 protected:
  rdoConnectionPtr connection_ = Open();

  rdoResultsetPtr OpenShape(const std::string& shape, const std::string& text = "SELECT") {
    return connection_->CreateQuery("", text)->OpenResultset(
        {.Type = rdOpenForwardOnly, .Repeatable = true, .Shape = shape});
  }
  void SetUp() override {
    odbc->Columns = {{"Id", 4}, {"Name", 12, 40}};
    odbc->Rows = {{"1", "Ann"}};
  }
  int Asked() const {
    const auto found = odbc->CallsOf.find("ColAttribute");
    return found == odbc->CallsOf.end() ? 0 : found->second;
  }
};

TEST_F(RdoShapeTest, AttributesOfTheColumnsOfAShapeAreAskedOnce) {
  OpenShape("people", "SELECT 1");
  const int asked = Asked();
  const auto again = OpenShape("people", "SELECT 2");
  EXPECT_GT(asked, 0);
  EXPECT_EQ(Asked(), asked);
  EXPECT_EQ(again->rdoColumns().At(Variant("Name"))->Size(), 40);
}

TEST_F(RdoShapeTest, ResultsWithoutAShapeAskTheDriverEachTime) {
  OpenShape("");
  const int asked = Asked();
  OpenShape("");
  EXPECT_EQ(Asked(), 2 * asked);
}

TEST_F(RdoShapeTest, AnotherShapeWithTheSameColumnsIsAskedByItself) {
  OpenShape("people");
  const int asked = Asked();
  OpenShape("People");
  EXPECT_EQ(Asked(), 2 * asked);
}

TEST_F(RdoShapeTest, ColumnOfAnotherNameTypeOrSizeIsNoticed) {
  const std::vector<FakeOdbc::Column> changes = {{"Title", 12, 40}, {"Name", 1, 40}, {"Name", 12, 41}};
  for (const auto& changed : changes) {
    odbc->Columns[1] = {"Name", 12, 40};
    OpenShape("people");
    odbc->Columns[1] = changed;
    const auto column = OpenShape("people")->rdoColumns().At(2);
    EXPECT_EQ(column->Name(), changed.Name);
    EXPECT_EQ(column->Type(), changed.Type);
    EXPECT_EQ(column->Size(), static_cast<rdoNumber>(changed.Size));
  }
}

TEST_F(RdoShapeTest, ColumnsMoreOrLessAreNoticed) {
  OpenShape("people");
  odbc->Columns.push_back({"Age", 4});
  odbc->Rows = {{"1", "Ann", "30"}};
  EXPECT_EQ(OpenShape("people")->rdoColumns().Count(), 3U);
  odbc->Columns.resize(1);
  odbc->Rows = {{"1"}};
  EXPECT_EQ(OpenShape("people")->rdoColumns().Count(), 1U);
}

TEST_F(RdoShapeTest, AnotherConnectionAsksForItself) {
  OpenShape("people");
  const int asked = Asked();
  connection_ = Open();
  OpenShape("people");
  EXPECT_EQ(Asked(), 2 * asked);
}

}  // namespace
}  // namespace velmoria::test
