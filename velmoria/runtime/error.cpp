#include "velmoria/runtime/error.h"

#include <utility>

namespace velmoria {

namespace {

struct FailureText {
  RuntimeFailure Failure;
  const char* Text;
};

constexpr FailureText kFailureTexts[] = {
    {RuntimeFailure::InvalidArgument, "Invalid procedure call or argument"},
    {RuntimeFailure::Overflow, "Overflow"},
    {RuntimeFailure::SubscriptOutOfRange, "Subscript out of range"},
    {RuntimeFailure::DivisionByZero, "Division by zero"},
    {RuntimeFailure::TypeMismatch, "Type mismatch"},
    {RuntimeFailure::BadFileNumber, "Bad file name or number"},
    {RuntimeFailure::FileNotFound, "File not found"},
    {RuntimeFailure::FileAlreadyOpen, "File already open"},
    {RuntimeFailure::DeviceError, "Device I/O error"},
    {RuntimeFailure::FileAlreadyExists, "File already exists"},
    {RuntimeFailure::DiskFull, "Disk full"},
    {RuntimeFailure::InputPastEnd, "Input past end of file"},
    {RuntimeFailure::PermissionDenied, "Permission denied"},
    {RuntimeFailure::PathFileAccess, "Path/File access error"},
    {RuntimeFailure::PathNotFound, "Path not found"},
    {RuntimeFailure::ObjectNotSet, "Object not set"},
    {RuntimeFailure::InvalidUseOfNull, "Invalid use of Null"},
    {RuntimeFailure::CannotCreateComponent, "Component can't create object"},
    {RuntimeFailure::NoSuchMember, "Object has no such member"},
    {RuntimeFailure::KeyInUse, "This key is already in use in this collection"},
    {RuntimeFailure::NoCurrentRecord, "No current record"},
    {RuntimeFailure::DuplicateKey, "A row with this key exists already"},
    {RuntimeFailure::NotInCollection, "Item not found in this collection"},
    {RuntimeFailure::DriverFailure, "The database driver reported a failure"},
};

constexpr std::int32_t kFirstCatalogueNumber = 15000;
constexpr std::int32_t kLastCatalogueNumber = 15180;

}  // namespace

Error::Error(std::int32_t number, std::string description, std::string helpFile, std::int32_t helpContext)
    : number_(number),
      description_(std::move(description)),
      helpFile_(std::move(helpFile)),
      helpContext_(helpContext) {}

Error::~Error() = default;

std::int32_t Error::CatalogueNumber() const noexcept {
  const std::int64_t number = std::int64_t{number_} - ErrorBase;
  return number >= kFirstCatalogueNumber && number <= kLastCatalogueNumber ? static_cast<std::int32_t>(number) : 0;
}

const char* RuntimeFailureText(RuntimeFailure failure) noexcept {
  for (const FailureText& row : kFailureTexts) {
    if (row.Failure == failure) return row.Text;
  }
  return "Unknown failure";
}

void Fail(RuntimeFailure failure) { Fail(failure, RuntimeFailureText(failure)); }

void Fail(RuntimeFailure failure, std::string description) {
  throw Error(static_cast<std::int32_t>(failure), std::move(description));
}

}  // namespace velmoria
