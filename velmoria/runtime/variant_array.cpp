#include <algorithm>
#include <limits>
#include <utility>

#include "velmoria/runtime/error.h"
#include "velmoria/runtime/variant_impl.h"

namespace velmoria {

namespace {

void RefuseUnless(bool possible) {
  if (!possible) Fail(RuntimeFailure::SubscriptOutOfRange);
}

std::int32_t UpperBoundOf(std::size_t count) {
  if (count > std::numeric_limits<std::int32_t>::max()) Fail(RuntimeFailure::Overflow);
  return static_cast<std::int32_t>(count) - 1;
}

}  // namespace

ArrayBody::ArrayBody(VarType element, std::vector<Dimension> dimensions)
    : element_(element), dimensions_(std::move(dimensions)) {
  for (const Dimension& dimension : dimensions_) RefuseUnless(std::int64_t{dimension.Upper} >= dimension.Lower - 1LL);
  SetSize(CountAll());
}

ArrayBody::ArrayBody(std::vector<Byte> bytes)
    : element_(VarType::Byte), dimensions_{{0, UpperBoundOf(bytes.size())}}, bytes_(std::move(bytes)) {}

std::size_t ArrayBody::CountAll() const noexcept {
  std::size_t count = 1;
  for (const Dimension& dimension : dimensions_) count *= dimension.Count();
  return count;
}

void ArrayBody::SetSize(std::size_t count) {
  if (element_ == VarType::Byte) {
    bytes_.resize(count);
  } else {
    values_.resize(count, ZeroOf(element_));
  }
}

const ArrayBody::Dimension& ArrayBody::DimensionAt(int number) const {
  RefuseUnless(number >= 1 && static_cast<std::size_t>(number) <= dimensions_.size());
  return dimensions_[static_cast<std::size_t>(number) - 1];
}

std::size_t ArrayBody::PlaceOf(std::initializer_list<std::int32_t> subscripts) const {
  RefuseUnless(subscripts.size() == dimensions_.size());
  std::size_t place = 0;
  std::size_t stride = 1;
  const Dimension* dimension = dimensions_.data();
  for (const std::int32_t subscript : subscripts) {
    RefuseUnless(subscript >= dimension->Lower && subscript <= dimension->Upper);
    place += static_cast<std::size_t>(std::int64_t{subscript} - dimension->Lower) * stride;
    stride *= dimension->Count();
    ++dimension;
  }
  return place;
}

Variant ArrayBody::Value(std::size_t place) const {
  return element_ == VarType::Byte ? Variant(bytes_[place]) : values_[place];
}

void ArrayBody::SetValue(std::size_t place, const Variant& value) {
  if (element_ == VarType::Byte) {
    bytes_[place] = value.AsByte();
  } else {
    values_[place] = value.Type() == element_ ? value : ConvertTo(value, element_);
  }
}

// The first dimension runs fastest, so that whole stretches come and go at the end.
void ArrayBody::ResizeLast(std::int32_t upper) {
  RefuseUnless(std::int64_t{upper} >= dimensions_.back().Lower - 1LL);
  const std::int32_t before = dimensions_.back().Upper;
  dimensions_.back().Upper = upper;
  try {
    SetSize(CountAll());
  } catch (...) {
    dimensions_.back().Upper = before;
    throw;
  }
}

Variant::Variant(std::span<const Byte> bytes) : Variant(std::vector<Byte>(bytes.begin(), bytes.end())) {}

Variant::Variant(std::vector<Byte>&& bytes) : Variant(new ArrayBody(std::move(bytes))) {}

Variant Variant::Array(std::int32_t lower, std::int32_t upper, VarType element) {
  return Variant(new ArrayBody(element, {{lower, upper}}));
}

Variant Variant::Array2(std::int32_t upper1, std::int32_t upper2) {
  return Variant(new ArrayBody(VarType::Variant, {{0, upper1}, {0, upper2}}));
}

Variant Variant::ArrayOfValues(std::initializer_list<Variant> values) {
  Variant array = Array(0, static_cast<std::int32_t>(values.size()) - 1);
  std::copy(values.begin(), values.end(), array.array_->Values().begin());
  return array;
}

const ArrayBody& Variant::HeldArray() const {
  if (!IsArray()) Fail(RuntimeFailure::TypeMismatch);
  return *array_;
}

ArrayBody& Variant::WritableArray() {
  if (HeldArray().Count().IsShared()) Variant(new ArrayBody(*array_)).Swap(*this);
  return *array_;
}

std::int32_t Variant::LowerBound(int dimension) const { return HeldArray().DimensionAt(dimension).Lower; }
std::int32_t Variant::UpperBound(int dimension) const { return HeldArray().DimensionAt(dimension).Upper; }

int Variant::Dimensions() const noexcept { return IsArray() ? static_cast<int>(array_->Dimensions().size()) : 0; }

Variant Variant::Element(std::int32_t index) const {
  const ArrayBody& array = HeldArray();
  return array.Value(array.PlaceOf({index}));
}

Variant Variant::Element(std::int32_t index1, std::int32_t index2) const {
  const ArrayBody& array = HeldArray();
  return array.Value(array.PlaceOf({index1, index2}));
}

void Variant::SetElement(std::int32_t index, const Variant& value) {
  const std::size_t place = HeldArray().PlaceOf({index});
  // An array put into itself is an element that shares what is written to, so the copy comes first.
  const Variant kept(value);  // NOLINT(performance-unnecessary-copy-initialization)
  WritableArray().SetValue(place, kept);
}

void Variant::SetElement(std::int32_t index1, std::int32_t index2, const Variant& value) {
  const std::size_t place = HeldArray().PlaceOf({index1, index2});
  const Variant kept(value);  // NOLINT(performance-unnecessary-copy-initialization)
  WritableArray().SetValue(place, kept);
}

void Variant::ResizeLast(std::int32_t upper) {
  HeldArray();
  WritableArray().ResizeLast(upper);
}

std::span<const Byte> Variant::Bytes() const noexcept {
  if (!IsByteArray()) return {};
  return std::as_const(*array_).Bytes();
}

}  // namespace velmoria
