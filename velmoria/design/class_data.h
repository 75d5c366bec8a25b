#pragma once

#include <string>

#include "velmoria/design/class_kind.h"
#include "velmoria/design/design_collection_data.h"
#include "velmoria/design/design_data.h"

namespace velmoria {

extern template class DesignData<ClassKind>;
extern template class DesignCollectionData<ClassKind>;

class ClassData final : public DesignData<ClassKind> {
 public:
  ClassData();
  ~ClassData() override;

  std::string Details() const override;
  /// The definition of the identifier.
  PropertiesDataPtr PropertiesData();
  ActionsDataPtr ActionsData();
  RelationshipsDataPtr RelationshipsData();

 private:
  const PropertiesDataPtr& UserPropertiesForCopy() const override;
};

}  // namespace velmoria
