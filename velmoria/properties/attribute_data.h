#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "velmoria/core/enumerations.h"
#include "velmoria/core/reporting.h"
#include "velmoria/fwd.h"
#include "velmoria/properties/attribute.h"
#include "velmoria/runtime/object.h"

namespace velmoria {

/// The definition and value behind an Attribute. A setter other than the Value's stores only what differs and then
/// stamps the data modified.
class AttributeData final : public Object, public Reporting {
 public:
  AttributeData();
  ~AttributeData() override;
  std::string_view ReportedType() const noexcept override { return "AttributeData"; }

  /// Stores the fields; the value first, so that one that is not Modifiable can be made with a value. Clean leaves the
  /// data without a stamp. Raises what SetValue raises.
  void Setup(const AttributeFields& fields, bool clean = false);
  /// Data of its own with the same fields, clean.
  AttributeDataPtr Copy() const;

  const std::string& Name() const noexcept { return fields_.Name; }
  void SetName(std::string value);
  zDataTypes DataType() const noexcept { return fields_.DataType; }
  void SetDataType(zDataTypes value);
  std::int32_t Size() const noexcept { return fields_.Size; }
  void SetSize(std::int32_t value);
  bool Modifiable() const noexcept { return fields_.Modifiable; }
  void SetModifiable(bool value);
  bool Locked() const noexcept { return fields_.Locked; }
  void SetLocked(bool value);

  /// In the storage of the DataType, Null as Null; what does not convert is a failure.
  Variant Value() const;
  /// Raises 15021, 15161 and 15020; a refused value leaves the stored one.
  void SetValue(const Variant& value);
  const Variant& StoredValue() const noexcept { return fields_.Value; }
  /// Stores without any test: a text that is no value of the type fails only when it is read.
  void SetStoredValue(Variant value) { fields_.Value = std::move(value); }

  Date DateCreated() const noexcept { return dateCreated_; }
  bool Dirty() const noexcept { return !modified_.IsEmpty(); }
  void ClearDirty() { modified_ = Variant(); }

  std::string DataTypeName() const;
  std::string DisplayValue() const;
  std::string Details() const;

 private:
  std::string StateDetails() const override { return Details(); }
  Variant Converted(const Variant& value) const;
  void Stamp();
  template <class T>
  void Let(T AttributeFields::* field, T value);

  AttributeFields fields_{.Name = {}, .Value = {}};
  Date dateCreated_;
  Variant modified_;  // date of the last change, Empty while clean
};

}  // namespace velmoria
