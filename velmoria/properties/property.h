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
/// on a column of a row, which its Recordset holds. Copies of the handle are the same Property, and Properties of
/// different rows share one definition: what is set on it through one is seen through all.
/// Locked guards the definition: but for its own, Value's and DefaultValue's, every setter raises 15002 while it is
/// True. Modifiable guards the Value.
class VELMORIA_API Property final : public Object, public Reporting, public Pooled {
 public:
  Property();
  ~Property() override;
  std::string_view ReportedType() const noexcept override { return "Property"; }

  /// The value about to be stored, already converted; none for a refused value. Cancel leaves everything as it is.
  CancelEvent<Property, const Variant&> BeforeValueChange;
  Event<Property> AfterValueChange;

  /// The value in the storage of the DataType: an Empty one reads as the DefaultValue or else the zero of its type,
  /// except under dtVariant and dtByteArray; Null reads as Null. Raises 15113 on a deleted row, and 15000 for an
  /// initial value that does not convert, since that one is stored without a test.
  Variant Value() const;
  /// Converts and stores; the present value again (a date within the same second, too) changes nothing and raises no
  /// event. Empty and Null are kept as they are under every DataType. Raises, in this order, 15060 when not Modifiable,
  /// 15113 on a deleted row, 15162 for Empty or Null when pfRequired, 15163 for a text of no length without
  /// pfAllowZeroLength, 15161 for one beyond Size, 15164 for what is no Byte array, Variant array or String under
  /// dtByteArray, 15059 when the value does not convert to the DataType (the cause, 6 or 13, is a warning beside it).
  /// Whatever else fails, a listener among it, is 15058 or 15059, as the value has the DataType's storage or another;
  /// only a listener of AfterValueChange fails behind the store.
  void SetValue(const Variant& value);
  /// Free-standing: the value before the most recent change. Bound: the one last saved, Empty while unchanged.
  Variant OldValue() const;
  /// Takes OldValue back, one step and without events; a free-standing Property that was sfNew ends as sfdeleted, any
  /// other in its own state, not dirty. Bound, an ordinary value that has really changed is not put back; see
  /// Recordset. Raises 15113 on a deleted row.
  void Undo();
  /// Whether the value differs from OldValue: numbers by value, dates by the second, texts exactly. An old value that
  /// is an object differs always. Not the same question as Dirty.
  bool DirtyValue() const;
  /// Whether the definition was changed since it was made or saved; a bound value does not change it.
  bool Dirty() const;
  /// Whether the stored value is Empty, whatever Value reads as.
  bool EmptyValue() const;
  /// Whether it is an Empty pfInput and pfRequired at once.
  bool RequiresValue() const;
  /// In the storage of the DataType; Empty when there is none, Null as Null.
  Variant DefaultValue() const;
  /// Raises 15002 when the definition was made Locked (Locked of the Property is not asked); else meets the tests of
  /// SetValue from 15162 on, except that Empty is always stored. No event, and it does not make the Property Dirty.
  void SetDefaultValue(const Variant& value);
  /// The value for the eye: "(Null)", "(Empty)", "(Byte Array)", the text by FormatText, or the value itself.
  /// Raises 15169 for a FormatText that cannot be read or does not go with the value, and what Value raises.
  Variant DisplayValue() const;

  /// Of the row when bound; otherwise sfnonpersistent + sfNew at first, with sfdirty while DirtyValue is True.
  zStateFlags StateFlags() const;
  std::string StateFlagsDisplay() const;
  /// What the row's Action permitted when this was bound to the row; efNone when free-standing.
  zEditFlags EditFlags() const;
  std::string EditFlagsDisplay() const;
  /// Whether Flags has pfcounter.
  bool Counter() const;
  /// The 1-based position among the definitions; 0 outside any.
  std::int32_t OrderNumber() const;
  /// "SourceTable.SourceColumn", or "" when one of the two is empty.
  std::string SourceKey() const;
  /// One line for the eye, DisplayValue included, and so raises what that raises.
  std::string Details() const;
  /// A free-standing Property without parents over a definition of its own: with the present value (OldValue Empty),
  /// Modifiable, not Locked, without Description, new and not Dirty. An empty name keeps the name. Recursive copies the
  /// Attributes.
  PropertyPtr Copy(const std::string& name = {}, bool recursive = true) const;

