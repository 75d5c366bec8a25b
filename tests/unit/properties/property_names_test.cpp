#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "tests/support/sample_rows.h"
#include "tests/support/scoped_apartment.h"
#include "tests/unit/properties/every_parent.h"
#include "velmoria/data/recordset_impl.h"
#include "velmoria/design/class_data.h"
#include "velmoria/design/connector_data.h"
#include "velmoria/design/source_data.h"
#include "velmoria/properties/parents_data.h"
#include "velmoria/velmoria.h"

namespace velmoria::test {
namespace {

class PropertyNamesTest : public testing::Test {
 protected:
  static PropertyPtr New(const PropertyFields& fields = {.Name = "X"}) { return Framework().CreateProperty(fields); }
  PropertyPtr Child(const PropertyFields& fields = {.Name = "X"}) const {
    auto property = New(fields);
    property->SetParents(psNone, all_);
    return property;
  }

  ScopedApartment apartment_;
  SampleRows rows_;
  Parents all_ = EveryParent(rows_.Design);
};

TEST_F(PropertyNamesTest, ParentThatIsThereIsRefusedInTheOrderOfTheParents) {
  const auto property = Child();
  for (const auto& row : kParentConflicts) {
    ExpectRaised(row.Number, [&] { property->SetParents(psNone, all_); },
                 {.Text = std::string("'") + row.Name + "'", .Count = 1});
    property->ClearParents(psNone, SlotOf(row));
  }
  property->SetParents(psNone, all_);
  EXPECT_EQ(property->ServerName(), "Sales");
}

TEST_F(PropertyNamesTest, RefusedParentsChangeNothing) {
  const auto property = New();
  Parents first;
  first.Class = all_.Class;
  property->SetParents(psUser, first);
  ExpectRaised(errParent_Class, [&] { property->SetParents(psIdentifier, all_); });
  EXPECT_EQ(property->ServerName(), "");
  EXPECT_EQ(property->Data()->Style(), psUser);
}

TEST_F(PropertyNamesTest, StyleOfNoneLeavesTheStyle) {
  const auto property = New();
  property->SetParents(psUser, {});
  property->SetParents(psNone, {});
  EXPECT_EQ(property->Data()->Style(), psUser);
  property->ClearParents(psNone, {});
  EXPECT_EQ(property->Data()->Style(), psUser);
  property->ClearParents(psNonPersistent, {});
  EXPECT_EQ(property->Data()->Style(), psNonPersistent);
}

TEST_F(PropertyNamesTest, ParentsThatAreNotThereCanBeCleared) {
  const auto property = New();
  property->ClearParents(psNone, ParentSlots::All());
  EXPECT_EQ(property->ServerName(), "");
}

TEST_F(PropertyNamesTest, ParentsAreNoChangeOfTheDefinition) {
  const auto property = New()->Copy();
  property->SetParents(psUser, all_);
  property->ClearParents(psNonPersistent, ParentSlots::All());
  EXPECT_FALSE(property->Dirty());
}

TEST_F(PropertyNamesTest, NamesAreThoseOfTheParents) {
  const auto property = Child();
  EXPECT_EQ(property->ServerName(), "Sales");
  EXPECT_EQ(property->ClassName(), "Order");
  EXPECT_EQ(property->ActionName(), "Get");
  EXPECT_EQ(property->DatabaseName(), "Shop");
  EXPECT_EQ(property->SourceText(), "orders");
}

TEST_F(PropertyNamesTest, WithoutParentsThereAreNoNames) {
  const auto property = Child();
  property->ClearParents(psNone, ParentSlots::All());
  for (const auto& each : {property, New()}) {
    EXPECT_EQ(each->ServerName() + each->ClassName() + each->ActionName() + each->DatabaseName() + each->SourceText(),
              "");
    EXPECT_EQ(each->Engine(), engUnknown);
  }
}

TEST_F(PropertyNamesTest, EngineIsTheSourcesThenTheConnectorsThenTheDatabasesThenItsOwn) {
  const auto source = Framework().CreateSource({.Engine = engOracle})->Data();
  const auto connector = Framework().CreateConnector({.Engine = engSybase})->Data();
  Parents parents = all_;
  parents.Source = source;
  parents.Connector = connector;
  const auto property = New({.Name = "X", .Engine = engInformix});
  property->SetParents(psNone, parents);
  EXPECT_EQ(property->Engine(), engOracle);
  property->ClearParents(psNone, {.Source = true});
  EXPECT_EQ(property->Engine(), engSybase);
  property->ClearParents(psNone, {.Connector = true});
  EXPECT_EQ(property->Engine(), engODBC);
  property->ClearParents(psNone, {.Database = true});
  EXPECT_EQ(property->Engine(), engInformix);
}

struct SourceTypeCase {
  const char* Name;
  zPropertyStyles Style;
  bool HasSource;
  const char* Table;
  zSourceTypes SourceType;
};

class PropertySourceTypeTest : public PropertyNamesTest, public testing::WithParamInterface<SourceTypeCase> {};

TEST_P(PropertySourceTypeTest, SourceTypeGoesByTheStyle) {
  const auto property = New({.Name = "X", .SourceTable = GetParam().Table});
  Parents parents;
  if (GetParam().HasSource) parents.Source = Framework().CreateSource({.Engine = engODBC, .SourceType = stSQL})->Data();
  property->SetParents(GetParam().Style, parents);
  EXPECT_EQ(property->SourceType(), GetParam().SourceType);
}

INSTANTIATE_TEST_SUITE_P(Table, PropertySourceTypeTest,
                         testing::Values(SourceTypeCase{"Parameter", psParameter, true, "orders", stSQL},
                                         SourceTypeCase{"ParameterWithoutSource", psParameter, false, "orders", stNone},
                                         SourceTypeCase{"PersistentWithoutRow", psPersistent, true, "orders", stTable},
                                         SourceTypeCase{"IdentifierOfATable", psIdentifier, true, "orders", stTable},
                                         SourceTypeCase{"UserProperty", psUser, true, "", stNone}),
                         [](const auto& each) { return each.param.Name; });

TEST_F(PropertyNamesTest, SourceTypeHasAName) {
  EXPECT_EQ(New({.Name = "X", .SourceTable = "orders"})->SourceTypeName(), "Table");
}

// On a row

TEST_F(PropertyNamesTest, RowTakesThePlaceOfTheParents) {
  const auto property = Make<Property>();
  property->Bind(New()->Data(), all_);
  property->Bind(rows_.Columns->Item("Name"), rows_.Rows, 0);
  rows_.Action->SetDatabaseName("Elsewhere");
  EXPECT_EQ(property->DatabaseName(), "Elsewhere");
  EXPECT_EQ(property->Value().AsText(), "Ada");
}

TEST_F(PropertyNamesTest, RowWithoutAnAgentHasNoNames) {
  const auto orphan = Make<Recordset>();
  orphan->Initialize({}, {.Columns = rows_.Columns});
  const auto property = Make<Property>();
  property->Bind(rows_.Columns->Item("Name"), orphan, 0);
  EXPECT_EQ(property->ServerName() + property->ClassName() + property->ActionName() + property->DatabaseName() +
                property->SourceText(),
            "");
  EXPECT_EQ(property->Engine(), engUnknown);
  EXPECT_EQ(property->SourceType(), stTable);
  EXPECT_EQ(property->EditFlags(), efNone);
}

TEST_F(PropertyNamesTest, EditFlagsGivenAtTheBindingComeBeforeTheActions) {
  rows_.Action->SetEditFlags(efUpdate);
  const auto property = Make<Property>();
  property->Bind(rows_.Columns->Item("Name"), rows_.Rows, 0, efDelete);
  EXPECT_EQ(property->EditFlags(), efDelete);
  EXPECT_EQ(property->EditFlagsDisplay(), "Delete");
  EXPECT_EQ(rows_.Row(0)->Item("Name")->EditFlags(), efUpdate);
  const auto free = Make<Property>();
  free->Bind(New()->Data(), Parents(), efInsert);
  EXPECT_EQ(free->EditFlags(), efInsert);
}

TEST_F(PropertyNamesTest, EditFlagsOfAMemberStayThoseOfTheActionWhenItWasMade) {
  rows_.Action->SetEditFlags(efUpdate);
  const auto row = rows_.Row(0);
  const auto property = row->Item("Name");
  rows_.Action->SetEditFlags(efDelete);
  EXPECT_EQ(property->EditFlags(), efUpdate);
  EXPECT_EQ(property->Copy()->EditFlags(), efUpdate);
  EXPECT_EQ(row->EditFlags(), efDelete);
}

}  // namespace
}  // namespace velmoria::test
