#include <string>

#include <gtest/gtest.h>

#include "tests/scenario/brokering_fixture.h"
#include "tests/support/component_offer.h"
#include "tests/support/host_collection.h"
#include "tests/support/refusal.h"
#include "velmoria/brokering/business_context_impl.h"

namespace velmoria::test {
namespace {

/// Every number that a context raises by itself, over a database.
class RefusalTest : public BrokeringTest {
 protected:
  struct Case {
    Refusal Expected;
    void (*Call)(BusinessContext&);
  };

  RefusalTest() {
    shop_.OrderAction("Bare")->SetUsageFlags(ufProperties | ufExecute);
    shop_.OrderAction("Check")->SetUsageFlags(ufObjects);
    shop_.OrderAction("Check")->SetEditFlags(efUpdate | efDelete);
    shop_.OrderAction("Named")->SetEditFlags(efNone);
    shop_.Design.Order->SetActiveXClass("Order");
    shop_.Design.Order->SetActiveXCollection("Orders");
  }
  /// Expects the refusal; gives back the state that was held with it.
  static std::string StateOf(const Case& each, const BusinessContextPtr& context) {
    return ExpectRefusal(each.Expected, [&] { each.Call(*context); });
  }
};

constexpr const char* kLocked = "This property is locked and cannot be changed.";
constexpr const char* kNoClass = "Can't find Class in registered Servers.";
constexpr const char* kBoth = "Passing both Before and After arguments is not allowed.";

TEST_F(RefusalTest, SelectionTellsItsNumbersWithTheStateOfTheContext) {
  const Case cases[] = {
      {{.Number = errVelmoria_Locked, .Place = "BusinessContext.Setup", .Text = kLocked},
       [](BusinessContext& c) {
         c.SetLocked(true);
         c.Setup({});
       }},
      {{.Number = errVelmoria_Locked,
        .Place = "BusinessContext.ServerName (Let)",
        .Text = kLocked,
        .ExtraText = "This BusinessContext is set up to only use the 'Sales' Server"},
       [](BusinessContext& c) {
         c.Setup({.ServerName = "Sales", .ServerLocked = true});
         c.SetServerName("Stock");
       }},
      {{.Number = errVelmoria_Locked,
        .Place = "BusinessContext.ChangeClass",
        .Text = kLocked,
        .ExtraText = "This BusinessContext is set up to only use the 'Order' Class"},
       [](BusinessContext& c) {
         c.Setup({.ClassName = "Order", .ClassLocked = true});
         c.SetClassName("Line");
       }},
      {{.Number = errVelmoria_Locked,
        .Place = "BusinessContext.ActionName (Let)",
        .Text = kLocked,
        .ExtraText = "This BusinessContext is set up to only use the 'All' Action"},
       [](BusinessContext& c) {
         c.Setup({.ClassName = "Order", .ActionName = "All", .ActionLocked = true});
         c.SetActionName("Get");
       }},
      {{.Number = errItem_Class,
        .Place = "BusinessContext.ClassName (Let)",
        .Text = "Problem finding Class.  Index: 'Nothing'",
        .Replaces = {"'Nothing'"},
        .ExtraText = kNoClass},
       [](BusinessContext& c) { c.SetClassName("Nothing"); }},
      {{.Number = errRequires_Class,
        .Place = "BusinessContext.ChangeActionName",
        .Text = "This operation requires a Class.  Operation: 'Changing Action in BusinessContext'",
        .Replaces = {"Changing Action in BusinessContext"}},
       [](BusinessContext& c) { c.SetActionName("Get"); }},
      {{.Number = errRequires_Class,
        .Place = "BusinessContext.PrepareParameters",
        .Text = "This operation requires a Class.  Operation: 'Processing BusinessObjects or Properties'",
        .Replaces = {"Processing BusinessObjects or Properties"},
        .ExtraText = "Can't find ClassName: '' in registered Servers."},
       [](BusinessContext& c) { c.Parameters(); }},
      {{.Number = errNotSupported_RelatedBusinessObjects,
        .Place = "BusinessContext.RelationshipName (Let)",
        .Text = "Transient BusinessContext objects do not support the processing of related business objects."},
       [](BusinessContext& c) { c.SetRelationshipName("Lines"); }},
  };
  for (const Case& each : cases) {
    const auto context = NewContext();
    const auto state = StateOf(each, context);
    EXPECT_EQ(state, context->Details());
  }
}

TEST_F(RefusalTest, HeldCollectionsTellTheirNumbersWithTheStateOfTheContext) {
  const Case cases[] = {
      {{.Number = errAdd_BusinessObjects,
        .Place = "BusinessContext.Add",
        .Text = "Problem adding business objects to BusinessContext.  Name: 'orders'  Before: 1  After: orders",
        .Replaces = {"orders", "1", "orders"},
        .ExtraText = kBoth},
       [](BusinessContext& c) {
         c.Add(c.GetBusinessObjects({.ClassName = "Order"}), {.Before = 1, .After = "orders"});
       }},
      {{.Number = errNotSupported_Add,
        .Place = "BusinessContext.Add",
        .Text = "The Add method of this collection is not supported."},
       [](BusinessContext& c) {
         c.SetSupportsAdd(false);
         c.LoadBusinessObjects({.ClassName = "Order"});
       }},
      {{.Number = errNotSupported_Remove,
        .Place = "BusinessContext.Remove",
        .Text = "The Remove method of this collection is not supported."},
       [](BusinessContext& c) {
         c.LoadBusinessObjects({.ClassName = "Order"});
         c.SetSupportsRemove(false);
         c.Remove(1);
       }},
      {{.Number = errItem_BusinessObjects,
        .Place = "BusinessContext.Item",
        .Text = "Problem finding business objects in BusinessContext.  Index: 'Lines'",
        .Replaces = {"'Lines'"}},
       [](BusinessContext& c) { c.Remove("Lines"); }},
      {{.Number = errItem_BusinessObjects,
        .Place = "BusinessContext.Item",
        .Text = "Problem finding business objects in BusinessContext.  Index: 2",
        .Replaces = {"2"}},
       [](BusinessContext& c) {
         c.LoadBusinessObjects({.ClassName = "Order"});
         c.Item(2);
       }},
      {{.Number = errBusinessObjects_Load,
        .Place = "BusinessContext.LoadBusinessObjects",
        .Text = "This BusinessContext does not support the loading of business objects."},
       [](BusinessContext& c) {
         c.SetSupportsLoad(false);
         c.LoadBusinessObjects({.ClassName = "Order"});
       }},
  };
  shop_.Design.Order->SetActiveXCollection("");
  for (const Case& each : cases) {
    const auto context = NewContext();
    const auto state = StateOf(each, context);
    EXPECT_EQ(state, context->Details());
  }
}

TEST_F(RefusalTest, RequestsTellTheirNumbersWithTheStateOfTheContext) {
  const ComponentOffer<RefusingOrder> order("Trade.Order");
  const ComponentOffer<RefusingCollection> collection("Trade.Orders");
  const Case cases[] = {
      {{.Number = errNotSupported_BusinessObjects,
        .Place = "BusinessContext.GetBusinessObject",
        .Text = "This Action does not support the building of business objects or business object Collections.  "
                "Action: 'Bare'  UsageFlags: 'Properties; Execute'",
        .Replaces = {"Bare", "Properties; Execute"}},
       [](BusinessContext& c) { c.GetBusinessObject({.ClassName = "Order", .ActionName = "Bare"}); }},
      {{.Number = errNotSupported_BusinessObjects,
        .Place = "BusinessContext.GetBusinessObjects",
        .Text = "This Action does not support the building of business objects or business object Collections.  "
                "Action: 'Bare'  UsageFlags: 'Properties; Execute'",
        .Replaces = {"Bare", "Properties; Execute"}},
       [](BusinessContext& c) { c.GetBusinessObjects({.ClassName = "Order", .ActionName = "Bare"}); }},
      {{.Number = errNotSupported_Execute,
        .Place = "BusinessContext.Execute",
        .Text = "This Action does not support an Execute operation.  Action: 'Check'  UsageFlags: 'Business Objects'",
        .Replaces = {"Check", "Business Objects"}},
       [](BusinessContext& c) { c.Execute({.ClassName = "Order", .ActionName = "Check"}); }},
      {{.Number = errNotSupported_Insert,
        .Place = "BusinessContext.CreateBusinessObject",
        .Text = "This Action does not support creating or inserting new business objects.  Action: 'Check'  EditFlags: "
                "'Delete; Update'",
        .Replaces = {"Check", "Delete; Update"}},
       [](BusinessContext& c) { c.CreateBusinessObject({.ClassName = "Order", .ActionName = "Check"}); }},
      {{.Number = errMismatch_Count,
        .Place = "BusinessContext.GetBusinessObject",
        .Text = "Object Count mismatch.  Expected: 1  Found: 3",
        .Replaces = {"1", "3"}},
       [](BusinessContext& c) { c.GetBusinessObject({.ClassName = "Order", .ActionName = "All"}); }},
      {{.Number = errBusinessObject_Initialize,
        .Place = "BusinessContext.CreateBusinessObject",
        .Text = "Problem initializing Line of Business object with a Model.  Identifier: '0'",
        .Replaces = {"0"}},
       [](BusinessContext& c) {
         Framework{}.Servers()->Item("Sales")->SetActiveXComponent("Trade");
         c.CreateBusinessObject({.ClassName = "Order", .ActionName = "Get", .ObjectType = otBusiness});
       }},
      {{.Number = errBusinessCollection_Create,
        .Place = "BusinessContext.GetBusinessObjects",
        .Text = "Problem creating Line of Business Collection.  ActiveXBusinessCollection: Sales.Orders",
        .Replaces = {"Sales.Orders"}},
       [](BusinessContext& c) {
         Framework{}.Servers()->Item("Sales")->SetActiveXComponent("Sales");
         c.GetBusinessObjects({.ClassName = "Order", .ObjectType = otBusiness});
       }},
      {{.Number = errBusinessCollection_Setup,
        .Place = "BusinessContext.GetBusinessObjects",
        .Text = "Problem setting up the Line of Business Collection.  ActiveXBusinessCollection: Trade.Orders",
        .Replaces = {"Trade.Orders"}},
       [](BusinessContext& c) {
         Framework{}.Servers()->Item("Sales")->SetActiveXComponent("Trade");
         c.GetBusinessObjects({.ClassName = "Order", .ObjectType = otBusiness});
       }},
  };
  for (const Case& each : cases) {
    const auto context = NewContext();
    const auto state = StateOf(each, context);
    EXPECT_EQ(state, context->Details());
  }
}

TEST_F(RefusalTest, PropertiesTellTheirNumbersWithTheStateOfTheContext) {
  const Case cases[] = {
      {{.Number = errNotSupported_Properties,
        .Place = "BusinessContext.GetProperties",
        .Text = "This Action does not support the building of Property Collections.  Action: 'Check'  UsageFlags: "
                "'Business Objects'",
        .Replaces = {"Check", "Business Objects"}},
       [](BusinessContext& c) { c.GetProperties({.ActionName = "Check"}); }},
      {{.Number = errNotSupported_Properties,
        .Place = "BusinessContext.GetNewProperties",
        .Text = "This Action does not support the building of Property Collections.  Action: 'Check'  UsageFlags: "
                "'Business Objects'",
        .Replaces = {"Check", "Business Objects"}},
       [](BusinessContext& c) { c.GetNewProperties({}, "Check", {}); }},
      {{.Number = errNotSupported_Insert,
        .Place = "BusinessContext.GetNewProperties",
        .Text = "This Action does not support creating or inserting new business objects.  Action: 'Named'  EditFlags: "
                "'(None)'",
        .Replaces = {"Named", "(None)"}},
       [](BusinessContext& c) { c.GetNewProperties({}, "Named", {}); }},
      {{.Number = errMismatch_Count,
        .Place = "BusinessContext.GetProperties",
        .Text = "Object Count mismatch.  Expected: 1  Found: 3",
        .Replaces = {"1", "3"}},
       [](BusinessContext& c) { c.GetProperties({.ActionName = "All"}); }},
  };
  for (const Case& each : cases) {
    const auto context = NewContext({.ClassName = "Order"});
    const auto state = StateOf(each, context);
    EXPECT_EQ(state, context->Details());
  }
}

TEST_F(RefusalTest, MissingRowIsToldWithTheParametersAsState) {
  const Case cases[] = {
      {{.Number = errBusinessObject_Get,
        .Place = "BusinessContext.GetBusinessObject",
        .Text = "Problem getting business object from database Source."},
       [](BusinessContext& c) { c.GetBusinessObject({.KeyValue1 = 77}); }},
      {{.Number = errPersistence_Get,
        .Place = "BusinessContext.GetProperties",
        .Text = "Problem getting persistent Properties from database Source."},
       [](BusinessContext& c) {
         c.SetKeyValue1(77);
         c.GetProperties({});
       }},
  };
  for (const Case& each : cases) {
    const auto context = NewContext({.ClassName = "Order", .ActionName = "Get", .ActionLocked = true});
    const auto state = StateOf(each, context);
    EXPECT_EQ(state, context->Parameters()->Details());
    EXPECT_NE(state.find("77"), std::string::npos);
  }
}

TEST_F(RefusalTest, HostObjectThatIsNotMadeIsToldWithoutAState) {
  const Case notMade{
      {.Number = errBusinessObject_Create,
       .Place = "BusinessContext.CreateBusinessObject",
       .Text = "Problem creating Line of Business object.  ActiveXBusinessClass: 'Sales.Order'  Identifier: '0'",
       .Replaces = {"Sales.Order", "0"}},
      [](BusinessContext& c) {
        c.CreateBusinessObject({.ClassName = "Order", .ActionName = "Get", .ObjectType = otBusiness});
      }};
  EXPECT_EQ(StateOf(notMade, NewContext()), "");
}

}  // namespace
}  // namespace velmoria::test
