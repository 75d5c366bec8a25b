// The library of the component "Trade": a business class, one that refuses its Model, and a collection.

#include "tests/support/host_collection.h"
#include "velmoria/platform/components/component_library.h"
#include "velmoria/velmoria.h"

namespace {

using namespace velmoria;

class Order final : public BusinessObject {
 public:
  std::string_view ReportedType() const noexcept override { return "Trade.Order"; }
};

class Refusing final : public BusinessObject {
 public:
  void SetModel(ModelPtr) override { Fail(RuntimeFailure::DivisionByZero); }
};

class Orders final : public test::HostCollection {
 public:
  std::string_view ReportedType() const noexcept override { return "Trade.Orders"; }
};

}  // namespace

void OfferVelmoriaComponents(velmoria::ComponentLibrary& library) {
  library.Offer<Order>("Order");
  library.Offer<Refusing>("Refusing");
  library.Offer<Orders>("Orders");
}
