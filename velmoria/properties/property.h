#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "velmoria/core/enumerations.h"
#include "velmoria/core/reporting.h"
#include "velmoria/fwd.h"
#include "velmoria/runtime/event.h"
#include "velmoria/runtime/object.h"
#include "velmoria/runtime/pooled.h"
#include "velmoria/runtime/variant.h"

namespace velmoria {

struct ParentSlots;

/// One typed value and what is known about it. A free-standing Property holds its value itself; a bound one is a view
/// on a column of a row, which its Recordset holds. Copies of the handle are the same Property.
/// Locked guards what describes the Property and raises 15002 in those setters; Modifiable guards the Value.
class VELMORIA_API Property final : public Object, public Reporting, public Pooled {
 public:
  Property();
  ~Property() override;
  std::string_view ReportedType() const noexcept override { return "Property"; }

  /// The value about to be stored, already converted. Cancel leaves everything as it is.
  CancelEvent<Property, const Variant&> BeforeValueChange;
  Event<Property> AfterValueChange;

  /// The value in the storage of the DataType: an Empty one reads as the DefaultValue or else the zero of its type,
  /// except under dtVariant and dtByteArray; Null reads as Null. Raises 15113 on a deleted row.
  Variant Value() const;
  /// Converts and stores; the present value again changes nothing and raises no event. Raises 15060 when not
  /// Modifiable, 15113 on a deleted row, 15161 to 15164 for a value the definition refuses, 15059 when the value does
  /// not convert to the DataType, 15058 for any other failure.
  void SetValue(const Variant& value);
  /// Free-standing: the value before the most recent change. Bound: the one last saved, Empty while unchanged.
  Variant OldValue() const;
  /// Takes OldValue back, one step. Bound, an ordinary value that has really changed is not put back; see Recordset.
  void Undo();
  /// Whether the value differs from OldValue; not the same question as Dirty.
  bool DirtyValue() const;
  /// Whether the definition was changed.
  bool Dirty() const;
  /// Whether the stored value is Empty, whatever Value reads as.
  bool EmptyValue() const;
  /// Whether it is an Empty pfInput and pfRequired at once.
  bool RequiresValue() const;
  Variant DefaultValue() const;
  /// Raises 15002 when the definition was made Locked; otherwise like SetValue, but 15060 and 15113.
  void SetDefaultValue(const Variant& value);
  /// The value for the eye: "(Null)", "(Empty)", "(Byte Array)", the text by FormatText, or the value itself.
  /// Raises 15169 for a FormatText that cannot be read.
  Variant DisplayValue() const;

  zStateFlags StateFlags() const;
  std::string StateFlagsDisplay() const;
  zEditFlags EditFlags() const;
  std::string EditFlagsDisplay() const;
  bool Counter() const;
  /// The 1-based position among the definitions; 0 outside any.
  std::int32_t OrderNumber() const;
  std::string SourceKey() const;
  std::string Details() const;
  /// A free-standing Property of the same definition with the present value, new and clean; an empty name keeps the
  /// name. Recursive copies the Attributes.
  PropertyPtr Copy(const std::string& name = {}, bool recursive = true) const;

  std::string Name() const;
  void SetName(std::string value);
  std::string Caption() const;
  void SetCaption(std::string value);
  std::string Description() const;
  void SetDescription(std::string value);
  zDataTypes DataType() const;
  void SetDataType(zDataTypes value);
  std::string DataTypeName() const;
  std::int32_t Size() const;
  void SetSize(std::int32_t value);
  zPropertyFlags Flags() const;
  void SetFlags(zPropertyFlags value);
  std::string FlagsDisplay() const;
  bool Modifiable() const;
  void SetModifiable(bool value);
  bool Locked() const { return locked_; }
  void SetLocked(bool value) { locked_ = value; }
  std::string FormatText() const;
  void SetFormatText(std::string value);
  std::string InputMask() const;
  void SetInputMask(std::string value);
  std::string Operator() const;
  /// Raises 15002 when bound, too, and 15056 for what is no operator.
  void SetOperator(std::string value);
  bool OrFlag() const;
  void SetOrFlag(bool value);
  std::string SourceName() const;
  void SetSourceName(std::string value);
  std::string SourceTable() const;
  void SetSourceTable(std::string value);
  std::string SourceColumn() const;
  void SetSourceColumn(std::string value);
  zSourceDataTypes SourceDataType() const;
  void SetSourceDataType(zSourceDataTypes value);
  std::string SourceDataTypeName() const;
  /// Made on first read.
  AttributesPtr Attributes();
  void SetAttributes(AttributesPtr value);

  // Of the parents, or of the row's Action; empty where there is none.
  std::string ServerName() const;
  std::string ClassName() const;
  std::string ActionName() const;
  std::string DatabaseName() const;
  zEngines Engine() const;
  zSourceTypes SourceType() const;
  std::string SourceTypeName() const;
  std::string SourceText() const;

  // Inside the library.
  void Bind(PropertyDataPtr data, const Parents& parents, zEditFlags editFlags = efNone);
  void Bind(PropertyDataPtr data, RecordsetPtr recordset, std::int32_t row, zEditFlags editFlags = efNone);
  const PropertyDataPtr& Data() const { return data_; }
  RecordsetPtr Recordset() const;
  bool IsBound() const { return static_cast<bool>(recordset_); }
  /// Raises 15100 to 15109 for a parent that it already has.
  void SetParents(zPropertyStyles style, const Parents& parents);
  void ClearParents(zPropertyStyles style, const ParentSlots& slots);
  void SetStateFlags(zStateFlags flags);
  void ClearDirty();
  /// The steps after the row was written.
  void MarkUpdated();
  void MarkUndone();
  bool CopyMark() const { return copyMark_; }
  void SetCopyMark(bool value) { copyMark_ = value; }

  // Inside the library: the pieces of a statement; an engine of engUnknown is the Property's own.
  std::string NameClause(zSourceTypes sourceType) const;
  std::string ValueClause(zEngines engine) const;
  std::string OperatorValue(zEngines engine) const;
  std::string SetClause(zSourceTypes sourceType, zEngines engine) const;
  std::string WhereClause(zSourceTypes sourceType, zEngines engine) const;

 private:
  struct Rare;  // what few have: parents, attributes

  std::string StateDetails() const override { return Details(); }
  Variant StoredValue() const;
  Variant Formatted(const Variant& value) const;
  void StoreValue(const Variant& value);
  void Refuse(const char* routine) const;
  [[noreturn]] void ValueFailed(const Variant& value) const;
  const Parents& HeldParents() const;
  Rare& MakeRare();
  template <class T>
  void Let(const char* routine, void (PropertyData::*setter)(T), T value);

  PropertyDataPtr data_;
  RecordsetPtr recordset_;
  std::int32_t row_ = -1;
  zStateFlags state_ = sfnonpersistent | sfNew;
  zEditFlags editFlags_ = efNone;
  bool locked_ = false;
  bool copyMark_ = false;
  std::unique_ptr<Rare> rare_;
};

}  // namespace velmoria
