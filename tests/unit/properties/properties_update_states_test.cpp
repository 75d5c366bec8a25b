#include <algorithm>
#include <iterator>
#include <ostream>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "tests/support/sample_rows.h"
#include "tests/support/scoped_apartment.h"
#include "velmoria/velmoria.h"

namespace velmoria::test {
namespace {

constexpr auto kPending = sfpersistent | sfpendingdelete;

// The states of a row

PropertiesPtr Changed(const PropertiesPtr& row) {
  row->Item("Name")->SetValue("Eve");
  return row;
}

PropertiesPtr Flagged(const PropertiesPtr& row) {
  row->Delete();
  return row;
}

PropertiesPtr Gone(const PropertiesPtr& row) {
  Flagged(row)->Update();
  return row;
}

struct State {
  const char* Called;
  PropertiesPtr (*Make)(const SampleRows& rows);
};

constexpr State kStates[] = {
    {"persistent", [](const SampleRows& rows) { return rows.Row(0); }},
    {"persistent and changed", [](const SampleRows& rows) { return Changed(rows.Row(0)); }},
    {"new", [](const SampleRows& rows) { return rows.NewRow(); }},
    {"new and changed", [](const SampleRows& rows) { return Changed(rows.NewRow()); }},
    {"pending", [](const SampleRows& rows) { return Flagged(rows.Row(0)); }},
    {"pending and changed", [](const SampleRows& rows) { return Flagged(Changed(rows.Row(0))); }},
    {"deleted", [](const SampleRows& rows) { return Gone(rows.Row(0)); }},
};

PropertiesPtr RowIn(const std::string& state, const SampleRows& rows) {
  for (const auto& each : kStates) {
    if (state != each.Called) continue;
    auto row = each.Make(rows);
    rows.Database->Inserts = rows.Database->Updates = rows.Database->Deletes = 0;
    return row;
  }
  return {};
}

// What moves a row

struct Act {
  const char* Called;
  void (*Do)(Properties& row);
};

constexpr Act kActs[] = {
    {"let", [](Properties& row) { row.Item("Name")->SetValue("Mia"); }},
    {"Delete", [](Properties& row) { row.Delete(); }},
    {"Update", [](Properties& row) { row.Update(); }},
    {"Undo", [](Properties& row) { row.Undo(); }},
};

void Do(const std::string& act, Properties& row) {
  for (const auto& each : kActs) {
    if (act == each.Called) each.Do(row);
  }
}

struct Cell {
  const char* State;
  const char* Act;
  zStateFlags Ends;
  const char* Told = "";
  const char* Written = "";
  bool Refused = false;  // with 15113
};

void PrintTo(const Cell& cell, std::ostream* stream) { *stream << cell.Act << " of a row that is " << cell.State; }

constexpr Cell kCells[] = {
    {"persistent", "let", sfpersistent | sfdirty},
    {"persistent", "Delete", kPending, "before delete, after delete, "},
    {"persistent", "Update", sfpersistent},
    {"persistent", "Undo", sfpersistent},

    {"persistent and changed", "let", sfpersistent | sfdirty},
    {"persistent and changed", "Delete", kPending | sfdirty, "before delete, after delete, "},
    {"persistent and changed", "Update", sfpersistent, "before update, after update, ", "update"},
    {"persistent and changed", "Undo", sfpersistent},

    // Nothing to write is no reason to leave the listeners out, nor to forget that the row is new.
    {"new", "let", sfNew | sfdirty},
    {"new", "Delete", sfdeleted, "before delete, after delete, "},
    {"new", "Update", sfNew, "before update, after update, "},
    {"new", "Undo", sfNew},

    {"new and changed", "let", sfNew | sfdirty},
    {"new and changed", "Delete", sfdeleted, "before delete, after delete, "},
    {"new and changed", "Update", sfpersistent, "before update, after update, ", "insert"},
    {"new and changed", "Undo", sfdeleted},

    {"pending", "let", kPending | sfdirty},
    {"pending", "Delete", kPending},
    {"pending", "Update", sfdeleted, "before update, after update, ", "delete"},
    {"pending", "Undo", sfpersistent},

    {"pending and changed", "let", kPending | sfdirty},
    {"pending and changed", "Delete", kPending | sfdirty},
    {"pending and changed", "Update", sfdeleted, "before update, after update, ", "delete"},
    {"pending and changed", "Undo", sfpersistent},

    {"deleted", "let", sfdeleted, "", "", true},
    {"deleted", "Delete", sfdeleted},
    {"deleted", "Update", sfdeleted, "", "", true},
    {"deleted", "Undo", sfdeleted, "", "", true},
};

class RowStatesTest : public testing::TestWithParam<Cell> {
 protected:
  void Listen(Properties& row) {
    row.BeforeUpdate += [this](bool&) { told_ += "before update, "; };
    row.AfterUpdate += [this] { told_ += "after update, "; };
    row.BeforePendingDelete += [this](bool&) { told_ += "before delete, "; };
    row.AfterPendingDelete += [this] { told_ += "after delete, "; };
  }
  std::string Written() const {
    std::string written;
    for (int count = 0; count < rows_.Database->Inserts; ++count) written += "insert";
    for (int count = 0; count < rows_.Database->Updates; ++count) written += "update";
    for (int count = 0; count < rows_.Database->Deletes; ++count) written += "delete";
    return written;
  }

