#pragma once

#include <cstdint>
#include <string>

#include "velmoria/design/action_kind.h"
#include "velmoria/design/design_collection_data.h"
#include "velmoria/design/design_data.h"

namespace velmoria {

extern template class DesignData<ActionKind>;
extern template class DesignCollectionData<ActionKind>;

class ActionData final : public DesignData<ActionKind> {
 public:
  ActionData();
  ~ActionData() override;

  std::string Details() const override;
  SourcesDataPtr SourcesData();
  KeyFormatDataPtr KeyFormatData();

  /// The registered Database of DatabaseName: raises 15069 for an unknown one; none when there is no collection of
  /// registered databases at all.
  DatabasePtr Database() const;
  /// None for an unknown one; records nothing.
  DatabasePtr FindDatabase() const;
  /// The engine in force. Raises as Database.
  zEngines DatabaseEngine() const;
  std::string DatabaseEngineName() const;
  /// Raises 15075 without a Source of engAccess.
  std::int32_t RecordSetType();

 private:
  void CopyChildren(const ActionData& source) override;

  KeyFormatDataPtr keyFormatData_;
};

}  // namespace velmoria
