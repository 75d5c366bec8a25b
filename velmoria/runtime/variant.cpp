#include "velmoria/runtime/variant.h"

#include <cstring>
#include <new>

#include "velmoria/runtime/variant_impl.h"

namespace velmoria {

namespace {

// By type code; two codes are not in use.
constexpr const char* kTypeNames[] = {"Empty",    "Null",    "Integer", "Long",   "Single", "Double",
                                      "Currency", "Date",    "String",  "Object", "Error",  "Boolean",
                                      "Variant",  "Unknown", "Decimal", "",       "",       "Byte"};

std::string NameOf(VarType code) { return kTypeNames[static_cast<std::size_t>(code)]; }

}  // namespace

TextBody* TextBody::Make(std::string_view text) {
  void* memory = ::operator new(sizeof(TextBody) + text.size());
  auto* body = ::new (memory) TextBody(text.size());
  std::memcpy(static_cast<void*>(body + 1), text.data(), text.size());
  return body;
}

void TextBody::Release(const TextBody* body) noexcept {
  if (!body->count_.Remove()) return;
  body->~TextBody();
  ::operator delete(const_cast<TextBody*>(body));
}

Variant::Variant(std::string_view text) : type_(VarType::String) {
  if (text.size() <= kLongestInlineText) {
    small_[0] = static_cast<Byte>(text.size());
    text.copy(reinterpret_cast<char*>(this) + kInlineTextAt, text.size());  // one without text may have no address
    return;
  }
  text_ = TextBody::Make(text);
  small_[0] = kReference;
}

Variant::Variant(const Decimal& value) noexcept : type_(VarType::Decimal) {
  small_[0] = value.Scale;
  small_[1] = value.Negative ? 1 : 0;
  std::memcpy(&small_[2], &value.High, sizeof value.High);
  whole_ = static_cast<std::int64_t>(value.Low);
}

Decimal Variant::HeldDecimal() const noexcept {
  Decimal value{.Low = static_cast<std::uint64_t>(whole_), .Scale = small_[0], .Negative = small_[1] != 0};
  std::memcpy(&value.High, &small_[2], sizeof value.High);
  return value;
}

Variant::Variant(ArrayBody* array) noexcept : type_(ArrayOf(array->ElementType())), array_(array) {
  small_[0] = kReference;
}

Variant::Variant(ObjectTag, Object* object) noexcept : type_(VarType::Object), object_(object) {
  if (!object) return;
  small_[0] = kReference;
  intrusive_ptr_add_ref(object);
}

void Variant::AddReference() const noexcept {
  if (type_ == VarType::String) {
    text_->Share();
  } else if (type_ == VarType::Object) {
    intrusive_ptr_add_ref(object_);
  } else {
    array_->Count().Add();
  }
}

void Variant::ReleaseReference() const noexcept {
  if (type_ == VarType::String) {
    TextBody::Release(text_);
  } else if (type_ == VarType::Object) {
    intrusive_ptr_release(object_);
  } else if (array_->Count().Remove()) {
    delete array_;
  }
}

std::string_view Variant::SharedText() const noexcept { return text_->Text(); }

std::string Variant::TypeName() const {
  if (IsArray()) return NameOf(array_->ElementType()) + "()";
  if (!IsObject()) return NameOf(type_);
  return object_ ? std::string(object_->ReportedType()) : "Nothing";
}

}  // namespace velmoria
