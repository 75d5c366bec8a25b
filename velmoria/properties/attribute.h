#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "velmoria/core/enumerations.h"
#include "velmoria/core/reporting.h"
#include "velmoria/fwd.h"
#include "velmoria/runtime/variant.h"

namespace velmoria {

/// What an Attribute is made of: the arguments of Attributes.SetupItem and Framework.CreateAttribute.
struct AttributeFields {
  std::string Name;                    // required
  Variant Value = Variant::Missing();  // not given leaves it Empty
  zDataTypes DataType = dtVariant;
  bool Modifiable = true;
  std::int32_t Size = 0;  // the longest text of a dtString in characters; 0 is no limit
  bool Locked = false;
};

/// One named piece of meta-information: of a Property, or one setting of the Profile. Several Attribute objects may
/// show the same data, which they own together. Locked guards DataType, Size and Modifiable, never the Value.
class VELMORIA_API Attribute final : public Object, public Reporting {
 public:
  explicit Attribute(AttributeDataPtr data);
  ~Attribute() override;

  std::string_view ReportedType() const noexcept override { return "Attribute"; }

  /// The value in the storage of the DataType: Empty reads as the zero of its type, Null as Null; dtVariant and
  /// dtByteArray give it as it is stored. Raises 15000 for a setting whose stored text is no such value.
  Variant Value() const;
  /// Always stores and makes its collection Dirty, the present value too. Empty and Null are kept as they are;
  /// dtVariant and dtByteArray take anything. Raises 15021 when not Modifiable, whatever the value, 15161 for a text of
  /// a dtString beyond Size, 15020 for a value that does not convert (the cause, 6 or 13, is a warning beside it). A
  /// refused value changes nothing.
  void SetValue(const Variant& value);

  /// It changes by RenameItem of the collection.
  std::string Name() const;
  zDataTypes DataType() const;
  /// Raises 15002 when Locked; the value stays as it is stored. So do the two setters below.
  void SetDataType(zDataTypes value);
  /// The longest text of a dtString in characters; 0 and below is no limit.
  std::int32_t Size() const;
  void SetSize(std::int32_t value);
  bool Modifiable() const;
  void SetModifiable(bool value);
  /// Never refused.
  bool Locked() const;
  void SetLocked(bool value);

  std::string DataTypeName() const;
  std::string Details() const;

  /// An Attribute of its own with the same fields, in no collection and clean.
  AttributePtr Copy() const;

  // Inside the library.
  /// What stands behind it.
  const AttributeDataPtr& Data() const noexcept { return data_; }

 protected:
  std::string StateDetails() const override;

 private:
  AttributeDataPtr data_;
};

}  // namespace velmoria
