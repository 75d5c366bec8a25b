#include "velmoria/design/server_data.h"

#include "velmoria/design/class_data.h"
#include "velmoria/design/design_collection_data_impl.h"
#include "velmoria/design/root_data_impl.h"

namespace velmoria {

template class DesignData<ServerKind>;
template class DesignCollectionData<ServerKind>;
template class RootData<ServerKind>;

ServerData::ServerData() = default;
ServerData::~ServerData() = default;

void ServerData::NameFile(DataFile& file, const std::string& name) const { file.SetServerName(name); }

std::string ServerData::Details() const {
  return "Server: " + Quoted(Name()) + "  ActiveXComponent: " + Quoted(Fields().ActiveXComponent) + FileDetails();
}

ClassesDataPtr ServerData::ClassesData() { return Child<velmoria::ClassesData>(); }

// User properties count only while there are no classes.
bool ServerData::ChildrenDirty() const {
  const auto& classes = Existing<velmoria::ClassesData>();
  return classes ? classes->Dirty() : DesignData::ChildrenDirty();
}

}  // namespace velmoria
