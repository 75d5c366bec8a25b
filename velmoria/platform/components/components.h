#pragma once

#include <string_view>

#include "velmoria/runtime/object.h"

namespace velmoria {

/// The host's own classes, by the names under which the library creates them: a line-of-business class or collection
/// is named by its component and its class, "Sales.Order". Names are compared without regard to case.
///   Components::Register<Order>("Sales.Order");
/// The register belongs to the process and may be used from any thread; each object is made in the apartment that asks.
class VELMORIA_API Components {
 public:
  using Factory = Ref<Object> (*)();

  /// Offers T, made without arguments, under the name; a later registration takes the place of an earlier one.
  template <class T>
  static void Register(std::string_view name) {
    Register(name, [] { return Ref<Object>(new T); });
  }
  /// Offers what the factory makes. Raises 5 for an empty name or no factory.
  static void Register(std::string_view name, Factory factory);
  /// Takes an offer back; false when there was none.
  static bool Unregister(std::string_view name);

  /// A new object of the class registered under the name; raises 429 when there is none.
  static Ref<Object> Create(std::string_view name);
};

}  // namespace velmoria
