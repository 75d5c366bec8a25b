#include "velmoria/core/engine_list_impl.h"

namespace velmoria {

void AppendEngine(Variant& engines, zEngines engine) {
  if (engines.IsEmpty()) {
    engines = Variant::Array(0, 0);
  } else {
    engines.ResizeLast(engines.UpperBound() + 1);
  }
  engines.SetElement(engines.UpperBound(), static_cast<std::int16_t>(engine));
}

}  // namespace velmoria
