#include "velmoria/design/server_data.h"

#include "velmoria/design/class_data.h"
#include "velmoria/design/design_collection_data_impl.h"
#include "velmoria/design/root_data_impl.h"
#include "velmoria/properties/parents_data.h"

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

void ServerData::Enter(Parents& parents) { parents.Server = this; }

void ServerData::LoadAllDetail() {
  ClassesData()->LoadCollection();
  DesignData::LoadAllDetail();
}

ClassesDataPtr ServerData::ClassesData() {
  if (!classesData_) classesData_ = Make<velmoria::ClassesData>();
  return classesData_;
}

void ServerData::CopyChildren(const ServerData& source) {
  SetChild(classesData_, CopyOf(source.classesData_));
  DesignData::CopyChildren(source);
}

// User properties count only while there are no classes.
bool ServerData::ChildrenDirty() const { return classesData_ ? classesData_->Dirty() : DesignData::ChildrenDirty(); }

}  // namespace velmoria
