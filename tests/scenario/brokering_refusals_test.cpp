#include <string>

#include <gtest/gtest.h>

#include "tests/scenario/brokering_fixture.h"
#include "tests/support/component_offer.h"
#include "tests/support/expect_raised.h"
#include "tests/support/host_collection.h"
#include "velmoria/brokering/business_context_impl.h"

namespace velmoria::test {
namespace {

/// Every number that a context raises by itself, over a database.
class RefusalTest : public BrokeringTest {
 protected:
  struct Refusal {
    zErrors Number;
    const char* Routine;
    const char* Text;       // whole, with the values filled in
    const char* ExtraText;  // behind it in what is raised
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
  void Check(const Refusal& refusal, const BusinessContextPtr& context) {
    SCOPED_TRACE(std::string(refusal.Routine) + " " + refusal.Text);
    const auto error = Thrown([&] { refusal.Call(*context); });
    const MessagePtr told = apartment_.Messages().Item(std::to_string(static_cast<int>(refusal.Number)));
    ASSERT_NE(told, nullptr) << apartment_.Messages().Details();
    EXPECT_EQ(told->TypeName() + "." + told->RoutineName(), std::string("BusinessContext.") + refusal.Routine);
    EXPECT_EQ(told->Description(), refusal.Text);
    EXPECT_EQ(told->ExtraText(), refusal.ExtraText);
    EXPECT_EQ(told->SeverityFlags(), svfError);
    EXPECT_EQ(told->TypeFlags(), tfVelmoria);
    state_ = told->StateDetails();
    CheckRaised(refusal.Number, error, {.Text = Whole(refusal)}, {__FILE__, __LINE__});
  }
  static std::string Whole(const Refusal& refusal) {
    return *refusal.ExtraText ? std::string(refusal.Text) + "\r\n" + refusal.ExtraText : refusal.Text;
  }

