#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "velmoria/core/reporting.h"
#include "velmoria/fwd.h"
#include "velmoria/runtime/object.h"

namespace velmoria {

struct ParentSlots;

/// How an object's identity becomes the text key under which it lives in a BusinessObjects. With Properties of its own
/// the key is made of those properties of the object, otherwise of its Identifier. Setters but SetLocked raise 15002
/// when Locked.
class VELMORIA_API KeyFormat final : public Object, public Reporting {
 public:
  KeyFormat();
  ~KeyFormat() override;
  std::string_view ReportedType() const noexcept override { return "KeyFormat"; }

  /// Free of parents; recursive copies the Properties. Of a format with EmptyKey the Separator, Mixed and IncludeNames
  /// are not copied.
  KeyFormatPtr Copy(bool recursive = true) const;

  std::string Name() const;
  void SetName(const std::string& value);
  // These three raise 15176 for another value while EmptyKey is True.
  std::string Separator() const;
  void SetSeparator(const std::string& value);
  bool Mixed() const;
  void SetMixed(bool value);
  bool IncludeNames() const;
  void SetIncludeNames(bool value);
  /// True: no string key. Setting False clears Mixed, IncludeNames and Separator.
  bool EmptyKey() const;
  void SetEmptyKey(bool value);
  bool Locked() const;
  void SetLocked(bool value);
  /// The named properties that make the key; none for a key from the Identifier. Made on first read.
  PropertiesPtr Properties() const;
  std::string Details() const;

  // Inside the library.
  void Bind(KeyFormatDataPtr data, const Parents& parents);
  KeyFormatDataPtr Data() const;
  /// Server, Class and Action; raises 15108, 15101, 15100 for one that it already has. The Properties follow.
  void SetParents(const Parents& parents);
  void ClearParents(const ParentSlots& slots);

 private:
  std::string StateDetails() const override { return Details(); }
  void RefuseLocked(std::string_view routine) const;
  void RefuseEmptyKey(std::string_view name, std::string_view routine) const;

  KeyFormatDataPtr data_;
  mutable PropertiesPtr properties_;
  std::unique_ptr<Parents> parents_;
};

}  // namespace velmoria
