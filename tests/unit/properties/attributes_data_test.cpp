#include "velmoria/properties/attributes_data.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "tests/support/scoped_apartment.h"
#include "velmoria/core/messages.h"
#include "velmoria/properties/attribute_data.h"

namespace velmoria::test {
namespace {

class AttributesDataTest : public testing::Test {
 protected:
  AttributesDataTest() {
    for (const char* name : {"A", "B", "C"}) attributes_->SetupItem({.Name = name}, {}, true);
  }
  std::string Names() const {
    std::string names;
    for (const auto& attribute : *attributes_) names += attribute->Name();
    return names;
  }
  static AttributeDataPtr New(const std::string& name) {
    auto data = Make<AttributeData>();
    data->Setup({.Name = name}, true);
    return data;
  }

  ScopedApartment apartment_;
  AttributesDataPtr attributes_ = Make<AttributesData>();
};

TEST_F(AttributesDataTest, MembersMadeCleanLeaveNoStamp) {
  EXPECT_EQ(Names(), "ABC");
  EXPECT_FALSE(attributes_->Dirty());
}

TEST_F(AttributesDataTest, NewMembersStamp) {
  attributes_->SetupItem({.Name = "D"});
  EXPECT_TRUE(attributes_->Dirty());
  attributes_->ClearDirty();
  EXPECT_FALSE(attributes_->Dirty());
  EXPECT_FALSE(attributes_->Item("D")->Dirty());
  attributes_->Add(New("E"));
  EXPECT_TRUE(attributes_->Dirty());
}

TEST_F(AttributesDataTest, RemovalRenamingAndChangesStamp) {
  attributes_->Remove(3);
  EXPECT_TRUE(attributes_->Dirty());
  attributes_->ClearDirty();
  attributes_->RenameItem("B", "X");
  EXPECT_TRUE(attributes_->Dirty());
  attributes_->ClearDirty();
  attributes_->Item("A")->SetSize(1);
  EXPECT_TRUE(attributes_->Dirty());
  EXPECT_EQ(Names(), "AX");
}

TEST_F(AttributesDataTest, MembersGoWhereThePositionSays) {
  attributes_->SetupItem({.Name = "D"}, {.Before = "b"});
  attributes_->SetupItem({.Name = "E"}, {.After = 1});
  attributes_->Add(New("F"), {.Before = 1});
  attributes_->Add(New("G"), {.After = "C"});
  attributes_->Add(New("H"), {.Before = Variant(), .After = Variant()});
  EXPECT_EQ(Names(), "FAEDBCGH");
}

TEST_F(AttributesDataTest, BothPositionsAreRefused) {
  constexpr const char* kBoth = "Passing both Before and After arguments is not allowed.";
  const Position both{.Before = 1, .After = "B"};
  ExpectRaised(errAdd_Attribute, [&] { attributes_->SetupItem({.Name = "D"}, both); }, {.Text = kBoth, .Count = 1});
  ExpectRaised(errAdd_Attribute, [&] { attributes_->Add(New("D"), both); }, {.Text = kBoth, .Count = 1});
  EXPECT_EQ(Names(), "ABC");
}

struct PlaceCase {
  const char* Name;
  Variant (*Place)();
  const char* Text;
  const char* Cause;
};

class AttributesDataPlaceTest : public AttributesDataTest, public testing::WithParamInterface<PlaceCase> {};

TEST_P(AttributesDataPlaceTest, PlaceThatIsNotThereIsRefusedWithItsText) {
  const auto place = GetParam().Place();
  const auto error = Thrown([&] { attributes_->SetupItem({.Name = "D"}, {.Before = place}); });
  ASSERT_TRUE(apartment_.Messages().Item(GetParam().Cause));
  EXPECT_EQ(apartment_.Messages().Item(GetParam().Cause)->SeverityFlags(), svfWarning);
  const auto text = std::string("Name: 'D'  Before: '") + GetParam().Text + "'  After: '(Missing)'";
  CheckRaised(errAdd_Attribute, error, {.Text = text, .Count = 2}, {__FILE__, __LINE__});
  ExpectRaised(errAdd_Attribute, [&] { attributes_->Add(New("D"), {.After = place}); }, {.Count = 2});
  EXPECT_EQ(Names(), "ABC");
  EXPECT_FALSE(attributes_->Dirty());
}

INSTANTIATE_TEST_SUITE_P(
    Table, AttributesDataPlaceTest,
    testing::Values(PlaceCase{"Zero", [] { return Variant(0); }, "0", "9"},
                    PlaceCase{"Negative", [] { return Variant(-1); }, "-1", "9"},
                    PlaceCase{"BehindTheEnd", [] { return Variant(4); }, "4", "9"},
                    PlaceCase{"Huge", [] { return Variant(1e300); }, "1e+300", "9"},
                    PlaceCase{"Boolean", [] { return Variant(true); }, "True", "9"},
                    PlaceCase{"UnknownName", [] { return Variant("X"); }, "X", "5"},
                    PlaceCase{"TextOfNoLength", [] { return Variant(""); }, "", "5"},
                    PlaceCase{"Null", [] { return Variant::Null(); }, "(Null)", "13"},
                    PlaceCase{"Date", [] { return Variant(Date{1}); }, "(Date)", "13"},
                    PlaceCase{"Bytes", [] { return Variant(std::vector<Byte>{1}); }, "(Byte())", "13"},
                    PlaceCase{"Nothing", [] { return Variant(AttributePtr()); }, "(Nothing)", "13"}),
    [](const auto& each) { return each.param.Name; });

struct IndexCase {
  const char* Name;
  Variant (*Index)();
  const char* Text;
};

class AttributesDataIndexTest : public AttributesDataTest, public testing::WithParamInterface<IndexCase> {};

TEST_P(AttributesDataIndexTest, IndexThatFindsNothingIsShownByItsType) {
  const auto index = GetParam().Index();
  const auto text = std::string("Index: ") + GetParam().Text;
  ExpectRaised(errItem_Attribute, [&] { attributes_->Item(index); }, {.Text = text, .Count = 1});
  const auto error = Thrown([&] { attributes_->Remove(index); });
  ASSERT_TRUE(apartment_.Messages().Item("15132"));
  EXPECT_EQ(apartment_.Messages().Item("15132")->Description(), "Problem removing Attribute.  " + text);
  CheckRaised(errItem_Attribute, error, {.Text = text, .Count = 2}, {__FILE__, __LINE__});
  EXPECT_EQ(Names(), "ABC");
  EXPECT_FALSE(attributes_->Dirty());
}

INSTANTIATE_TEST_SUITE_P(Table, AttributesDataIndexTest,
                         testing::Values(IndexCase{"Zero", [] { return Variant(0); }, "0"},
                                         IndexCase{"Integer", [] { return Variant(std::int16_t{-1}); }, "-1"},
                                         IndexCase{"BehindTheEnd", [] { return Variant(4); }, "4"},
                                         IndexCase{"Double", [] { return Variant(3.6); }, "3.6"},
                                         IndexCase{"Currency", [] { return Variant(Currency{45000}); }, "4.5"},
                                         IndexCase{"Decimal", [] { return Variant(Decimal::Parse("9.90")); }, "9.90"},
                                         IndexCase{"Byte", [] { return Variant(Byte{200}); }, "200"},
                                         IndexCase{"Boolean", [] { return Variant(false); }, "False"},
                                         IndexCase{"Name", [] { return Variant("X"); }, "'X'"},
                                         IndexCase{"TextOfNoLength", [] { return Variant(""); }, "''"},
                                         IndexCase{"Empty", [] { return Variant(); }, "'Empty'"},
                                         IndexCase{"Null", [] { return Variant::Null(); }, "'Null'"},
                                         IndexCase{"Missing", [] { return Variant::Missing(); }, "'Error'"},
                                         IndexCase{"Date", [] { return Variant(Date{1}); }, "'Date'"},
                                         IndexCase{"Array", [] { return Variant::ArrayOfValues({1}); }, "'Variant()'"},
                                         IndexCase{"Nothing", [] { return Variant(AttributePtr()); }, "'Nothing'"}),
                         [](const auto& each) { return each.param.Name; });

TEST_F(AttributesDataTest, NumbersOfEveryTypeArePositions) {
  for (const auto& index : {Variant(2), Variant(std::int16_t{2}), Variant(2.0F), Variant(1.6), Variant(Currency{20000}),
                            Variant(Decimal::Parse("2")), Variant(Byte{2}), Variant("b")}) {
    EXPECT_EQ(attributes_->Item(index)->Name(), "B") << index.TypeName();
  }
}

TEST_F(AttributesDataTest, NameInUseIsRefusedWhateverItsCase) {
  ExpectRaised(errAdd_Attribute, [&] { attributes_->SetupItem({.Name = "b"}); }, {.Text = "Name: 'b'", .Count = 2});
  ExpectRaised(errAdd_Attribute, [&] { attributes_->Add(New("b")); }, {.Count = 2});
  EXPECT_FALSE(attributes_->Dirty());
}

TEST_F(AttributesDataTest, NothingCannotBeAdded) {
  ExpectRaised(errAdd_Attribute, [&] { attributes_->Add({}); }, {.Text = "Name: ''"});
}

TEST_F(AttributesDataTest, RefusedValueAddsNothing) {
  ExpectRaised(errAttribute_DataType, [&] { attributes_->SetupItem({.Name = "D", .Value = "x", .DataType = dtDate}); });
  EXPECT_EQ(Names(), "ABC");
}

TEST_F(AttributesDataTest, RenamedMemberKeepsItsPositionAndItsValue) {
  attributes_->Item("B")->SetValue(7);
  attributes_->RenameItem("b", "Bee");
  EXPECT_EQ(attributes_->Item(2)->Name(), "Bee");
  EXPECT_EQ(attributes_->Item("BEE")->Value(), Variant(7));
  ExpectRaised(errItem_Attribute, [&] { attributes_->Item("B"); });
}

TEST_F(AttributesDataTest, NewNameInUseIsRefusedEvenByTheMemberItself) {
  ExpectRaised(errRename_Attribute, [&] { attributes_->RenameItem("A", "C"); },
               {.Text = "Name: 'A'  NewName: 'C'", .Count = 1});
  ExpectRaised(errRename_Attribute, [&] { attributes_->RenameItem("A", "a"); }, {.Count = 1});
  ExpectRaised(errRename_Attribute, [&] { attributes_->RenameItem("X", "A"); }, {.Count = 1});
  ExpectRaised(errItem_Attribute, [&] { attributes_->RenameItem("X", "Y"); }, {.Text = "Index: 'X'", .Count = 1});
  EXPECT_EQ(Names(), "ABC");
  EXPECT_FALSE(attributes_->Dirty());
}

TEST_F(AttributesDataTest, CopyIsCleanAndItsOwn) {
  attributes_->SetupItem({.Name = "D", .Value = 1, .DataType = dtByte, .Modifiable = false, .Size = 3, .Locked = true});
  const auto copy = attributes_->Copy();
  attributes_->Remove("A");
  EXPECT_EQ(copy->Count(), 4);
  EXPECT_FALSE(copy->Dirty());
  const auto member = copy->Item("D");
  EXPECT_NE(member, attributes_->Item("D"));
  EXPECT_EQ(member->Value(), Variant(Byte{1}));
  EXPECT_FALSE(member->Modifiable());
  EXPECT_EQ(member->Size(), 3);
  EXPECT_TRUE(member->Locked());
}

TEST_F(AttributesDataTest, DetailsListTheMembers) {
  attributes_->Remove("C");
  EXPECT_EQ(attributes_->Details(),
            "Attributes Count 2\r\n    Attribute: 'A'  DataType: 'Variant'  Value: ''"
            "\r\n    Attribute: 'B'  DataType: 'Variant'  Value: ''");
}

}  // namespace
}  // namespace velmoria::test
