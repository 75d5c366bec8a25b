#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "velmoria/runtime/api.h"
#include "velmoria/runtime/currency.h"
#include "velmoria/runtime/date.h"
#include "velmoria/runtime/decimal.h"
#include "velmoria/runtime/object.h"

namespace velmoria {

class ArrayBody;
class TextBody;

/// The run-time type codes. An array has the Array bit and the code of its elements: a Byte array is 8209.
enum class VarType : std::uint16_t {
  Empty = 0,
  Null = 1,
  Integer = 2,
  Long = 3,
  Single = 4,
  Double = 5,
  Currency = 6,
  Date = 7,
  String = 8,
  Object = 9,
  Error = 10,
  Boolean = 11,
  Variant = 12,
  Unknown = 13,
  Decimal = 14,
  Byte = 17,
  Array = 8192,
};

// In a namespace of its own, so that enumerations may have a member of that name without g++ calling it a shadow.
inline namespace scalars {
using Byte = std::uint8_t;
}  // namespace scalars

constexpr VarType ArrayOf(VarType element) noexcept {
  return static_cast<VarType>(static_cast<unsigned>(VarType::Array) | static_cast<unsigned>(element));
}

/// The dynamically typed value: 16 bytes, with Empty (never set), Null (known to have no value) and Missing (an
/// argument not given) told apart. Text is UTF-8. Copies share texts, arrays and objects; arrays are copied on write.
/// A value without objects may pass from thread to thread; an object stays with its apartment.
///
/// The named conversions raise and never truncate: 13 for a text or type that is no such value, 6 for one that does
/// not fit, 94 for Null. Empty converts to the zero of the type. Numbers round half to even. True is -1 as a number
/// and 255 as a Byte; a date is its days as a number.
class VELMORIA_API Variant {
 public:
  Variant() noexcept = default;
  Variant(bool value) noexcept : type_(VarType::Boolean), whole_(value ? 1 : 0) {}
  Variant(std::int16_t value) noexcept : type_(VarType::Integer), whole_(value) {}
  Variant(std::int32_t value) noexcept : type_(VarType::Long), whole_(value) {}
  Variant(float value) noexcept : type_(VarType::Single), single_(value) {}
  Variant(double value) noexcept : type_(VarType::Double), real_(value) {}
  Variant(Byte value) noexcept : type_(VarType::Byte), whole_(value) {}
  Variant(Currency value) noexcept : type_(VarType::Currency), whole_(value.TenThousandths) {}
  Variant(Date value) noexcept : type_(VarType::Date), real_(value.Days) {}
  Variant(const Decimal& value) noexcept;
  Variant(const char* text) : Variant(std::string_view(text)) {}
  Variant(std::string_view text);
  Variant(const std::string& text) : Variant(std::string_view(text)) {}
  /// A Byte array with lower bound 0.
  Variant(std::span<const Byte> bytes);
  Variant(const std::vector<Byte>& bytes) : Variant(std::span<const Byte>(bytes)) {}
  /// Takes the bytes over, without a copy.
  Variant(std::vector<Byte>&& bytes);
  /// An object; an empty handle is the object "Nothing", not Empty.
  template <class T>
    requires std::is_base_of_v<Object, T>
  Variant(const Ref<T>& object) : Variant(ObjectTag{}, const_cast<Object*>(static_cast<const Object*>(object.get()))) {}
  template <class T>
  Variant(T*) = delete;
  Variant(std::nullptr_t) = delete;
  Variant(long long) = delete;
  Variant(unsigned long long) = delete;
  Variant(long) = delete;
  Variant(unsigned long) = delete;
  Variant(unsigned int) = delete;
  Variant(char) = delete;
  Variant(const Variant& other) noexcept;
  Variant(Variant&& other) noexcept;
  Variant& operator=(const Variant& other) noexcept;
  Variant& operator=(Variant&& other) noexcept;
  ~Variant() {
    if (HoldsReference()) ReleaseReference();
  }

  static Variant Null() noexcept { return Variant(VarType::Null); }
  static Variant Missing() noexcept { return Variant(VarType::Error); }
  /// A one-dimensional array of Empty (or zero) elements; an upper bound of lower - 1 makes an array without elements.
  /// Raises 9 for an upper bound below that and 5 for a type that elements cannot have.
  static Variant Array(std::int32_t lower, std::int32_t upper, VarType element = VarType::Variant);
  /// A two-dimensional Variant array, both dimensions from 0.
  static Variant Array2(std::int32_t upper1, std::int32_t upper2);
  /// A Variant array with lower bound 0.
  static Variant ArrayOfValues(std::initializer_list<Variant> values);

