#pragma once

#include <cstdint>
#include <string>

#include "velmoria/design/database_kind.h"
#include "velmoria/design/design_data.h"

namespace velmoria {

extern template class DesignData<DatabaseKind>;

class DatabaseData final : public DesignData<DatabaseKind> {
 public:
  DatabaseData();
  ~DatabaseData() override;

  /// Raises 15080 without a name.
  void Setup(DatabaseFields fields) override;
  /// The present moment: nothing is on file.
  Date DateModified() const override;
  std::string Details() const override;
  void Enter(Parents& parents) override;
  ConnectorsDataPtr ConnectorsData();
  /// 2 for engAccess, 1 for every other engine, known or not.
  std::int32_t AccessMethod() const noexcept;
  /// The engines of the Connectors, "; " between, or "(None)".
  std::string SupportedEnginesDisplay() const;

 private:
  void CopyChildren(const DatabaseData& source) override;
  bool ChildrenDirty() const override;

  ConnectorsDataPtr connectorsData_;
};

}  // namespace velmoria
