#include "velmoria/data/index_text_impl.h"
#include "velmoria/runtime/text.h"

namespace velmoria {

std::string DataIndexText(const Variant& index) {
  if (index.IsNumber()) return index.AsText();
  if (index.IsText()) return Quoted(index.TextView());
  return "(" + index.TypeName() + ")";
}

}  // namespace velmoria
