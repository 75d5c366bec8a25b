#pragma once

#include <string>

#include "velmoria/design/design_data.h"
#include "velmoria/design/server_kind.h"

namespace velmoria {

extern template class DesignData<ServerKind>;

class ServerData final : public DesignData<ServerKind> {
 public:
  ServerData();
  ~ServerData() override;

  /// Raises 15081 without a name.
  void Setup(ServerFields fields) override;
  /// The present moment: nothing is on file.
  Date DateModified() const override;
  std::string Details() const override;
  void Enter(Parents& parents) override;
  ClassesDataPtr ClassesData();

 private:
  void CopyChildren(const ServerData& source) override;
  bool ChildrenDirty() const override;

  ClassesDataPtr classesData_;
};

}  // namespace velmoria
