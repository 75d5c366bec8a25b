#pragma once

#include "velmoria/brokering/business_context.h"
#include "velmoria/brokering/business_objects_impl.h"

namespace velmoria {

/// The arguments of a broker operation that turn into selection state.
struct BusinessContextSelection {
  IdentifierPtr Identifier{};
  std::string ServerName{};
  std::string ClassName{};
  std::string ActionName{};
  std::string RelationshipName{};
  PropertiesPtr Parameters{};
  std::array<Variant, 4> KeyValues{Variant::Missing(), Variant::Missing(), Variant::Missing(), Variant::Missing()};
  bool NewFlag = false;
};

/// What a PropertyContext asks of its broker.
struct GetPropertiesArguments {
  IdentifierPtr Identifier{};
  std::string ActionName{};
  PropertiesPtr Parameters{};
  std::string Name{};
};

/// What a collection is bound to: the first page of the agent's result, or with the flag the agent that is still
/// opening it.
BusinessObjectsBinding Opened(const DatabaseAgentPtr& agent, bool asyncFlag);

}  // namespace velmoria
