#include "velmoria/design/database_data.h"

#include "velmoria/design/connector_data.h"
#include "velmoria/design/design_collection_data_impl.h"
#include "velmoria/design/root_data_impl.h"
#include "velmoria/properties/parents_data.h"

namespace velmoria {

template class DesignData<DatabaseKind>;
template class DesignCollectionData<DatabaseKind>;
template class RootData<DatabaseKind>;

DatabaseData::DatabaseData() = default;
DatabaseData::~DatabaseData() = default;

void DatabaseData::NameFile(DataFile& file, const std::string& name) const { file.SetDatabaseName(name); }

std::string DatabaseData::Details() const {
  return "Database: " + Quoted(Name()) + "  AutoConnect: " + Variant(Fields().AutoConnect).AsText() + FileDetails();
}

void DatabaseData::Enter(Parents& parents) { parents.Database = this; }

void DatabaseData::LoadAllDetail() {
  ConnectorsData()->LoadCollection();
  DesignData::LoadAllDetail();
}

ConnectorsDataPtr DatabaseData::ConnectorsData() {
  if (!connectorsData_) connectorsData_ = Make<velmoria::ConnectorsData>();
  return connectorsData_;
}

std::int32_t DatabaseData::AccessMethod() const noexcept { return Fields().Engine == engAccess ? 2 : 1; }

std::string DatabaseData::AccessMethodDisplay() const { return AccessMethodName(AccessMethod()); }

std::string DatabaseData::EngineName() const { return velmoria::EngineName(Fields().Engine); }

std::string DatabaseData::SupportedEnginesDisplay() const {
  if (!connectorsData_ || connectorsData_->Count() == 0) return "(None)";
  std::string text;
  for (const auto& connector : *connectorsData_) {
    if (!text.empty()) text += "; ";
    text += connector->EngineName();
  }
  return text;
}

void DatabaseData::CopyChildren(const DatabaseData& source) {
  SetChild(connectorsData_, CopyOf(source.connectorsData_));
  DesignData::CopyChildren(source);
}

bool DatabaseData::ChildrenDirty() const { return IsDirty(connectorsData_) || DesignData::ChildrenDirty(); }

}  // namespace velmoria
