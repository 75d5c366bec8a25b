#include "tests/unit/properties/state_model/property_model.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "tests/unit/properties/state_model/state_values.h"
#include "velmoria/runtime/error.h"

namespace velmoria::test {

namespace {

// The storages of the data types. dtByteArray has none that a value can bear, an array always has a type.
struct Storage {
  zDataTypes DataType;
  VarType Type;
  Variant (*Convert)(const Variant&);
};

constexpr std::array kStorages{
    Storage{dtString, VarType::String, [](const Variant& value) -> Variant { return value.AsText(); }},
    Storage{dtLongInteger, VarType::Long, [](const Variant& value) -> Variant { return value.AsLong(); }},
    Storage{dtDate, VarType::Date, [](const Variant& value) -> Variant { return value.AsDate(); }},
    Storage{dtInteger, VarType::Integer, [](const Variant& value) -> Variant { return value.AsInteger(); }},
    Storage{dtBoolean, VarType::Boolean, [](const Variant& value) -> Variant { return value.AsBoolean(); }},
    Storage{dtCurrency, VarType::Currency, [](const Variant& value) -> Variant { return value.AsCurrency(); }},
    Storage{dtSingle, VarType::Single, [](const Variant& value) -> Variant { return value.AsSingle(); }},
    Storage{dtDouble, VarType::Double, [](const Variant& value) -> Variant { return value.AsDouble(); }},
    Storage{dtDecimal, VarType::Decimal, [](const Variant& value) -> Variant { return value.AsDecimal(); }},
    Storage{dtByte, VarType::Byte, [](const Variant& value) -> Variant { return value.AsByte(); }},
};

Variant Converted(const Variant& value, zDataTypes dataType) {
  for (const auto& storage : kStorages) {
    if (storage.DataType == dataType) return storage.Convert(value);
  }
  return value;
}

// For readers: whatever fails in them is a failure of the run-time.
Variant ReadAs(const Variant& value, zDataTypes dataType) try {
  return Converted(value, dataType);
} catch (const Error&) { throw Refused{}; }

std::int64_t WholeSecond(const Variant& date) {
  constexpr double kMilliseconds = 86400000;
  return static_cast<std::int64_t>(std::floor(std::round(date.AsDouble() * kMilliseconds) / 1000));
}

std::int32_t Characters(const std::string& text) {
  return static_cast<std::int32_t>(
      std::ranges::count_if(text, [](char each) { return (static_cast<unsigned char>(each) & 0xC0U) != 0x80U; }));
}

bool SameElements(const Variant& left, const Variant& right) {
  if (left.LowerBound() != right.LowerBound() || left.UpperBound() != right.UpperBound()) return false;
  for (auto index = left.LowerBound(); index <= left.UpperBound(); ++index) {
    if (!Same(left.Element(index), right.Element(index))) return false;
  }
  return true;
}

// By the whole second; what is no date differs.
bool DiffersFromDate(const Variant& old, const Variant& current) try {
  return current.IsNull() || WholeSecond(old) != WholeSecond(current.AsDate());
} catch (const Error&) { return true; }

// Whether a value counts as changed. Numbers are compared whatever their width.
bool Differs(const Variant& old, const Variant& current) {
  if (old.IsEmpty() || old.IsNull()) return old.Type() != current.Type();
  if (old.IsObject() || old.IsMissing()) return true;
  if (old.Type() == VarType::Date) return DiffersFromDate(old, current);
  if (current.IsEmpty() || current.IsNull()) return true;
  if (old.IsNumber() && current.IsNumber()) return old.AsDouble() != current.AsDouble();
  return !Same(old, current);
}

zPropertyFlags DefaultFlags(zPropertyStyles style, zDataTypes dataType) {
  const auto flags = dataType == dtString ? pfAllowZeroLength : pfNone;
  return style == psParameter || style == psLinkParameter ? flags | pfInput : flags;
}

}  // namespace

zDataTypes OwnDataType(const Variant& value) {
  for (const auto& storage : kStorages) {
    if (storage.Type == value.Type()) return storage.DataType;
  }
  return dtVariant;
}

bool Same(const Variant& left, const Variant& right) {
  if (left.Type() != right.Type()) return false;
  if (left.IsEmpty() || left.IsNull() || left.IsMissing()) return true;
  if (left.IsArray()) return SameElements(left, right);
  if (left.IsObject()) return left.ObjectPointer() == right.ObjectPointer();
  if (left.IsText()) return left.TextView() == right.TextView();
  if (left.Type() == VarType::Date) return WholeSecond(left) == WholeSecond(right);
  return left.AsDouble() == right.AsDouble();
}

PropertyModel PropertyModel::Made(zPropertyStyles style, const PropertyFields& fields, const Variant& stamp) {
  PropertyModel made;
  made.Name = fields.Name;
  made.Style = style;
  made.DataType = fields.DataType;
  made.Size = fields.Size;
  made.Flags = fields.Flags == pfNone ? DefaultFlags(style, fields.DataType) : fields.Flags;
  made.Modifiable = fields.Modifiable;
  if (fields.Value.IsGiven()) made.Current = fields.Value;
  if (!fields.DefaultValue.IsMissing()) made.LetDefaultValue(fields.DefaultValue);
  made.DefinitionLocked = fields.Locked;
  made.Stamp = stamp;
  return made;
}

PropertyModel PropertyModel::Copied(const std::string& name) const {
  return Made(Style,
              {.Name = name.empty() ? Name : name,
               .Value = Current,
               .DataType = DataType,
               .Size = Size,
               .Flags = Flags,
               .DefaultValue = Default},
              Variant());
}

Variant PropertyModel::Value() const {
  if (Current.IsNull()) return Current;
  if (Current.IsEmpty() && !Default.IsEmpty()) return DefaultValue();
  return ReadAs(Current, DataType);
}

Variant PropertyModel::DefaultValue() const {
  return Default.IsEmpty() || Default.IsNull() ? Default : ReadAs(Default, DataType);
}

bool PropertyModel::DirtyValue() const { return Differs(Old, Current); }

// What would be stored, or the refusal.
Variant PropertyModel::Checked(const Variant& value) const {
  if (value.IsEmpty() || value.IsNull()) {
    if (has(Flags, pfRequired)) throw Refused{errValue_Required};
    return value;
  }
  if (DataType == dtString) {
    const auto length = Characters(value.AsText());
    if (length == 0 && !has(Flags, pfAllowZeroLength)) throw Refused{errValue_ZeroLength};
    if (Size > 0 && length > Size) throw Refused{errValue_Size};
  }
  if (DataType == dtByteArray && !value.IsText() && value.TypeName() != "Variant()" && value.TypeName() != "Byte()") {
    throw Refused{errValue_BLOB};
  }
  return Converted(value, DataType);
}

void PropertyModel::LetValue(const Variant& value, Scene& scene) try {
  if (!Modifiable) throw Refused{errProperty_Modify};
  const auto checked = Checked(value);
  if (Same(checked, Current)) return;
  if (scene.Wrong == Mistake::NumbersAreEqualAcrossTypes && !Differs(Current, checked)) return;
  Store(checked, scene);
} catch (const Error&) {
  // dtVariant is nobody's storage.
  const auto own = OwnDataType(value);
  throw Refused{own != dtVariant && own == DataType ? errProperty_Value : errProperty_DataType};
}

void PropertyModel::Store(const Variant& value, Scene& scene) {
  scene.Told += Name + " will be " + Shown(value) + "; ";
  if (scene.OnValue == Listener::FailsBefore) Fail(RuntimeFailure::DeviceError);
  if (scene.OnValue == Listener::Cancels && scene.Wrong != Mistake::CancelledValueIsStored) return;
  if (scene.Wrong != Mistake::OldValueIsTheFirst || !DirtyValue()) Old = Current;
  Current = value;
  Stamp = scene.Now;
  scene.Told += Name + " is changed; ";
  if (scene.OnValue == Listener::FailsAfter) Fail(RuntimeFailure::DeviceError);
}

void PropertyModel::LetDefaultValue(const Variant& value) try {
  if (DefinitionLocked) throw Refused{errVelmoria_Locked};
  Default = value.IsEmpty() ? value : Checked(value);
} catch (const Error&) {
  const auto own = OwnDataType(value);
  throw Refused{own != dtVariant && own == DataType ? errProperty_Value : errProperty_DataType};
}

void PropertyModel::Undo(Scene& scene) {
  const auto state = State;
  Current = Old;
  MarkUndone(scene);
  if (scene.Wrong == Mistake::UndoRestoresState) State = state;
}

void PropertyModel::LetState(zStateFlags flags, const Scene& scene) {
  State = flags;
  Stamp = scene.Now;
}

void PropertyModel::MarkUpdated(Scene& scene) {
  if (has(StateFlags(), sfNew) && EmptyValue() && Modifiable) LetValue(Variant::Null(), scene);
  LetState(StateFlags() | sfpersistent, scene);
  if (has(StateFlags(), sfpendingdelete)) {
    LetState(StateFlags() | sfdeleted, scene);
    LetState(StateFlags() & ~(sfpersistent | sfpendingdelete), scene);
  }
  ClearDirty();
  LetState(StateFlags() & ~(sfnonpersistent | sfdirty | sfNew), scene);
  if (scene.Wrong == Mistake::UpdateEndsClean) ClearDirty();
}

void PropertyModel::MarkUndone(const Scene& scene) {
  const auto state = StateFlags();
  if (has(state, sfNew)) {
    LetState(sfdeleted, scene);
  } else if (has(state, sfpersistent)) {
    LetState(sfpersistent, scene);
  }
  ClearDirty();
}

void PropertyModel::ClearDirty() {
  Stamp = Variant();
  Old = Current;
}

}  // namespace velmoria::test
