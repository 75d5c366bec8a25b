#pragma once

#include <cassert>
#include <cstdint>
#include <string_view>
#include <utility>

#include "velmoria/runtime/api.h"
#include "velmoria/runtime/ref.h"

namespace velmoria {

/// The number of the calling thread's apartment: never 0, the same for the life of the thread.
VELMORIA_API std::uint32_t ThisApartmentNumber() noexcept;

/// The base of everything that is shared by reference count. An object belongs to the apartment (the thread) that made
/// it, so its count is a plain integer; a debug build asserts that no other thread touches it.
class VELMORIA_API Object {
 public:
  Object(const Object&) = delete;
  Object& operator=(const Object&) = delete;
  virtual ~Object();

  /// Whether nobody holds it but the asker, by one handle.
  bool IsHeldOnce() const noexcept { return references_ == 1; }

  /// The class name as messages and type names show it: "Property", "Recordset".
  virtual std::string_view ReportedType() const noexcept;

 protected:
  Object() noexcept : apartment_(ThisApartmentNumber()) {}

 private:
  friend void intrusive_ptr_add_ref(const Object* object) noexcept {
    assert(object->apartment_ == ThisApartmentNumber());
    ++object->references_;
  }
  friend void intrusive_ptr_release(const Object* object) noexcept {
    assert(object->apartment_ == ThisApartmentNumber());
    if (--object->references_ == 0) delete object;
  }

  mutable std::uint32_t references_ = 0;
  std::uint32_t apartment_;
};

/// Makes a counted object: `auto property = Make<Property>();`
template <class T, class... Arguments>
Ref<T> Make(Arguments&&... arguments) {
  return Ref<T>(new T(std::forward<Arguments>(arguments)...));
}

}  // namespace velmoria
