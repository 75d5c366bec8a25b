#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "velmoria/core/enumerations.h"
#include "velmoria/core/reporting.h"
#include "velmoria/fwd.h"
#include "velmoria/properties/shared_fields_impl.h"
#include "velmoria/runtime/object.h"
#include "velmoria/runtime/pooled.h"

namespace velmoria {

/// What a driver tells about a column of a result, beside what a definition has fields for.
struct ColumnFacts {
  std::int32_t Attributes = 0;
  std::int32_t OrdinalPosition = 0;  // counts from 1; 0 for a definition that comes from no result
  bool ChunkRequired = false;
};

/// The definition of a Property and, while it is free-standing, its value. Many Property objects may share one.
/// A setter stores only what differs and then stamps the definition; Style, OrderNumber and DefaultValue never do.
class PropertyData final : public Object, public Reporting, public Pooled {
 public:
  PropertyData();
  /// One like a definition that was only set up, as if made at that time. They share their fields until one of them
  /// changes.
  PropertyData(const PropertyData& like, Date created);
  ~PropertyData() override;
  std::string_view ReportedType() const noexcept override { return "PropertyData"; }

  /// Stores the fields and makes the defaults of Flags and Operator; clean leaves the definition without a stamp.
  /// Raises what SetDefaultValue raises for the DefaultValue given.
  void Setup(zPropertyStyles style, const PropertyFields& fields, std::int32_t orderNumber = 0, bool clean = false);
  /// A clean definition of the same kind, Modifiable again and without Description; an empty name keeps the name.
  PropertyDataPtr Copy(const std::string& name, bool recursive) const { return Copy(name, recursive, fields_->Value); }
  /// The same with another value.
  PropertyDataPtr Copy(const std::string& name, bool recursive, const Variant& value) const;

  const PropertyFields& Fields() const noexcept { return *fields_; }

  zPropertyStyles Style() const noexcept { return style_; }
  void SetStyle(zPropertyStyles value) noexcept { style_ = value; }
  /// Counts from 1; a column of rows is at OrderNumber - 1. 0 while it belongs to no list of definitions.
  std::int32_t OrderNumber() const noexcept { return orderNumber_; }
  void SetOrderNumber(std::int32_t value) noexcept {
    if (!orderFixed_) orderNumber_ = value;
  }
  /// A column of rows is found by its number: from now on it keeps the one it has, whatever list it joins.
  void FixOrderNumber() noexcept { orderFixed_ = true; }

  const std::string& Name() const noexcept { return fields_->Name; }
  void SetName(std::string value);
  zDataTypes DataType() const noexcept { return fields_->DataType; }
  void SetDataType(zDataTypes value);
  std::int32_t Size() const noexcept { return fields_->Size; }
  void SetSize(std::int32_t value);
  const std::string& Operator() const noexcept { return fields_->Operator; }
  /// Raises 15056 for anything but "=", ">", "<>", "=>", "=<", "<", "<=" and ">=".
  void SetOperator(std::string value);
  bool OrFlag() const noexcept { return fields_->OrFlag; }
  void SetOrFlag(bool value);
  const std::string& SourceName() const noexcept { return fields_->SourceName; }
  void SetSourceName(std::string value);
  const std::string& SourceColumn() const noexcept { return fields_->SourceColumn; }
  void SetSourceColumn(std::string value);
  const std::string& SourceTable() const noexcept { return fields_->SourceTable; }
  void SetSourceTable(std::string value);
  zSourceDataTypes SourceDataType() const noexcept { return fields_->SourceDataType; }
  void SetSourceDataType(zSourceDataTypes value);
  bool Modifiable() const noexcept { return fields_->Modifiable; }
  void SetModifiable(bool value);
  zPropertyFlags Flags() const noexcept { return fields_->Flags; }
  void SetFlags(zPropertyFlags value);
  const std::string& FormatText() const noexcept { return fields_->FormatText; }
  void SetFormatText(std::string value);
  const std::string& InputMask() const noexcept { return fields_->InputMask; }
  void SetInputMask(std::string value);
  const std::string& Caption() const noexcept { return fields_->Caption; }
  void SetCaption(std::string value);
  const std::string& Description() const noexcept { return fields_->Description; }
  void SetDescription(std::string value);
  bool Locked() const noexcept { return fields_->Locked; }
  void SetLocked(bool value);
  zEngines Engine() const noexcept { return fields_->Engine; }
  void SetEngine(zEngines value);
  const std::string& PropertiesName() const noexcept { return propertiesName_; }
  void SetPropertiesName(std::string value);
  Date DateCreated() const noexcept { return dateCreated_; }
  void SetDateCreated(Date value);
  Date DateModified() const noexcept { return dateModified_; }
  void SetDateModified(Date value);
  const std::string& ModifiedBy() const noexcept { return modifiedBy_; }
  void SetModifiedBy(std::string value);

  /// The value as it is stored, of whatever type. Storing one makes the value before it the old one.
  const Variant& Value() const noexcept { return fields_->Value; }
  void SetValue(const Variant& value);
  const Variant& OldValue() const noexcept { return oldValue_; }
  /// Takes the old value back, one step.
  void Undo();
  bool DirtyValue() const;

  /// As stored; see DefaultValue.
  const Variant& StoredDefaultValue() const noexcept { return fields_->DefaultValue; }
  /// In the storage of the DataType; Empty when there is none.
  Variant DefaultValue() const;
  /// Raises 15002 when Locked, 15161 to 15164 for a value the definition refuses, 15058 or 15059 for one that does not
  /// convert. Empty is always stored.
  void SetDefaultValue(const Variant& value);

  /// Whether the definition, or an Attribute of it, was changed.
  bool Dirty() const;
  void SetDirty();
  /// Drops the stamp and makes the present value the old one, too.
  void ClearDirty();
  /// The date of the last change, Empty while clean.
  const Variant& ModifiedStamp() const noexcept { return modified_; }

  /// SourceTable.SourceColumn, or "" when one of them is empty.
  std::string SourceKey() const;
  /// Whether this is the SourceKey; an empty one is nobody's.
  bool HasSourceKey(std::string_view sourceKey) const noexcept;
  std::string FlagsDisplay() const;
  std::string DataTypeName() const;
  std::string SourceDataTypeName() const;
  std::string Details() const;

  /// Made on first read.
  AttributesDataPtr AttributesData();
  /// Shows these as Attributes, which are still made on first read.
  void SetColumnFacts(const ColumnFacts& facts) noexcept { columnFacts_ = facts; }
  void SetAttributesData(AttributesDataPtr value);

 private:
  std::string StateDetails() const override { return Details(); }
  template <class T>
  void Let(T PropertyFields::* field, T value);
  template <class T>
  void Let(T& field, T value);

  SharedFields fields_;
  zPropertyStyles style_ = psNone;
  std::int32_t orderNumber_ = 0;
  bool orderFixed_ = false;
  Variant oldValue_;
  Variant modified_;
  std::string propertiesName_;
  std::string modifiedBy_;
  Date dateCreated_;
  Date dateModified_;
  AttributesDataPtr attributes_;
  ColumnFacts columnFacts_;
};

}  // namespace velmoria
