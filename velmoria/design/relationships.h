#pragma once

#include <string>

#include "velmoria/design/design_collection.h"
#include "velmoria/design/relationship_kind.h"

namespace velmoria {

extern template class VELMORIA_API DesignCollection<RelationshipKind>;

/// The Relationships of one Class, by name.
class VELMORIA_API Relationships final : public DesignCollection<RelationshipKind> {
 public:
  Relationships();
  ~Relationships() override;

  // Of the parents; empty without them.
  std::string ServerName() const;
  std::string ClassName() const;
};

}  // namespace velmoria
