#pragma once

#include <cstdint>
#include <string>

#include "velmoria/design/database_kind.h"
#include "velmoria/design/design_collection_data.h"
#include "velmoria/design/root_data.h"

namespace velmoria {

extern template class DesignData<DatabaseKind>;
extern template class DesignCollectionData<DatabaseKind>;
extern template class RootData<DatabaseKind>;

class DatabaseData final : public RootData<DatabaseKind> {
 public:
  DatabaseData();
  ~DatabaseData() override;

  std::string Details() const override;
  ConnectorsDataPtr ConnectorsData();
  /// 2 for engAccess, 1 for every other engine, known or not.
  std::int32_t AccessMethod() const noexcept;
  std::string AccessMethodDisplay() const;
  std::string EngineName() const;
  /// The engines of the Connectors, "; " between, or "(None)".
  std::string SupportedEnginesDisplay() const;

 private:
  void NameFile(DataFile& file, const std::string& name) const override;
};

}  // namespace velmoria
