#pragma once

#include <string>

#include <gtest/gtest.h>

#include "tests/support/bound_orders.h"
#include "tests/support/scoped_apartment.h"
#include "velmoria/velmoria.h"

namespace velmoria::test {

/// The context of one order (Id 1042, Name "Order 1042"), with the relationships of its class.
class NavigationTest : public testing::Test {
 protected:
  /// By itself to the Action "Get" of "Line".
  RelationshipPtr Relate(RelationshipFields fields = {.Name = "Lines"}) const {
    if (fields.RelatedClassName.empty()) {
      fields.RelatedServerName = "Sales";
      fields.RelatedClassName = "Line";
      fields.RelatedActionName = "Get";
    }
    return orders_.Design.Order->Relationships()->SetupItem(fields);
  }
  /// Empty names stay without.
  static LinkPtr AddLink(const RelationshipPtr& relationship, const std::string& property,
                         const std::string& parameter) {
    const LinkPtr link = relationship->Links()->SetupItem({.Name = property + "-" + parameter});
    if (!property.empty()) link->Property()->SetName(property);
    if (!parameter.empty()) link->Parameter()->SetName(parameter);
    return link;
  }
  /// A parameter of the related Action.
  void LineTakes(const PropertyFields& fields) const {
    orders_.Design.Line->Actions()->Item("Get")->Sources()->Item()->Parameters()->SetupItem(fields);
  }
  std::string Selected() const {
    return context_->ServerName() + "." + context_->ClassName() + "." + context_->ActionName() + "." +
           context_->RelationshipName();
  }
  IBusinessObjectPtr NewOrder() const { return orders_.Collection()->Item(1); }

  ScopedApartment apartment_;
  BoundOrders orders_{{.Ids = {1042}}};
  ModelPtr order_ = NewOrder()->GetModel();
  BusinessContextPtr context_ = order_->BusinessContext();
};

}  // namespace velmoria::test
