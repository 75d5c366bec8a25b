#pragma once

#include <cstdint>
#include <string>

#include "velmoria/design/design_collection_data.h"
#include "velmoria/design/design_data.h"
#include "velmoria/design/source_kind.h"

namespace velmoria {

extern template class DesignData<SourceKind>;
extern template class DesignCollectionData<SourceKind>;

class SourceData final : public DesignData<SourceKind> {
 public:
  SourceData();
  ~SourceData() override;

  /// Raises 15054 for an engine outside 1 to 5 and 15053 for a type that the engine does not have.
  void Setup(SourceFields fields) override;
  std::string Details() const override;
  PropertiesDataPtr ParametersData();
  std::int32_t AccessMethod() const noexcept;
  std::string AccessMethodName() const;

 private:
  void SetupCopy(SourceFields fields) override;
  bool ChildrenDirty() const override;
};

}  // namespace velmoria
