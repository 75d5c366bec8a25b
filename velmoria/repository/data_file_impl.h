#pragma once

#include <string>
#include <string_view>

#include "velmoria/core/reporting.h"
#include "velmoria/fwd.h"
#include "velmoria/runtime/date.h"
#include "velmoria/runtime/object.h"

namespace velmoria {

/// The definition file behind one Server or one Database, which owns this. It knows where the file is and nothing of
/// its contents.
class DataFile final : public Object, public Reporting {
 public:
  DataFile();
  ~DataFile() override;
  std::string_view ReportedType() const noexcept override { return "DataFile"; }

  /// The full path; empty for a file that has no place yet.
  const std::string& FileName() const noexcept { return fileName_; }
  void SetFileName(std::string value) { fileName_ = std::move(value); }
  /// Whether the file has never been written or read.
  bool IsNew() const noexcept { return isNew_; }
  void SetIsNew(bool value) noexcept { isNew_ = value; }
  // Each makes it the file of that kind of owner and forgets the name of the other kind.
  void SetServerName(std::string value);
  void SetDatabaseName(std::string value);

  /// Of the file itself, asked at each call; the present moment while FileName is empty or names no file.
  Date DateModified() const;
  /// Raises 15047 when FileName names no file that is there, or 15046, which names no Database, without a ServerName.
  void RequireFile() const;
  std::string Details() const;

 private:
  std::string StateDetails() const override { return Details(); }

  std::string fileName_;
  std::string serverName_;
  std::string databaseName_;
  std::string_view backupSuffix_;
  bool isNew_ = false;
};

}  // namespace velmoria
