#include "velmoria/brokering/identifier.h"

#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "tests/support/sample_design.h"
#include "tests/support/scoped_apartment.h"
#include "velmoria/design/class_data.h"
#include "velmoria/design/server_data.h"
#include "velmoria/properties/properties_data.h"
#include "velmoria/properties/property_data.h"
#include "velmoria/velmoria.h"

namespace velmoria::test {
namespace {

class IdentifierTest : public testing::Test {
 protected:
  IdentifierPtr Of(const ClassPtr& classObject, std::initializer_list<Variant> values) const {
    auto identifier = classObject->CreateIdentifier();
    std::int32_t position = 0;
    for (const auto& value : values) identifier->Properties()->Item(++position)->SetValue(value);
    return identifier;
  }
  static KeyFormatPtr Format(bool mixed, bool includeNames, const std::string& separator = "|") {
    return Framework().CreateKeyFormat({.Separator = separator, .Mixed = mixed, .IncludeNames = includeNames});
  }

  ScopedApartment apartment_;
  SampleDesign design_;
};

struct KeyRow {
  bool Mixed;
  bool IncludeNames;
  const char* Separator;
  const char* OfOrder;  // Sales, Order, Id = 1042
  const char* OfLine;   // Sales, Line, OrderId = 7, LineNo = 2
};

constexpr KeyRow kKeys[] = {
    {false, false, "|", "1042", "7|2"},
    {false, true, "|", "Id|1042", "OrderId|7|LineNo|2"},
    {true, false, "|", "Sales|Order|1042", "Sales|Line|7|2"},
    {true, true, "|", "Sales|Order|Id|1042", "Sales|Line|OrderId|7|LineNo|2"},
    {false, false, "", "1042", "72"},
    {false, true, "", "Id1042", "OrderId7LineNo2"},
    {true, false, "", "SalesOrder1042", "SalesLine72"},
    {true, true, "", "SalesOrderId1042", "SalesLineOrderId7LineNo2"},
    {true, true, " - ", "Sales - Order - Id - 1042", "Sales - Line - OrderId - 7 - LineNo - 2"},
};

TEST_F(IdentifierTest, KeyFollowsItsFormat) {
  const auto order = Of(design_.Order, {1042});
  const auto line = Of(design_.Line, {7, 2});
  for (const auto& row : kKeys) {
    const auto format = Format(row.Mixed, row.IncludeNames, row.Separator);
    EXPECT_EQ(order->Key(format), row.OfOrder);
    EXPECT_EQ(line->Key(format), row.OfLine);
  }
}

TEST_F(IdentifierTest, KeyWithoutAFormatTakesTheDefaultOne) {
  apartment_.State().DefaultKeyFormat->SetSeparator("/");
  EXPECT_EQ(Of(design_.Line, {7, 2})->Key(), "7/2");
}

TEST_F(IdentifierTest, ValuesShowAsTheirText) {
  const auto identifier = design_.Order->CreateIdentifier();
  const auto id = identifier->Properties()->Item(1);
  const auto key = [&](zDataTypes dataType, const Variant& value) {
    id->SetDataType(dataType);
    id->SetValue(value);
    return identifier->Key();
  };
  EXPECT_EQ(key(dtString, "a'b"), "a'b");
  EXPECT_EQ(key(dtBoolean, true), "True");
  EXPECT_EQ(key(dtDouble, 0.1), "0.1");
  EXPECT_EQ(key(dtDecimal, Decimal::Parse("10.50")), "10.50");
  EXPECT_EQ(key(dtDate, Date::From(1998, 6, 1, 9, 0, 0)), "1998-06-01 09:00:00");
}

TEST_F(IdentifierTest, DefaultFormatRunsTheValuesTogether) {
  EXPECT_EQ(Of(design_.Line, {7, 2})->Key(), "72");
  EXPECT_EQ(Of(design_.Line, {1, 23})->Key(), Of(design_.Line, {12, 3})->Key());
}

TEST_F(IdentifierTest, MixedKeyWithoutPropertiesIsServerAndClass) {
  auto identifier = Make<Identifier>();
  const auto order = design_.Order;
  identifier->Setup(design_.Sales->Data(), order->Data(), Framework().CreateProperties());
  EXPECT_EQ(identifier->Key(Format(true, false)), "Sales|Order");
  EXPECT_EQ(identifier->Key(Format(true, true)), "Sales|Order");
  EXPECT_EQ(identifier->Key(Format(true, false, "")), "SalesOrder");
  EXPECT_EQ(identifier->Key(Format(false, false)), "");
}

TEST_F(IdentifierTest, KeyTakesNoNoticeOfEmptyKey) {
  const auto format = Framework().CreateKeyFormat({.EmptyKey = true});
  EXPECT_EQ(Of(design_.Order, {1042})->Key(format), "1042");
  const auto entered = Format(true, true);
  entered->SetEmptyKey(true);
  EXPECT_EQ(Of(design_.Order, {1042})->Key(entered), "Sales|Order|Id|1042");
}

TEST_F(IdentifierTest, KeyTakesNoNoticeOfThePropertiesOfTheFormat) {
  const auto format = Format(false, false);
  format->Properties()->SetupItem({.Name = "Other"});
  EXPECT_EQ(Of(design_.Order, {1042})->Key(format), "1042");
}

TEST_F(IdentifierTest, NullAddsNothingAndWithAnEmptyKeyNoSeparatorFollows) {
  EXPECT_EQ(Of(design_.Line, {Variant::Null(), 2})->Key(Format(false, false)), "2");
  EXPECT_EQ(Of(design_.Line, {7, Variant::Null()})->Key(Format(false, false)), "7|");
  EXPECT_EQ(Of(design_.Line, {Variant::Null(), Variant::Null()})->Key(Format(false, false)), "");
  EXPECT_EQ(Of(design_.Line, {Variant::Null(), 2})->Key(Format(false, true)), "OrderId||LineNo|2");
  EXPECT_EQ(Of(design_.Line, {Variant::Null(), 2})->Key(Format(true, false)), "Sales|Line||2");
}

TEST_F(IdentifierTest, UnsetNumberIsZeroInAKey) { EXPECT_EQ(design_.Order->CreateIdentifier()->Key(), "0"); }

TEST_F(IdentifierTest, BytesHaveNoPlaceInAKey) {
  const auto identifier = design_.Order->CreateIdentifier();
  identifier->Properties()->Item(1)->SetDataType(dtByteArray);
  identifier->Properties()->Item(1)->SetValue(std::vector<Byte>{1});
  ExpectReported(RuntimeFailure::TypeMismatch, [&] { identifier->Key(); });
}

TEST_F(IdentifierTest, NamesAreThoseOfServerAndClass) {
  const auto identifier = Of(design_.Order, {1});
  EXPECT_EQ(identifier->ServerName(), "Sales");
  EXPECT_EQ(identifier->ClassName(), "Order");
}

TEST_F(IdentifierTest, DirtyWhenAKeyValueIs) {
  const auto identifier = design_.Order->CreateIdentifier();
  EXPECT_FALSE(identifier->Dirty());
  identifier->Properties()->Item(1)->SetValue(1);
  EXPECT_TRUE(identifier->Dirty());
  identifier->Properties()->ClearDirty();
  EXPECT_FALSE(identifier->Dirty());
}

TEST_F(IdentifierTest, OneThatWasNotSetUpIsNobodys) {
  const auto identifier = Make<Identifier>();
  EXPECT_FALSE(identifier->Dirty());
  EXPECT_FALSE(identifier->Properties());
  EXPECT_EQ(identifier->Details(), "Identifier for Server: ''  Class: ''\r\n");
  ExpectReported(RuntimeFailure::ObjectNotSet, [&] { identifier->Key(); });
}

TEST_F(IdentifierTest, DetailsTellServerClassAndProperties) {
  const auto identifier = Of(design_.Order, {1});
  EXPECT_EQ(identifier->Details(),
            "Identifier for Server: 'Sales'  Class: 'Order'\r\n" + identifier->Properties()->Details());
}

TEST_F(IdentifierTest, AsksTheRowForItsKeyBeforeAndAfterItsPropertiesWereAskedFor) {
  const auto properties = Framework().CreateProperties();
  const auto id = properties->SetupItem({.Name = "Id", .Value = 7});
  const auto identifier = design_.Order->CreateIdentifier(properties);
  EXPECT_EQ(identifier->Key(Format(true, true)), "Sales|Order|Id|7");
  EXPECT_EQ(identifier->Dirty(), id->DirtyValue());
  EXPECT_EQ(identifier->Properties()->Item(1), id);
  EXPECT_EQ(identifier->Properties(), identifier->Properties());
  id->SetValue(8);
  EXPECT_EQ(identifier->Key(Format(true, true)), "Sales|Order|Id|8");
  EXPECT_TRUE(identifier->Dirty());
}

TEST_F(IdentifierTest, ClassWithoutIdentifierPropertiesCannotBuildOne) {
  const auto bare = design_.Sales->Classes()->SetupItem({.Name = "Bare"});
  ExpectRaised(errRequires_Identifier, [&] { bare->CreateIdentifier(); }, {.Text = "Class: 'Bare'"});
}

TEST_F(IdentifierTest, MissingKeyPropertyIsRefused) {
  const auto properties = Framework().CreateProperties();
  properties->SetupItem({.Name = "Other"});
  const auto missing = design_.Order->Data()->PropertiesData()->Item("Id")->Details();
  ExpectRaised(errIdentifier_Property, [&] { design_.Order->CreateIdentifier(properties); },
               {.Text = "Property: '" + missing + "'  Class: 'Order'", .Count = 1});
}

TEST_F(IdentifierTest, KeyPropertiesAreFoundByNameOrBySourceInTheOrderOfTheClass) {
  const auto properties = Framework().CreateProperties();
  const auto line = properties->SetupItem({.Name = "Number", .Value = 2, .SourceName = "LineNo"});
  const auto order = properties->SetupItem({.Name = "orderid", .Value = 7});
  const auto identifier = design_.Line->CreateIdentifier(properties);
  EXPECT_EQ(identifier->Properties()->Item(1), order);
  EXPECT_EQ(identifier->Properties()->Item(2), line);
  EXPECT_EQ(identifier->Key(Format(false, true)), "orderid|7|Number|2");
}

TEST_F(IdentifierTest, WithoutPropertiesItsOwnAreUnsetCopiesOfTheDefinition) {
  const auto identifier = design_.Line->CreateIdentifier();
  EXPECT_EQ(identifier->Properties()->Count(), 2);
  EXPECT_TRUE(identifier->Properties()->EmptyValues());
  identifier->Properties()->Item(1)->SetValue(7);
  EXPECT_TRUE(design_.Line->Properties()->EmptyValues());
}

TEST_F(IdentifierTest, SharesTheMembersGivenAndTheirFlagsGrow) {
  const auto properties = Framework().CreateProperties();
  const auto id = properties->SetupItem({.Name = "Id", .Flags = pfcounter});
  const auto identifier = design_.Order->CreateIdentifier(properties);
  EXPECT_EQ(identifier->Properties()->Item(1), id);
  EXPECT_EQ(id->Flags(), pfcounter | pfInput);
}

}  // namespace
}  // namespace velmoria::test
