#include "velmoria/brokering/identifier.h"

#include <utility>

#include "velmoria/brokering/key_format.h"
#include "velmoria/core/apartment_impl.h"
#include "velmoria/design/class_data.h"
#include "velmoria/design/server_data.h"
#include "velmoria/properties/properties.h"
#include "velmoria/properties/property.h"
#include "velmoria/runtime/error.h"
#include "velmoria/runtime/text.h"

namespace velmoria {

Identifier::Identifier() = default;

Identifier::~Identifier() = default;

void Identifier::Setup(ServerDataPtr server, ClassDataPtr classData, PropertiesPtr properties) {
  server_ = std::move(server);
  class_ = std::move(classData);
  properties_ = std::move(properties);
}

std::string Identifier::Key(const KeyFormatPtr& keyFormat) const try {
  const auto format = keyFormat ? keyFormat : Present(Apartment().DefaultKeyFormat);
  const auto separator = format->Separator();
  const bool includeNames = format->IncludeNames();
  std::string key;
  if (format->Mixed()) key = ServerName() + separator + ClassName();
  for (const auto& property : *Present(properties_)) {
    if (!key.empty()) key += separator;
    if (includeNames) key += property->Name() + separator;
    const auto value = property->Value();
    if (!value.IsNull()) key += value.AsText();
  }
  return key;
} catch (...) { Failed("Key"); }

bool Identifier::Dirty() const { return properties_ && properties_->DirtyValues(); }

std::string Identifier::ServerName() const { return server_ ? server_->Name() : std::string(); }

std::string Identifier::ClassName() const { return class_ ? class_->Name() : std::string(); }

PropertiesPtr Identifier::Properties() const { return properties_; }

std::string Identifier::Details() const {
  return "Identifier for Server: " + Quoted(ServerName()) + "  Class: " + Quoted(ClassName()) + "\r\n" +
         (properties_ ? properties_->Details() : std::string());
}

}  // namespace velmoria
