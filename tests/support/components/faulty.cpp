// The library of the component "Faulty": its first offers fail, its second succeed.

#include "velmoria/platform/components/component_library.h"
#include "velmoria/runtime/error.h"

namespace {

class Thing final : public velmoria::Object {};

int calls = 0;

}  // namespace

void OfferVelmoriaComponents(velmoria::ComponentLibrary& library) {
  if (++calls == 1) velmoria::Fail(velmoria::RuntimeFailure::DeviceError);
  library.Offer<Thing>("Thing");
}
