#pragma once

#include <string>

#include "velmoria/design/design_collection_data.h"
#include "velmoria/design/root_data.h"
#include "velmoria/design/server_kind.h"

namespace velmoria {

extern template class DesignData<ServerKind>;
extern template class DesignCollectionData<ServerKind>;
extern template class RootData<ServerKind>;

class ServerData final : public RootData<ServerKind> {
 public:
  ServerData();
  ~ServerData() override;

  std::string Details() const override;
  ClassesDataPtr ClassesData();

 private:
  void NameFile(DataFile& file, const std::string& name) const override;
  bool ChildrenDirty() const override;
};

}  // namespace velmoria
