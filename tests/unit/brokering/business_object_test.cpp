#include "velmoria/brokering/business_object.h"

#include <gtest/gtest.h>

#include "tests/support/scoped_apartment.h"
#include "velmoria/velmoria.h"

namespace velmoria::test {
namespace {

class BusinessObjectTest : public testing::Test {
 protected:
  /// A Model over one free-standing collection with the member "Total".
  static ModelPtr NewModel() {
    const PropertiesPtr values = Framework{}.CreateProperties({.Name = "Values"});
    values->SetupItem({.Name = "Total", .Value = 5, .DataType = dtLongInteger});
    const PropertyContextPtr context = Framework{}.CreatePropertyContext();
    context->Add(values);
    auto model = Make<Model>();
    model->Setup(context, {});
    return model;
  }

  ScopedApartment apartment_;
};

TEST_F(BusinessObjectTest, WithoutAModelItIsAnObjectNotSet) {
  const auto order = Make<BusinessObject>();
  try {
    order->Details();
    FAIL() << "nothing was raised";
  } catch (const Error& error) { EXPECT_EQ(error.Number(), 91); }
}

TEST_F(BusinessObjectTest, ForwardsToItsModel) {
  const auto order = Make<BusinessObject>();
  const ModelPtr model = NewModel();
  order->SetModel(model);
  EXPECT_EQ(order->GetModel(), model);
  EXPECT_EQ(order->ObjectType(), otBusiness);
  EXPECT_EQ(order->PropertyCount(), 1);
  EXPECT_EQ(order->PropertiesCount(), 1);
  EXPECT_EQ(order->BusinessObjectsCount(), 0);
  EXPECT_EQ(order->FindProperty("Total")->Value(), Variant(5));
  EXPECT_EQ(order->Properties("Values"), model->Properties(1));
  EXPECT_EQ(order->Details(), model->Details());
  EXPECT_EQ(order->StateFlagsDisplay(), model->StateFlagsDisplay());
}

TEST_F(BusinessObjectTest, ModelIsItsOwnModelAndStaysSo) {
  const ModelPtr model = NewModel();
  model->SetModel(NewModel());
  EXPECT_EQ(model->GetModel(), model);
  EXPECT_EQ(model->ObjectType(), otModel);
}

}  // namespace
}  // namespace velmoria::test