  std::string state_;  // that of the last refusal
};

constexpr const char* kLocked = "This property is locked and cannot be changed.";
constexpr const char* kNoClass = "Can't find Class in registered Servers.";
constexpr const char* kBoth = "Passing both Before and After arguments is not allowed.";

TEST_F(RefusalTest, SelectionTellsItsNumbersWithTheStateOfTheContext) {
  const Refusal refusals[] = {
      {errVelmoria_Locked, "Setup", kLocked, "",
       [](BusinessContext& c) {
         c.SetLocked(true);
         c.Setup({});
       }},
      {errVelmoria_Locked, "ServerName (Let)", kLocked, "This BusinessContext is set up to only use the 'Sales' Server",
       [](BusinessContext& c) {
         c.Setup({.ServerName = "Sales", .ServerLocked = true});
         c.SetServerName("Stock");
       }},
      {errVelmoria_Locked, "ChangeClass", kLocked, "This BusinessContext is set up to only use the 'Order' Class",
       [](BusinessContext& c) {
         c.Setup({.ClassName = "Order", .ClassLocked = true});
         c.SetClassName("Line");
       }},
      {errVelmoria_Locked, "ActionName (Let)", kLocked, "This BusinessContext is set up to only use the 'All' Action",
       [](BusinessContext& c) {
         c.Setup({.ClassName = "Order", .ActionName = "All", .ActionLocked = true});
         c.SetActionName("Get");
       }},
      {errItem_Class, "ClassName (Let)", "Problem finding Class.  Index: 'Nothing'", kNoClass,
       [](BusinessContext& c) { c.SetClassName("Nothing"); }},
      {errRequires_Class, "ChangeActionName",
       "This operation requires a Class.  Operation: 'Changing Action in BusinessContext'", "",
       [](BusinessContext& c) { c.SetActionName("Get"); }},
      {errRequires_Class, "PrepareParameters",
       "This operation requires a Class.  Operation: 'Processing BusinessObjects or Properties'",
       "Can't find ClassName: '' in registered Servers.", [](BusinessContext& c) { c.Parameters(); }},
      {errNotSupported_RelatedBusinessObjects, "RelationshipName (Let)",
       "Transient BusinessContext objects do not support the processing of related business objects.", "",
       [](BusinessContext& c) { c.SetRelationshipName("Lines"); }},
  };
  for (const Refusal& refusal : refusals) {
    const auto context = NewContext();
    Check(refusal, context);
    EXPECT_EQ(state_, context->Details());
  }
}

TEST_F(RefusalTest, HeldCollectionsTellTheirNumbersWithTheStateOfTheContext) {
  const Refusal refusals[] = {
      {errAdd_BusinessObjects, "Add",
       "Problem adding business objects to BusinessContext.  Name: 'orders'  Before: 1  After: orders", kBoth,
       [](BusinessContext& c) {
         c.Add(c.GetBusinessObjects({.ClassName = "Order"}), {.Before = 1, .After = "orders"});
       }},
      {errNotSupported_Add, "Add", "The Add method of this collection is not supported.", "",
       [](BusinessContext& c) {
         c.SetSupportsAdd(false);
         c.LoadBusinessObjects({.ClassName = "Order"});
       }},
      {errNotSupported_Remove, "Remove", "The Remove method of this collection is not supported.", "",
       [](BusinessContext& c) {
         c.LoadBusinessObjects({.ClassName = "Order"});
         c.SetSupportsRemove(false);
         c.Remove(1);
       }},
      {errItem_BusinessObjects, "Item", "Problem finding business objects in BusinessContext.  Index: 'Lines'", "",
       [](BusinessContext& c) { c.Remove("Lines"); }},
      {errItem_BusinessObjects, "Item", "Problem finding business objects in BusinessContext.  Index: 2", "",
       [](BusinessContext& c) {
         c.LoadBusinessObjects({.ClassName = "Order"});
         c.Item(2);
       }},
      {errBusinessObjects_Load, "LoadBusinessObjects",
       "This BusinessContext does not support the loading of business objects.", "",
       [](BusinessContext& c) {
         c.SetSupportsLoad(false);
         c.LoadBusinessObjects({.ClassName = "Order"});
       }},
  };
  shop_.Design.Order->SetActiveXCollection("");
  for (const Refusal& refusal : refusals) {
    const auto context = NewContext();
    Check(refusal, context);
    EXPECT_EQ(state_, context->Details());
  }
}

TEST_F(RefusalTest, RequestsTellTheirNumbersWithTheStateOfTheContext) {
  const ComponentOffer<RefusingOrder> order("Trade.Order");
  const ComponentOffer<RefusingCollection> collection("Trade.Orders");
  const Refusal refusals[] = {
      {errNotSupported_BusinessObjects, "GetBusinessObject",
       "This Action does not support the building of business objects or business object Collections.  Action: 'Bare'  "
       "UsageFlags: 'Properties; Execute'",
       "", [](BusinessContext& c) { c.GetBusinessObject({.ClassName = "Order", .ActionName = "Bare"}); }},
      {errNotSupported_BusinessObjects, "GetBusinessObjects",
       "This Action does not support the building of business objects or business object Collections.  Action: 'Bare'  "
       "UsageFlags: 'Properties; Execute'",
       "", [](BusinessContext& c) { c.GetBusinessObjects({.ClassName = "Order", .ActionName = "Bare"}); }},
      {errNotSupported_Execute, "Execute",
       "This Action does not support an Execute operation.  Action: 'Check'  UsageFlags: 'Business Objects'", "",
       [](BusinessContext& c) { c.Execute({.ClassName = "Order", .ActionName = "Check"}); }},
      {errNotSupported_Insert, "CreateBusinessObject",
       "This Action does not support creating or inserting new business objects.  Action: 'Check'  EditFlags: 'Delete; "
       "Update'",
       "", [](BusinessContext& c) { c.CreateBusinessObject({.ClassName = "Order", .ActionName = "Check"}); }},
      {errMismatch_Count, "GetBusinessObject", "Object Count mismatch.  Expected: 1  Found: 3", "",
       [](BusinessContext& c) { c.GetBusinessObject({.ClassName = "Order", .ActionName = "All"}); }},
      {errBusinessObject_Initialize, "CreateBusinessObject",
       "Problem initializing Line of Business object with a Model.  Identifier: '0'", "",
       [](BusinessContext& c) {
         Framework{}.Servers()->Item("Sales")->SetActiveXComponent("Trade");
         c.CreateBusinessObject({.ClassName = "Order", .ActionName = "Get", .ObjectType = otBusiness});
       }},
      {errBusinessCollection_Create, "GetBusinessObjects",
       "Problem creating Line of Business Collection.  ActiveXBusinessCollection: Sales.Orders", "",
       [](BusinessContext& c) {
         Framework{}.Servers()->Item("Sales")->SetActiveXComponent("Sales");
         c.GetBusinessObjects({.ClassName = "Order", .ObjectType = otBusiness});
       }},
      {errBusinessCollection_Setup, "GetBusinessObjects",
       "Problem setting up the Line of Business Collection.  ActiveXBusinessCollection: Trade.Orders", "",
       [](BusinessContext& c) {
         Framework{}.Servers()->Item("Sales")->SetActiveXComponent("Trade");
         c.GetBusinessObjects({.ClassName = "Order", .ObjectType = otBusiness});
       }},
  };
  for (const Refusal& refusal : refusals) {
    const auto context = NewContext();
    Check(refusal, context);
    EXPECT_EQ(state_, context->Details());
  }
}

TEST_F(RefusalTest, PropertiesTellTheirNumbersWithTheStateOfTheContext) {
  const Refusal refusals[] = {
      {errNotSupported_Properties, "GetProperties",
       "This Action does not support the building of Property Collections.  Action: 'Check'  UsageFlags: 'Business "
       "Objects'",
       "", [](BusinessContext& c) { c.GetProperties({.ActionName = "Check"}); }},
      {errNotSupported_Properties, "GetNewProperties",
       "This Action does not support the building of Property Collections.  Action: 'Check'  UsageFlags: 'Business "
       "Objects'",
       "", [](BusinessContext& c) { c.GetNewProperties({}, "Check", {}); }},
      {errNotSupported_Insert, "GetNewProperties",
       "This Action does not support creating or inserting new business objects.  Action: 'Named'  EditFlags: "
       "'(None)'",
       "", [](BusinessContext& c) { c.GetNewProperties({}, "Named", {}); }},
      {errMismatch_Count, "GetProperties", "Object Count mismatch.  Expected: 1  Found: 3", "",
       [](BusinessContext& c) { c.GetProperties({.ActionName = "All"}); }},
  };
  for (const Refusal& refusal : refusals) {
    const auto context = NewContext({.ClassName = "Order"});
    Check(refusal, context);
    EXPECT_EQ(state_, context->Details());
  }
}

TEST_F(RefusalTest, MissingRowIsToldWithTheParametersAsState) {
  const Refusal refusals[] = {
      {errBusinessObject_Get, "GetBusinessObject", "Problem getting business object from database Source.", "",
       [](BusinessContext& c) { c.GetBusinessObject({.KeyValue1 = 77}); }},
      {errPersistence_Get, "GetProperties", "Problem getting persistent Properties from database Source.", "",
       [](BusinessContext& c) {
         c.SetKeyValue1(77);
         c.GetProperties({});
       }},
  };
  for (const Refusal& refusal : refusals) {
    const auto context = NewContext({.ClassName = "Order", .ActionName = "Get", .ActionLocked = true});
    Check(refusal, context);
    EXPECT_EQ(state_, context->Parameters()->Details());
    EXPECT_NE(state_.find("77"), std::string::npos);
  }
}

TEST_F(RefusalTest, HostObjectThatIsNotMadeIsToldWithoutAState) {
  Check({errBusinessObject_Create, "CreateBusinessObject",
         "Problem creating Line of Business object.  ActiveXBusinessClass: 'Sales.Order'  Identifier: '0'", "",
         [](BusinessContext& c) {
           c.CreateBusinessObject({.ClassName = "Order", .ActionName = "Get", .ObjectType = otBusiness});
         }},
        NewContext());
  EXPECT_EQ(state_, "");
}

}  // namespace
}  // namespace velmoria::test
