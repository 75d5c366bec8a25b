#include <ostream>

#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "tests/support/sample_rows.h"
#include "tests/support/scoped_apartment.h"
#include "velmoria/velmoria.h"

namespace velmoria::test {
namespace {

struct Replaced {
  const char* Name;
  Variant (*Old)();
  Variant (*Set)();
  bool IsRestored;
};

void PrintTo(const Replaced& row, std::ostream* stream) { *stream << row.Name; }

const Replaced kReplaced[] = {
    {"CurrencyStaysChanged", [] { return Variant(Currency{10000}); }, [] { return Variant(Currency{20000}); }, false},
    {"DecimalStaysChanged", [] { return Variant(Decimal::Parse("1.5")); },
     [] { return Variant(Decimal::Parse("2.5")); }, false},
    {"BytesStayChanged", [] { return Variant(std::vector<Byte>{1}); }, [] { return Variant(std::vector<Byte>{2}); },
     false},
    {"VariantArrayStaysChanged", [] { return Variant::ArrayOfValues({1}); }, [] { return Variant::ArrayOfValues({2}); },
     false},
    {"ObjectComesBack", [] { return Variant(Framework{}.CreateProperties()); }, [] { return Variant(1); }, true},
    {"ErrorComesBack", [] { return Variant::Missing(); }, [] { return Variant(1); }, true},
};

class RestoredByTypeTest : public testing::TestWithParam<Replaced> {
 protected:
  ScopedApartment apartment_;
};

TEST_P(RestoredByTypeTest, UndoGoesByTheTypeOfTheOldValue) {
  const SampleRows rows;
  const auto old = GetParam().Old();
  const auto set = GetParam().Set();
  // The first change is from Empty, which is no old value; the second keeps the first.
  rows.Rows->SetValue(0, "Photo", old);
  rows.Rows->SetValue(0, "Photo", set);
  EXPECT_TRUE(rows.Rows->OldValues(0, "Photo") == old);
  rows.Rows->Undo(0, "Photo");
  EXPECT_TRUE(rows.Rows->Values(0, rows.Column("Photo")) == (GetParam().IsRestored ? old : set));
}

INSTANTIATE_TEST_SUITE_P(, RestoredByTypeTest, testing::ValuesIn(kReplaced),
                         [](const auto& row) { return row.param.Name; });

class PendingRowTest : public testing::Test {
 protected:
  ScopedApartment apartment_;
};

TEST_F(PendingRowTest, UndoPassesOverADefinitionThatJoinedBehindTheColumns) {
  const SampleRows rows;
  const auto row = rows.Row(0);
  row->SetupItem({.Name = "Extra"});
  row->Item("Note")->SetValue("call back");
  rows.Rows->Undo(0);
  EXPECT_EQ(rows.Rows->StateFlags(0), sfpersistent);
  EXPECT_TRUE(row->Item("Note")->Value().IsNull());
}

TEST_F(PendingRowTest, UndoOfOneColumnOfADirtyRowTakesTheDeleteBackAndLeavesTheRowDirty) {
  const SampleRows rows;
  rows.Rows->SetValue(0, "Note", "text");
  rows.Rows->SetValue(0, "Name", "Eve");
  rows.Rows->DeletePersistentProperties(0);
  rows.Rows->Undo(0, "Note");
  EXPECT_EQ(rows.Rows->StateFlags(0), sfpersistent | sfdirty);
  EXPECT_TRUE(rows.Rows->Values(0, rows.Column("Note")).IsNull());
  EXPECT_EQ(rows.Rows->Values(0, rows.Column("Name")), Variant("Eve"));
}

TEST_F(PendingRowTest, SecondDeleteFailsByTheKeyOfTheFirstAndTheRowStaysPending) {
  const SampleRows rows;
  rows.Rows->DeletePersistentProperties(0);
  ExpectReported(RuntimeFailure::KeyInUse, [&] { rows.Rows->DeletePersistentProperties(0); });
  EXPECT_EQ(rows.Rows->StateFlags(0), sfpersistent | sfpendingdelete);
}

}  // namespace
}  // namespace velmoria::test
