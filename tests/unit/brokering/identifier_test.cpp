#include "velmoria/brokering/identifier.h"

#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "tests/support/sample_design.h"
#include "tests/support/scoped_apartment.h"
#include "velmoria/design/class_data.h"
#include "velmoria/design/server_data.h"
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

TEST_F(IdentifierTest, KeyByFormat) {
  const auto order = Of(design_.Order, {1042});
  const auto line = Of(design_.Line, {7, 2});
  EXPECT_EQ(order->Key(Format(false, false)), "1042");
  EXPECT_EQ(line->Key(Format(false, false)), "7|2");
  EXPECT_EQ(order->Key(Format(false, true)), "Id|1042");
  EXPECT_EQ(line->Key(Format(false, true)), "OrderId|7|LineNo|2");
  EXPECT_EQ(order->Key(Format(true, false)), "Sales|Order|1042");
  EXPECT_EQ(order->Key(Format(true, true)), "Sales|Order|Id|1042");
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
  EXPECT_EQ(identifier->Key(Format(false, false)), "");
}

TEST_F(IdentifierTest, KeyTakesNoNoticeOfEmptyKey) {
  const auto format = Framework().CreateKeyFormat({.EmptyKey = true});
  EXPECT_EQ(Of(design_.Order, {1042})->Key(format), "1042");
}

TEST_F(IdentifierTest, KeyTakesNoNoticeOfThePropertiesOfTheFormat) {
  const auto format = Format(false, false);
  format->Properties()->SetupItem({.Name = "Other"});
  EXPECT_EQ(Of(design_.Order, {1042})->Key(format), "1042");
}

TEST_F(IdentifierTest, NullAddsNothingAndWithAnEmptyKeyNoSeparatorFollows) {
  EXPECT_EQ(Of(design_.Line, {Variant::Null(), 2})->Key(Format(false, false)), "2");
  EXPECT_EQ(Of(design_.Line, {7, Variant::Null()})->Key(Format(false, false)), "7|");
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
  EXPECT_FALSE(Make<Identifier>()->Dirty());
}

TEST_F(IdentifierTest, DetailsTellServerClassAndProperties) {
  const auto identifier = Of(design_.Order, {1});
  EXPECT_EQ(identifier->Details(),
            "Identifier for Server: 'Sales'  Class: 'Order'\r\n" + identifier->Properties()->Details());
}

TEST_F(IdentifierTest, ClassWithoutIdentifierPropertiesCannotBuildOne) {
  const auto bare = design_.Sales->Classes()->SetupItem({.Name = "Bare"});
  ExpectRaised(errRequires_Identifier, [&] { bare->CreateIdentifier(); }, {.Text = "Class: 'Bare'"});
}

TEST_F(IdentifierTest, MissingKeyPropertyIsRefused) {
  const auto properties = Framework().CreateProperties();
  properties->SetupItem({.Name = "Other"});
  ExpectRaised(errIdentifier_Property, [&] { design_.Order->CreateIdentifier(properties); },
               {.Text = "Class: 'Order'"});
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
