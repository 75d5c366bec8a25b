#include "velmoria/core/index_text_impl.h"
#include "velmoria/properties/property.h"
#include "velmoria/properties/property_texts_impl.h"

namespace velmoria {

Replacements PropertyKeyTexts(const PropertyKey& key) {
  return {QuotingIndexText(key.Index), key.SourceName, key.SourceKey,
          key.Parameter ? key.Parameter->Details() : "(Nothing)"};
}

}  // namespace velmoria
