#pragma once

#include <utility>

#include "velmoria/design/design_data_impl.h"
#include "velmoria/design/root_data.h"
#include "velmoria/repository/data_file_impl.h"
#include "velmoria/runtime/text.h"

namespace velmoria {

inline constexpr const char* DefinitionFileVersion = "1.0-0e";

template <class Kind>
RootData<Kind>::RootData() = default;

template <class Kind>
RootData<Kind>::~RootData() = default;

template <class Kind>
void RootData<Kind>::Setup(typename Kind::Fields fields) try {
  // The DataFile keeps the file's name, so that a copy of the fields names none.
  const auto fileName = std::exchange(fields.FileName, {});
  if (fields.Name.empty()) {
    if (fileName.empty()) this->Raise(Kind::RootRaises.MissingInfo, "Setup");
    const auto existing = Make<DataFile>();
    existing->SetFileName(fileName);
    existing->RequireFile();
    this->Raise(Kind::RootRaises.CannotRead, "Setup", {{}, fileName}, "This version reads no definition files.");
  }
  dataFile_ = NewFile(fields.Name);
  dataFile_->SetFileName(fileName);
  this->Adopt(std::move(fields));
} catch (...) { this->Failed("Setup"); }

template <class Kind>
DataFilePtr RootData<Kind>::NewFile(const std::string& name) const {
  auto file = Make<DataFile>();
  file->SetIsNew(true);
  NameFile(*file, name);
  return file;
}

template <class Kind>
Date RootData<Kind>::DateModified() const {
  return dataFile_ ? dataFile_->DateModified() : Now();
}

template <class Kind>
std::string RootData<Kind>::FileName() const {
  return dataFile_ ? dataFile_->FileName() : std::string();
}

template <class Kind>
void RootData<Kind>::SetFileName(std::string value) {
  if (value == FileName()) return;
  if (!dataFile_) dataFile_ = NewFile(this->Name());
  dataFile_->SetFileName(std::move(value));
  this->Stamp();
}

template <class Kind>
std::string RootData<Kind>::Version() const {
  return DefinitionFileVersion;
}

template <class Kind>
std::string RootData<Kind>::FileDetails() const {
  return dataFile_ ? "  FileName: " + Quoted(dataFile_->FileName()) : std::string();
}

}  // namespace velmoria
