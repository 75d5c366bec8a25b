#pragma once

#include "velmoria/design/class_kind.h"
#include "velmoria/design/design_collection_data.h"

namespace velmoria {

extern template class DesignCollectionData<ClassKind>;

class ClassesData final : public DesignCollectionData<ClassKind> {
 public:
  ClassesData();
  ~ClassesData() override;
};

}  // namespace velmoria
