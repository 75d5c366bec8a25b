#include "velmoria/design/server_data.h"

#include "velmoria/design/classes_data.h"
#include "velmoria/design/design_data_impl.h"
#include "velmoria/properties/parents_data.h"
#include "velmoria/runtime/text.h"

namespace velmoria {

template class DesignData<ServerKind>;

ServerData::ServerData() = default;
ServerData::~ServerData() = default;

void ServerData::Setup(ServerFields fields) {
  if (fields.Name.empty()) Raise(errMissing_ServerInfo, "Setup");
  Adopt(std::move(fields));
}

Date ServerData::DateModified() const { return Now(); }

std::string ServerData::Details() const {
  return "Server: " + Quoted(Name()) + "  ActiveXComponent: " + Quoted(Fields().ActiveXComponent);
}

void ServerData::Enter(Parents& parents) { parents.Server = this; }

ClassesDataPtr ServerData::ClassesData() {
  if (!classesData_) classesData_ = Make<velmoria::ClassesData>();
  return classesData_;
}

void ServerData::CopyChildren(const ServerData& source) {
  classesData_ = CopyOf(source.classesData_);
  DesignData::CopyChildren(source);
}

// User properties count only while there are no classes.
bool ServerData::ChildrenDirty() const { return classesData_ ? classesData_->Dirty() : DesignData::ChildrenDirty(); }

}  // namespace velmoria
