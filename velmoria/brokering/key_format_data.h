#pragma once

#include <string>

#include "velmoria/brokering/key_format_fields.h"
#include "velmoria/core/reporting.h"
#include "velmoria/fwd.h"
#include "velmoria/runtime/date.h"
#include "velmoria/runtime/object.h"
#include "velmoria/runtime/variant.h"

namespace velmoria {

/// The definition behind a KeyFormat. Every change stamps it modified.
class KeyFormatData final : public Object, public Reporting {
 public:
  KeyFormatData();
  ~KeyFormatData() override;
  std::string_view ReportedType() const noexcept override { return "KeyFormatData"; }

  /// With EmptyKey the Separator, Mixed and IncludeNames given are ignored.
  void Setup(const KeyFormatFields& fields);
  /// A dirty one of the same fields; recursive copies the Properties.
  KeyFormatDataPtr Copy(bool recursive = true) const;

  const KeyFormatFields& Fields() const noexcept { return fields_; }
  const std::string& Name() const noexcept { return fields_.Name; }

  void SetName(const std::string& value) { Let(&KeyFormatFields::Name, value); }
  void SetSeparator(const std::string& value) { Let(&KeyFormatFields::Separator, value); }
  void SetMixed(bool value) { Let(&KeyFormatFields::Mixed, value); }
  void SetIncludeNames(bool value) { Let(&KeyFormatFields::IncludeNames, value); }
  /// Leaving the empty-key state clears Mixed, IncludeNames and Separator.
  void SetEmptyKey(bool value);
  /// Stamps also when the value stays.
  void SetLocked(bool value);

  /// The named properties that make the key; none for a key from the identifier. Made on first read.
  PropertiesDataPtr PropertiesData();
  Date DateCreated() const noexcept { return created_; }
  bool Dirty() const;
  void SetDirty();
  void ClearDirty();
  std::string Details() const;
  /// What the Details of definition and format end with: Mixed, Separator and IncludeNames.
  std::string FieldsText() const;

 private:
  std::string StateDetails() const override { return Details(); }
  template <class T>
  void Let(T KeyFormatFields::* field, const T& value) {
    if (fields_.*field == value) return;
    fields_.*field = value;
    SetDirty();
  }

  KeyFormatFields fields_;
  Date created_;
  Variant modified_;  // date of the last change, Empty while clean
  PropertiesDataPtr propertiesData_;
};

}  // namespace velmoria
