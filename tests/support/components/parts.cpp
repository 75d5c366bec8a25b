// The library of the component "Parts".

#include "velmoria/platform/components/component_library.h"
#include "velmoria/runtime/error.h"

namespace {

using namespace velmoria;

class Bolt final : public Object {
 public:
  std::string_view ReportedType() const noexcept override { return "Bolt"; }
};

class Nut final : public Object {
 public:
  std::string_view ReportedType() const noexcept override { return "Nut"; }
};

Ref<Object> MakeNothing() { return {}; }
Ref<Object> MakeFailure() { Fail(RuntimeFailure::DivisionByZero); }

}  // namespace

void OfferVelmoriaComponents(velmoria::ComponentLibrary& library) {
  library.Offer<Bolt>("Bolt");
  library.Offer<Nut>("Nut");
  library.Offer("Nothing", MakeNothing);
  library.Offer("Failure", MakeFailure);
}