  std::string Name() const;
  void SetName(std::string value);
  std::string Caption() const;
  void SetCaption(std::string value);
  std::string Description() const;
  void SetDescription(std::string value);
  /// A code outside the enumeration is as good as dtVariant.
  zDataTypes DataType() const;
  /// Leaves the value as it is stored; it is read in the new type from here on.
  void SetDataType(zDataTypes value);
  std::string DataTypeName() const;
  /// The longest text of a dtString in characters; 0 and below is no limit.
  std::int32_t Size() const;
  void SetSize(std::int32_t value);
  zPropertyFlags Flags() const;
  void SetFlags(zPropertyFlags value);
  std::string FlagsDisplay() const;
  bool Modifiable() const;
  void SetModifiable(bool value);
  bool Locked() const { return locked_; }
  void SetLocked(bool value) { locked_ = value; }
  /// The pattern of DisplayValue, in the language of velmoria/runtime/format.h; "" shows the value as it is.
  std::string FormatText() const;
  void SetFormatText(std::string value);
  std::string InputMask() const;
  void SetInputMask(std::string value);
  std::string Operator() const;
  /// Raises 15002 when bound, too, and 15056 for anything but "=", ">", "<>", "=>", "=<", "<", "<=" and ">=".
  void SetOperator(std::string value);
  bool OrFlag() const;
  void SetOrFlag(bool value);
  // What the value is called in its source: SourceName as a column of a result or as a parameter, SourceTable and
  // SourceColumn where it is kept. Statements name it by the latter two, and where these are empty by SourceName, Name.
  std::string SourceName() const;
  void SetSourceName(std::string value);
  std::string SourceTable() const;
  void SetSourceTable(std::string value);
  std::string SourceColumn() const;
  void SetSourceColumn(std::string value);
  zSourceDataTypes SourceDataType() const;
  void SetSourceDataType(zSourceDataTypes value);
  std::string SourceDataTypeName() const;
  /// Those of the definition; made on first read, and then kept.
  AttributesPtr Attributes();
  /// Shows other ones from here on; the definition keeps its own. An empty handle goes back to these.
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
  /// Gives up its row, to be bound to another one as if just made; false when somebody else holds it or it differs from
  /// a new one.
  bool LeaveRow() noexcept;
  /// Makes a definition when there is none.
  const PropertyDataPtr& Data() const {
    if (!data_) MakeDefinition();
    return data_;
  }
  RecordsetPtr Recordset() const;
  bool IsBound() const { return static_cast<bool>(recordset_); }
  /// Takes each parent given, and the style unless it is psNone. Raises one of 15100 to 15109 for a parent that it
  /// already has, even the same one, and then takes nothing.
  void SetParents(zPropertyStyles style, const Parents& parents);
  void ClearParents(zPropertyStyles style, const ParentSlots& slots);
  void SetStateFlags(zStateFlags flags);
  void ClearDirty();
  /// The steps after the row was written: sfpersistent alone, or sfdeleted for a pending delete; an Empty new value
  /// becomes Null, so a pfRequired one raises 15162.
  void MarkUpdated();
  /// What Undo does to the state.
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
  static constexpr auto kStateAtFirst = sfnonpersistent | sfNew;

  std::string StateDetails() const override { return Details(); }
  void MakeDefinition() const;
  Variant StoredValue() const;
  Variant Formatted(const Variant& value) const;
  void StoreValue(const Variant& value);
  void RefuseLocked(const char* routine) const;
  [[noreturn, gnu::cold]] void ValueFailed(const Variant& value) const;
  const Parents& HeldParents() const;
  Rare& MakeRare();
  template <class T>
  void Let(const char* routine, void (PropertyData::*setter)(T), T value);

  mutable PropertyDataPtr data_;
  RecordsetPtr recordset_;
  std::int32_t row_ = -1;
  zStateFlags state_ = kStateAtFirst;
  zEditFlags editFlags_ = efNone;
  bool locked_ = false;
  bool copyMark_ = false;
  std::unique_ptr<Rare> rare_;
};

}  // namespace velmoria
