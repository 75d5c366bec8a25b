// A component library outside the tree: it offers a business class to whichever host finds it.

#include "velmoria/velmoria.h"

namespace {

class Bin : public velmoria::BusinessObject {
 public:
  std::string Details() override { return "A bin of the shelf"; }
};

}  // namespace

void OfferVelmoriaComponents(velmoria::ComponentLibrary& library) { library.Offer<Bin>("Bin"); }
