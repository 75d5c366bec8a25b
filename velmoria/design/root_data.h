#pragma once

#include <string>

#include "velmoria/design/design_data.h"

namespace velmoria {

/// The definition at the root of a definition file. It owns the DataFile, which everything below shares.
// The destructor is virtual by its base, which the check cannot see.
template <class Kind>
class RootData : public DesignData<Kind> {  // NOLINT(cppcoreguidelines-virtual-class-destructor)
 public:
  ~RootData() override;

  /// A name makes the definition of a new file, even where one of that FileName is there. Without one an existing file
  /// decides the fields; this version reads none. Raises 15080 or 15081 without both, 15046 for a file that is not
  /// there and 15042 or 15043 for one that is. A refusal changes nothing.
  void Setup(typename Kind::Fields fields) override;
  /// Of the file; the present moment while there is none.
  Date DateModified() const override;
  /// Empty while the file has no place.
  std::string FileName() const;
  void SetFileName(std::string value);
  /// Of the form of definition files, as reports show it.
  std::string Version() const;

 protected:
  RootData();

  /// What Details says about the file; nothing without a DataFile.
  std::string FileDetails() const;

 private:
  virtual void NameFile(DataFile& file, const std::string& name) const = 0;
  DataFilePtr NewFile(const std::string& name) const;

  DataFilePtr dataFile_;
};

}  // namespace velmoria
