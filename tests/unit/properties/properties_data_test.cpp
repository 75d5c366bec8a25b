#include "velmoria/properties/properties_data.h"

#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "tests/support/scoped_apartment.h"
#include "velmoria/properties/property_data.h"
#include "velmoria/velmoria.h"

namespace velmoria::test {
namespace {

class PropertiesDataTest : public testing::Test {
 protected:
  static PropertiesDataPtr Of(std::initializer_list<const char*> names) {
    auto data = Make<PropertiesData>();
    for (const char* name : names) {
      data->SetupItem(psUser,
                      {.Name = name, .SourceName = std::string("s") + name, .SourceColumn = name, .SourceTable = "t"},
                      {}, true);
    }
    return data;
  }
  static std::string Order(const PropertiesDataPtr& data) {
    std::string text;
    for (const auto& item : *data) text += item->Name() + std::to_string(item->OrderNumber());
    return text;
  }

  ScopedApartment apartment_;
};

TEST_F(PropertiesDataTest, ItemByPositionAndByNameWithoutRegardToCase) {
  const auto data = Of({"A", "B"});
  EXPECT_EQ(data->Item(2)->Name(), "B");
  EXPECT_EQ(data->Item("b")->Name(), "B");
  ExpectRaised(errItem_Property, [&] { data->Item("C"); }, {.Text = "Index: 'C'"});
  ExpectRaised(errItem_Property, [&] { data->Item(3); }, {.Text = "Index: 3"});
}

TEST_F(PropertiesDataTest, FindGivesNoneAndReportsNothing) {
  const auto data = Of({"A", "B"});
  EXPECT_EQ(data->Find("x", "sB"), data->Item("B"));
  EXPECT_EQ(data->Find("x", {}, "t.A"), data->Item("A"));
  EXPECT_FALSE(data->Find("x"));
  EXPECT_FALSE(data->Find("x", "SB"));
  EXPECT_EQ(Framework().Messages()->Count(), 0);
}

TEST_F(PropertiesDataTest, MembersAreNumberedByTheirPosition) {
  const auto data = Of({"A", "C"});
  data->SetupItem(psUser, {.Name = "B"}, {.Before = "C"});
  EXPECT_EQ(Order(data), "A1B2C3");
  data->Remove("A");
  EXPECT_EQ(Order(data), "B1C2");
}

TEST_F(PropertiesDataTest, ColumnsOfRowsKeepTheirNumbers) {
  const auto data = Of({"A", "B"});
  data->FixOrder();
  data->SetupItem(psUser, {.Name = "C"}, {.Before = 1});
  EXPECT_EQ(Order(data), "C3A1B2");
}

TEST_F(PropertiesDataTest, TakenNameIsAFailureOfTheContainer) {
  const auto data = Of({"A"});
  ExpectReported(RuntimeFailure::KeyInUse, [&] { data->SetupItem(psUser, {.Name = "a"}); });
  EXPECT_EQ(data->Count(), 1);
}

TEST_F(PropertiesDataTest, RenameKeepsThePositionAndRefusesATakenName) {
  const auto data = Of({"A", "B"});
  data->RenameItem("A", "Z");
  EXPECT_EQ(Order(data), "Z1B2");
  EXPECT_EQ(data->Item("Z")->Name(), "Z");
  ExpectRaised(errRename_Property, [&] { data->RenameItem("Z", "b"); }, {.Text = "Name: 'Z'  NewName: 'b'"});
  ExpectRaised(errRename_Property, [&] { data->RenameItem("Z", "z"); });
}

TEST_F(PropertiesDataTest, EveryChangeOfMembersStamps) {
  const auto data = Of({"A", "B"});
  EXPECT_FALSE(data->Dirty());
  const auto stamps = [&](auto change) {
    data->ClearDirty();
    change();
    return data->Dirty();
  };
  EXPECT_TRUE(stamps([&] { data->SetupItem(psUser, {.Name = "C"}); }));
  EXPECT_TRUE(stamps([&] { data->RenameItem("C", "D"); }));
  EXPECT_TRUE(stamps([&] { data->Remove("D"); }));
  EXPECT_TRUE(stamps([&] { data->Item("A")->SetCaption("c"); }));
}

TEST_F(PropertiesDataTest, ModifiableAsksAllOrOne) {
  const auto data = Of({"A", "B"});
  data->Item("A")->SetModifiable(false);
  EXPECT_FALSE(data->Modifiable(true));
  EXPECT_TRUE(data->Modifiable(false));
  EXPECT_TRUE(Of({})->Modifiable(true));
  EXPECT_FALSE(Of({})->Modifiable(false));
}

TEST_F(PropertiesDataTest, CopyHasMembersOfItsOwn) {
  const auto data = Of({"A", "B"});
  const auto copy = data->Copy(true);
  copy->Item("A")->SetCaption("c");
  EXPECT_EQ(Order(copy), "A1B2");
  EXPECT_EQ(data->Item("A")->Caption(), "");
}

TEST_F(PropertiesDataTest, DetailsIndentTheMembers) {
  const auto data = Of({"A"});
  EXPECT_EQ(data->Details(), "Properties Count 1\r\n    " + data->Item("A")->Details());
}

}  // namespace
}  // namespace velmoria::test
