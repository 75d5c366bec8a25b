#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "tests/support/scoped_apartment.h"
#include "velmoria/properties/property_data.h"
#include "velmoria/velmoria.h"

namespace velmoria::test {
namespace {

class FrameworkFactoriesTest : public testing::Test {
 protected:
  ScopedApartment apartment_;
  Framework framework_;
};

TEST_F(FrameworkFactoriesTest, PropertyIsOfStyleNonPersistent) {
  EXPECT_EQ(framework_.CreateProperty({.Name = "X"})->Data()->Style(), psNonPersistent);
}

TEST_F(FrameworkFactoriesTest, PropertyHasItsFieldsAndDefaults) {
  const auto property = framework_.CreateProperty({.Name = "X", .Value = 5, .DataType = dtLongInteger});
  EXPECT_EQ(property->Name(), "X");
  EXPECT_EQ(property->Value(), Variant(5));
  EXPECT_TRUE(property->Modifiable());
  EXPECT_EQ(property->Engine(), engUnknown);
  EXPECT_EQ(framework_.CreateProperty({"Y", "text", dtString, 10})->Size(), 10);
}

TEST_F(FrameworkFactoriesTest, PropertiesSupportAdd) {
  const auto plain = framework_.CreateProperties();
  EXPECT_TRUE(plain->SupportsAdd());
  EXPECT_TRUE(plain->SupportsRemove());
  const auto fixed = framework_.CreateProperties({"Key", true, false, engOracle});
  EXPECT_EQ(fixed->Name(), "Key");
  EXPECT_TRUE(fixed->Locked());
  EXPECT_TRUE(fixed->SupportsAdd());
  EXPECT_FALSE(fixed->SupportsRemove());
  EXPECT_EQ(fixed->Engine(), engOracle);
}

TEST_F(FrameworkFactoriesTest, PropertyContextIsTransient) {
  const auto context = framework_.CreatePropertyContext();
  EXPECT_TRUE(context->SupportsAdd());
  EXPECT_TRUE(context->SupportsRemove());
  EXPECT_FALSE(context->Locked());
  EXPECT_FALSE(framework_.CreatePropertyContext({.SupportsAdd = false})->SupportsAdd());
  EXPECT_TRUE(framework_.CreatePropertyContext({.Locked = true})->Locked());
}

TEST_F(FrameworkFactoriesTest, BusinessContextHasItsFields) {
  const auto plain = framework_.CreateBusinessContext();
  EXPECT_TRUE(plain->SupportsLoad());
  EXPECT_EQ(plain->ObjectType(), otDefault);
  const auto fixed = framework_.CreateBusinessContext({.SupportsLoad = false, .ObjectType = otModel, .Locked = true});
  EXPECT_FALSE(fixed->SupportsLoad());
  EXPECT_EQ(fixed->ObjectType(), otModel);
  EXPECT_TRUE(fixed->Locked());
  EXPECT_NE(plain, apartment_.State().BusinessContext);
}

TEST_F(FrameworkFactoriesTest, MessageIsRecordedNowhere) {
  const auto message = framework_.CreateMessage({.Number = errItem_Class, .Replace1 = "'x'"});
  EXPECT_EQ(message->Description(), "Problem finding Class.  Index: 'x'");
  EXPECT_EQ(framework_.Messages()->Count(), 0);
}

TEST_F(FrameworkFactoriesTest, StatisticsAreMade) {
  EXPECT_EQ(framework_.CreateStatistic({.Name = "Load", .SubjectLabel = "Row", .SubjectCount = 3})->SubjectCount(), 3);
  EXPECT_EQ(framework_.CreateStatistics()->Count(), 0);
}

TEST_F(FrameworkFactoriesTest, KeyFormatHasItsFields) {
  EXPECT_EQ(framework_.CreateKeyFormat()->Separator(), "");
  const auto format = framework_.CreateKeyFormat({.Name = "Dotted", .Separator = ".", .IncludeNames = true});
  EXPECT_EQ(format->Name(), "Dotted");
  EXPECT_EQ(format->Separator(), ".");
  EXPECT_TRUE(format->IncludeNames());
  EXPECT_FALSE(format->Mixed());
}

TEST_F(FrameworkFactoriesTest, DesignObjectsHaveTheirFields) {
  EXPECT_EQ(framework_.CreateServer({.Name = "S", .ActiveXComponent = "Sales"})->ActiveXComponent(), "Sales");
  EXPECT_EQ(framework_.CreateDatabase({.Name = "D", .Engine = engOracle})->Engine(), engOracle);
  EXPECT_EQ(framework_.CreateClass({.Name = "C", .ActiveXClass = "Order"})->ActiveXClass(), "Order");
  EXPECT_EQ(framework_.CreateSource({.Engine = engODBC, .SourceType = stTable, .SourceText = "t"})->SourceText(), "t");
  EXPECT_EQ(framework_.CreateConnector({.Engine = engODBC, .ConnectionString = "DSN=x"})->ConnectionString(), "DSN=x");
  EXPECT_EQ(framework_.CreateConnections("Reports")->Name(), "Reports");
}

TEST_F(FrameworkFactoriesTest, ServerUsesMetaDataUnlessToldOtherwise) {
  EXPECT_TRUE(framework_.CreateServer({.Name = "S"})->UseMetaData());
}

TEST_F(FrameworkFactoriesTest, ActionWithoutObjectTypeIsLineOfBusiness) {
  const auto action = framework_.CreateAction({.Name = "A", .DatabaseName = "D"});
  EXPECT_EQ(action->DatabaseName(), "D");
  EXPECT_EQ(action->ObjectType(), otBusiness);
  EXPECT_EQ(action->UsageFlags(), ufNone);
}

TEST_F(FrameworkFactoriesTest, AttributeHasItsFields) {
  const auto attribute = framework_.CreateAttribute({"A", "text", dtString, false, 20, true});
  EXPECT_EQ(attribute->Value(), Variant("text"));
  EXPECT_FALSE(attribute->Modifiable());
  EXPECT_EQ(attribute->Size(), 20);
  EXPECT_TRUE(attribute->Locked());
}

TEST_F(FrameworkFactoriesTest, RefusedAttributeValueIsRaised) {
  ExpectRaised(errAttribute_DataType,
               [&] { framework_.CreateAttribute({.Name = "A", .Value = "x", .DataType = dtLongInteger}); });
}

template <class Collection>
void ExpectTransient(const Collection& plain, const Collection& fixed) {
  EXPECT_EQ(static_cast<int>(plain->Count()), 0);
  EXPECT_FALSE(plain->Locked());
  EXPECT_TRUE(plain->SupportsAdd());
  EXPECT_TRUE(plain->SupportsRemove());
  EXPECT_TRUE(fixed->Locked());
  EXPECT_TRUE(fixed->SupportsAdd());
  EXPECT_FALSE(fixed->SupportsRemove());
}

TEST_F(FrameworkFactoriesTest, CollectionsAreTransient) {
  ExpectTransient(framework_.CreateDatabases(), framework_.CreateDatabases(true, false));
  ExpectTransient(framework_.CreateServers(), framework_.CreateServers(true, false));
  ExpectTransient(framework_.CreateSources(), framework_.CreateSources(true, false));
  ExpectTransient(framework_.CreateActions(), framework_.CreateActions(true, false));
  ExpectTransient(framework_.CreateAttributes(), framework_.CreateAttributes(true, false));
  ExpectTransient(framework_.CreateClasses(), framework_.CreateClasses(true, false));
  ExpectTransient(framework_.CreateConnectors(), framework_.CreateConnectors(true, false));
}

TEST_F(FrameworkFactoriesTest, CollectionOfServersIsNotTheRegisteredOne) {
  const auto servers = framework_.CreateServers();
  servers->SetupItem({.Name = "Mine"});
  EXPECT_FALSE(servers->Registered());
  EXPECT_EQ(framework_.Servers()->Count(), 0);
}

}  // namespace
}  // namespace velmoria::test
