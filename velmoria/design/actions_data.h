#pragma once

#include "velmoria/design/action_kind.h"
#include "velmoria/design/design_collection_data.h"

namespace velmoria {

extern template class DesignCollectionData<ActionKind>;

class ActionsData final : public DesignCollectionData<ActionKind> {
 public:
  ActionsData();
  ~ActionsData() override;
};

}  // namespace velmoria
