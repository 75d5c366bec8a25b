#pragma once

#include <utility>

#include <boost/smart_ptr/intrusive_ptr.hpp>

#include "velmoria/runtime/error.h"

namespace velmoria {

/// A counted handle to an Object. An empty handle is what the documentation calls "none".
template <class T>
using Ref = boost::intrusive_ptr<T>;

template <class T>
concept Walkable = requires(T& object) {
  object.begin();
  object.end();
};

/// Where a range-for over a handle stands: `for (const auto& line : framework.GetBusinessObjects(...))`. The walk keeps
/// its object, whatever becomes of the handle meanwhile. Over an empty handle it raises 91.
template <Walkable T>
class HandleIterator {
 public:
  explicit HandleIterator(Ref<T> walked) : walked_(std::move(walked)), at_(Walked().begin()) {}

  decltype(auto) operator*() const { return *at_; }
  HandleIterator& operator++() { return ++at_, *this; }
  bool operator==(const auto& end) const { return at_ == end; }

 private:
  T& Walked() const {
    if (!walked_) Fail(RuntimeFailure::ObjectNotSet);
    return *walked_;
  }

  Ref<T> walked_;
  decltype(std::declval<T&>().begin()) at_;
};

/// What range-for looks up for a handle to any class that can itself be walked.
template <Walkable T>
HandleIterator<T> begin(const Ref<T>& handle) {
  return HandleIterator<T>(handle);
}
template <Walkable T>
auto end(const Ref<T>& handle) {
  return handle->end();
}

}  // namespace velmoria
