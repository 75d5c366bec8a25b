#pragma once

#include <string>
#include <string_view>

#include "velmoria/platform/rdo/constants.h"
#include "velmoria/platform/rdo/fwd.h"
#include "velmoria/runtime/object.h"
#include "velmoria/runtime/variant.h"

namespace velmoria {

/// The parameter of one marker.
class rdoParameter : public Object {
 public:
  explicit rdoParameter(std::string name) : name_(std::move(name)) {}
  std::string_view ReportedType() const noexcept override;

  /// "Param1" and so on, in the order of the markers.
  std::string Name() const { return name_; }
  void SetName(std::string value) { name_ = std::move(value); }
  /// One of the rdType... codes; 0, as long as it is not set, takes the type of the value.
  rdoNumber Type() const noexcept { return type_; }
  void SetType(rdoNumber value) noexcept { type_ = value; }
  rdoNumber Direction() const noexcept { return direction_; }
  void SetDirection(rdoNumber value) noexcept { direction_ = value; }
  /// Empty, Missing and Null are all sent as NULL.
  const Variant& Value() const noexcept { return value_; }
  void SetValue(Variant value) { value_ = std::move(value); }

 private:
  std::string name_;
  rdoNumber type_ = 0;
  rdoNumber direction_ = rdParamInput;
  Variant value_;
};

}  // namespace velmoria