  VarType Type() const noexcept { return type_; }
  bool IsEmpty() const noexcept { return type_ == VarType::Empty; }
  bool IsNull() const noexcept { return type_ == VarType::Null; }
  bool IsMissing() const noexcept { return type_ == VarType::Error; }
  /// Neither Empty nor Missing: the argument was given a value (Null is one).
  bool IsGiven() const noexcept { return !IsEmpty() && !IsMissing(); }
  bool IsText() const noexcept { return type_ == VarType::String; }
  bool IsObject() const noexcept { return type_ == VarType::Object; }
  bool IsArray() const noexcept { return (static_cast<unsigned>(type_) & 8192U) != 0; }
  bool IsByteArray() const noexcept { return type_ == ArrayOf(VarType::Byte); }
  /// Integer, Long, Single, Double, Currency, Decimal, Byte or Boolean.
  bool IsNumber() const noexcept;

  /// "Empty", "Null", "Integer", "Long", "Single", "Double", "Currency", "Date", "String", "Boolean", "Decimal",
  /// "Byte", "Error" for Missing, the class name of an object, "Nothing" for none, and "Byte()", "Variant()" for
  /// arrays.
  std::string TypeName() const;

  std::string AsText() const;
  std::int16_t AsInteger() const;
  std::int32_t AsLong() const;
  float AsSingle() const;
  double AsDouble() const;
  velmoria::Currency AsCurrency() const;
  velmoria::Decimal AsDecimal() const;
  Byte AsByte() const;
  bool AsBoolean() const;
  velmoria::Date AsDate() const;

  /// The text itself, without a copy; empty for anything but a String. It stays valid until this Variant changes.
  std::string_view TextView() const noexcept;
  /// The object, or null for Nothing and for anything that is no object.
  Object* ObjectPointer() const noexcept { return IsObject() ? object_ : nullptr; }
  template <class T>
  Ref<T> AsObject() const {
    return Ref<T>(dynamic_cast<T*>(ObjectPointer()));
  }

  /// Array access; 13 when this is no array, 9 for a subscript or dimension out of range. Dimensions count from 1.
  std::int32_t LowerBound(int dimension = 1) const;
  std::int32_t UpperBound(int dimension = 1) const;
  /// 0 when this is no array.
  int Dimensions() const noexcept;
  Variant Element(std::int32_t index) const;
  Variant Element(std::int32_t index1, std::int32_t index2) const;
  /// An array of a type converts what it takes to that type; a failing conversion raises and changes nothing.
  void SetElement(std::int32_t index, const Variant& value);
  void SetElement(std::int32_t index1, std::int32_t index2, const Variant& value);
  /// Changes the upper bound of the last dimension and keeps the elements that still fit.
  void ResizeLast(std::int32_t upper);
  /// The elements of a Byte array; empty for anything else. They stay in place until this Variant changes.
  std::span<const Byte> Bytes() const noexcept;

 private:
  struct ObjectTag {};
  explicit Variant(VarType type) noexcept : type_(type) {}
  explicit Variant(ArrayBody* array) noexcept;
  Variant(ObjectTag, Object* object) noexcept;
  bool HoldsReference() const noexcept { return small_[0] == kReference; }
  void AddReference() const noexcept;
  void ReleaseReference() const noexcept;
  void Swap(Variant& other) noexcept;
  const char* InlineText() const noexcept { return reinterpret_cast<const char*>(this) + kInlineTextAt; }
  std::string_view SharedText() const noexcept;
  velmoria::Decimal HeldDecimal() const noexcept;
  std::int64_t RoundedWhole() const;
  const ArrayBody& HeldArray() const;
  ArrayBody& WritableArray();

  friend VELMORIA_API bool operator==(const Variant& left, const Variant& right);

  static constexpr Byte kReference = 255;  // in small_[0]: a shared text, an array or an object
  static constexpr std::size_t kInlineTextAt = 3;
  static constexpr std::size_t kLongestInlineText = 13;

  VarType type_ = VarType::Empty;
  Byte small_[6] = {};  // inline text: its length and first bytes; decimal: scale, sign and high word
  union {
    std::int64_t whole_ = 0;
    double real_;
    float single_;
    const TextBody* text_;
    ArrayBody* array_;
    Object* object_;
    char tail_[8];
  };
};

static_assert(sizeof(Variant) == 16);

/// Equal types and equal values; arrays element by element with equal bounds, dates by their whole second, objects by
/// identity. A 16-bit 1 and a 32-bit 1 differ, Empty equals only Empty and Null only Null.
VELMORIA_API bool operator==(const Variant& left, const Variant& right);

/// Orders two values of one kind: numbers of any width by value, texts by their bytes, dates by whole seconds.
/// Raises 13 when the two cannot be compared.
VELMORIA_API int Compare(const Variant& left, const Variant& right);

}  // namespace velmoria

#include "velmoria/runtime/variant_inline.h"
