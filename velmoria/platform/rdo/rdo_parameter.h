#pragma once

#include <string>
#include <string_view>

#include "velmoria/platform/rdo/fwd.h"
#include "velmoria/platform/rdo_constants.h"
#include "velmoria/runtime/object.h"
#include "velmoria/runtime/variant.h"

namespace velmoria {

/// The parameter of one marker. That of a procedure begins with what the catalogue says about it.
class rdoParameter : public Object {
 public:
  explicit rdoParameter(std::string name) : name_(std::move(name)) {}
  std::string_view ReportedType() const noexcept override;

  /// "Param1" and so on, in the order of the markers; of a procedure the catalogue's names without "[", "]" and "@",
  /// and "RETURN_VALUE" for the return value.
  std::string Name() const { return name_; }
  void SetName(std::string value) {
    name_ = std::move(value);
    named_ = true;
  }
  /// Whether it has another name than its place gives it.
  bool IsNamed() const noexcept { return named_; }
  /// One of the rdType... codes; 0, as long as it is not set, takes the type of the value.
  rdoNumber Type() const noexcept { return type_; }
  void SetType(rdoNumber value) noexcept { type_ = value; }
  rdoNumber Direction() const noexcept { return direction_; }
  void SetDirection(rdoNumber value) noexcept { direction_ = value; }
  /// Characters of a text, digits of a number, and those behind the point; 0 where nothing is known.
  rdoNumber Size() const noexcept { return size_; }
  rdoNumber Decimals() const noexcept { return decimals_; }
  void SetSize(rdoNumber size, rdoNumber decimals) noexcept {
    size_ = size;
    decimals_ = decimals;
  }
  /// Empty, Missing and Null are all sent as NULL. Execute puts here what a parameter that is no input gives back.
  const Variant& Value() const noexcept { return value_; }
  void SetValue(Variant value) { value_ = std::move(value); }

 private:
  std::string name_;
  bool named_ = false;
  rdoNumber type_ = 0;
  rdoNumber direction_ = rdParamInput;
  rdoNumber size_ = 0;
  rdoNumber decimals_ = 0;
  Variant value_;
};

}  // namespace velmoria
