#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/fake_odbc.h"
#include "tests/support/one_action.h"
#include "tests/support/refusal.h"
#include "tests/support/scoped_apartment.h"
#include "velmoria/data/recordset_impl.h"
#include "velmoria/velmoria.h"

namespace velmoria::test {

namespace {

/// The insert of a row whose key a server of the Transact-SQL family counts.
class IdentityTest : public testing::Test {
 protected:
  IdentityTest() {
    driver_->Columns = {{"Id", kInteger}, {"Name", kVarchar, 40}};
    scope_.State().Platform.Odbc = driver_;
    design_ = std::make_unique<OneAction>();
    design_->Class->Properties()->Item("Id")->SetFlags(pfcounter);
    row_ = design_->Read()->CreatePersistentProperties("");
    row_->Item("Name")->SetValue("x");
  }
  /// What the insert brings back.
  void Answer(const std::string& id) {
    driver_->Columns = {{"Id", kInteger}};
    driver_->Rows = {{id}};
  }
  void AnswerNothing() {
    driver_->Columns.clear();
    driver_->Rows.clear();
  }

  static constexpr odbc::Small kInteger = 4;
  static constexpr odbc::Small kVarchar = 12;

  std::shared_ptr<FakeOdbc> driver_ = std::make_shared<FakeOdbc>();
  ScopedApartment scope_;
  std::unique_ptr<OneAction> design_;
  PropertiesPtr row_;
};

TEST_F(IdentityTest, CounterShowsInTheValueAndInTheKeyAndMakesNothingDirty) {
  const auto identifier = row_->Identifier();
  Answer("42");
  row_->Update();
  EXPECT_EQ(row_->Item("Id")->Value(), Variant(42));
  EXPECT_EQ(identifier->Key(), "42");
  EXPECT_EQ(row_->StateFlags(), sfpersistent);
  EXPECT_FALSE(row_->DirtyValues());
  EXPECT_FALSE(identifier->Dirty());
}

TEST_F(IdentityTest, ChangeBehindTheInsertFindsTheRowByTheCounter) {
  Answer("42");
  row_->Update();
  row_->Item("Name")->SetValue("y");
  row_->Update();
  EXPECT_EQ(driver_->Texts.back(), "UPDATE orders SET Name = 'y' WHERE Id = 42");
}

TEST_F(IdentityTest, CounterThatNeverComesBackIsReportedAndLeavesTheRowNewSoThatItIsInsertedAgain) {
  AnswerNothing();
  const Refusal expected{errRDO_Identity_Insert,
                         "SQLAgent.InsertPersistentProperties",
                         "RDO SQL Insert statement did not return a new IDENTITY value for Identifier Property.  "
                         "Property: 'Id'",
                         {"Id"},
                         "Some database engines do not support Inserting new records into tables with IDENTITY columns "
                         "during a complex transaction."};
  row_->Item("Id")->SetFlags(pfcounter);
  ExpectRefusal(expected, [&] { row_->Update(); });
  EXPECT_EQ(row_->StateFlags(), sfNew | sfdirty);
  Answer("42");
  row_->Update();
  EXPECT_EQ(driver_->Texts.size(), 3U) << "the table, and two inserts";
  EXPECT_EQ(row_->StateFlags(), sfpersistent);
}

}  // namespace

}  // namespace velmoria::test
