#pragma once

#include <string_view>

#include "velmoria/runtime/object.h"

namespace velmoria {

/// The host's own classes, by the names under which the library creates them: a line-of-business class or collection
/// is named by its component and its class, "Sales.Order". Names are compared without regard to case.
///   Components::Register<Order>("Sales.Order");
/// A name that is not registered is looked for in the component's shared library, libSales.so (see ComponentLibrary):
/// in the folders of AddFolder, whatever its case, then where the system finds libraries, as spelled or as libsales.so.
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

  /// Looks for components' libraries in this folder too, behind those of earlier calls; a library that is loaded stays
  /// the one. Raises 5 for an empty name; a folder that does not exist holds nothing.
  static void AddFolder(std::string_view folder);

  /// A new object of the class under the name. Raises 429 when nobody offers it, and when its library lies in a folder
  /// but cannot be loaded; what the component's own making throws passes through.
  static Ref<Object> Create(std::string_view name);
};

}  // namespace velmoria
