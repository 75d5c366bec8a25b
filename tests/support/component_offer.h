#pragma once

#include <string>

#include "velmoria/velmoria.h"

namespace velmoria::test {

/// Offers a class of the host under a component name for the length of a scope.
template <class T>
class ComponentOffer {
 public:
  explicit ComponentOffer(std::string name) : name_(std::move(name)) { Components::Register<T>(name_); }
  ~ComponentOffer() { Components::Unregister(name_); }
  ComponentOffer(const ComponentOffer&) = delete;
  ComponentOffer& operator=(const ComponentOffer&) = delete;

 private:
  std::string name_;
};

/// A host's business class; it counts how many were made since the count was last set.
class HostOrder final : public BusinessObject {
 public:
  HostOrder() {
    if (FailsFrom != 0 && Made + 1 >= FailsFrom) Fail(RuntimeFailure::InvalidArgument, "no more");
    ++Made;
  }
  static inline int Made = 0;
  static inline int FailsFrom = 0;  // the first that cannot be made; 0 for none
};

/// One that does not take its Model.
class RefusingOrder final : public BusinessObject {
 public:
  void SetModel(ModelPtr) override { Fail(RuntimeFailure::InvalidArgument, "no thanks"); }
};

/// A class of the host that is no business object at all.
class UnrelatedThing final : public Object {};

}  // namespace velmoria::test