  ScopedApartment apartment_;
  SampleRows rows_;
  std::string told_;
};

TEST_P(RowStatesTest, OperationLeavesStateEventsAndStatementsOfTheTable) {
  const auto& cell = GetParam();
  const auto row = RowIn(cell.State, rows_);
  Listen(*row);
  if (cell.Refused) {
    ExpectRaised(errPersistence_Deleted, [&] { Do(cell.Act, *row); }, {.Text = "Identifier: '0'"});
  } else {
    Do(cell.Act, *row);
    EXPECT_EQ(apartment_.Messages().Count(), 0);
  }
  EXPECT_EQ(row->StateFlags(), cell.Ends);
  EXPECT_EQ(told_, cell.Told);
  EXPECT_EQ(Written(), cell.Written);
}

INSTANTIATE_TEST_SUITE_P(Table, RowStatesTest, testing::ValuesIn(kCells));

TEST(RowStatesTableTest, EveryActIsToldForEveryStateOnce) {
  for (const auto& state : kStates) {
    for (const auto& act : kActs) {
      const auto told = [&](const Cell& cell) {
        return std::string(cell.State) == state.Called && std::string(cell.Act) == act.Called;
      };
      EXPECT_EQ(std::count_if(std::begin(kCells), std::end(kCells), told), 1) << act.Called << " " << state.Called;
    }
  }
}

// The state as it is set from outside

struct Letting {
  const char* State;
  zStateFlags WithNone;   // after StateFlags = none
  zStateFlags WithDirty;  // after StateFlags = sfdirty
  zStateFlags WithAll;    // after StateFlags = all
};

void PrintTo(const Letting& letting, std::ostream* stream) {
  *stream << "StateFlags of a row that is " << letting.State;
}

constexpr Letting kLettings[] = {
    {"persistent", sfpersistent, sfpersistent, sfpersistent},
    {"persistent and changed", sfpersistent, sfpersistent | sfdirty, sfpersistent | sfdirty},
    {"new", sfpersistent, sfpersistent, sfNew},
    // A value that stands where there was none is a change of a new row only.
    {"new and changed", sfpersistent, sfpersistent, sfNew | sfdirty},
    {"pending", sfpersistent, sfpersistent, kPending},
    {"pending and changed", sfpersistent, sfpersistent | sfdirty, kPending | sfdirty},
    {"deleted", sfdeleted, sfdeleted, sfdeleted},
};

class RowStateLettingTest : public testing::TestWithParam<Letting> {
 protected:
  zStateFlags After(zStateFlags flags) const {
    const auto row = RowIn(GetParam().State, rows_);
    row->SetStateFlags(flags);
    return row->StateFlags();
  }

  ScopedApartment apartment_;
  SampleRows rows_;
};

TEST_P(RowStateLettingTest, NoFlagTakesTheRowOutOfEveryListButTheDeleted) { EXPECT_EQ(After({}), GetParam().WithNone); }

TEST_P(RowStateLettingTest, DirtyAloneKeepsTheChanges) { EXPECT_EQ(After(sfdirty), GetParam().WithDirty); }

TEST_P(RowStateLettingTest, FlagsThatTheRowLacksAreNotSet) {
  constexpr auto kAll = sfpersistent | sfNew | sfdeleted | sfpendingdelete | sfdirty | sfnonpersistent;
  EXPECT_EQ(After(kAll), GetParam().WithAll);
}

INSTANTIATE_TEST_SUITE_P(Table, RowStateLettingTest, testing::ValuesIn(kLettings));

}  // namespace
}  // namespace velmoria::test
