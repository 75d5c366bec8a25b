#include <optional>
#include <utility>

#include "velmoria/core/apartment_impl.h"
#include "velmoria/core/now.h"
#include "velmoria/repository/data_file_impl.h"
#include "velmoria/runtime/text.h"

namespace velmoria {

namespace {

std::optional<Date> TimeOf(const std::string& fileName) {
  return fileName.empty() ? std::nullopt : Apartment().Platform.Files->DateModified(fileName);
}

}  // namespace

DataFile::DataFile() = default;
DataFile::~DataFile() = default;

void DataFile::SetServerName(std::string value) {
  serverName_ = std::move(value);
  databaseName_.clear();
  backupSuffix_ = "vsz";
}

void DataFile::SetDatabaseName(std::string value) {
  databaseName_ = std::move(value);
  serverName_.clear();
  backupSuffix_ = "vdz";
}

Date DataFile::DateModified() const { return TimeOf(fileName_).value_or(Now()); }

void DataFile::RequireFile() const {
  if (TimeOf(fileName_)) return;
  // The text for a Database gets the Server's name, which is empty.
  Raise(serverName_.empty() ? errFile_Database : errFile_Server, "RequireFile", {serverName_, fileName_});
}

// No quote stands behind the file's name.
std::string DataFile::Details() const {
  const bool ofServer = !serverName_.empty();
  std::string text = isNew_ ? "New " : "";
  text += ofServer ? "Server Definition File for " : "Database Definition File for ";
  text += Quoted(ofServer ? serverName_ : databaseName_) + "  Filename: '" + fileName_;
  text += "  FileNumber: 0  Backup Suffix: ";
  return text + Quoted(backupSuffix_);
}

}  // namespace velmoria
