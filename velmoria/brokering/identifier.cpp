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

void Identifier::Setup(ServerDataPtr server, ClassDataPtr classData, PropertyPtr part) {
  server_ = std::move(server);
  class_ = std::move(classData);
  part_ = std::move(part);
}

std::string Identifier::Key(const KeyFormatPtr& keyFormat) const try {
  const auto format = keyFormat ? keyFormat : Present(Apartment().DefaultKeyFormat);
  std::string key;
  if (format->Mixed()) key = ServerName() + format->Separator() + ClassName();
  if (part_) {
    AppendValue(key, *part_, *format);
  } else {
    for (const auto& property : *Present(properties_)) AppendValue(key, *property, *format);
  }
  return key;
} catch (...) { Failed("Key"); }

void Identifier::AppendValue(std::string& key, const Property& part, const velmoria::KeyFormat& format) const {
  if (!key.empty()) key += format.Separator();
  if (format.IncludeNames()) key.append(part.Name()).append(format.Separator());
  const auto value = part.Value();
  if (!value.IsNull()) key += value.AsText();
}

bool Identifier::Dirty() const { return part_ ? part_->DirtyValue() : properties_ && properties_->DirtyValues(); }

std::string Identifier::ServerName() const { return server_ ? server_->Name() : std::string(); }

std::string Identifier::ClassName() const { return class_ ? class_->Name() : std::string(); }

PropertiesPtr Identifier::Properties() const {
  if (part_) {
    auto shared = Make<velmoria::Properties>();
    shared->AddShared(part_);
    properties_ = std::move(shared);
    part_.reset();
  }
  return properties_;
}

std::string Identifier::Details() const {
  return "Identifier for Server: " + Quoted(ServerName()) + "  Class: " + Quoted(ClassName()) + "\r\n" +
         (Properties() ? Properties()->Details() : std::string());
}

}  // namespace velmoria
