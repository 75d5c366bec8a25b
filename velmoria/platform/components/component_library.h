#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "velmoria/platform/components/components.h"

namespace velmoria {

/// What a shared library offers to its hosts: the classes of one component, by their names without the component's. The
/// library of "Sales" is libSales.so; it defines OfferVelmoriaComponents:
///
///   void OfferVelmoriaComponents(velmoria::ComponentLibrary& library) { library.Offer<Order>("Order"); }
///
/// "Sales.Order" then works in every host that finds the library. It stays loaded to the end of the process.
class VELMORIA_API ComponentLibrary {
 public:
  ComponentLibrary();
  ~ComponentLibrary();
  ComponentLibrary(const ComponentLibrary&) = delete;
  ComponentLibrary& operator=(const ComponentLibrary&) = delete;

  /// Offers T, made without arguments, under the name; a later offer takes the place of an earlier one.
  template <class T>
  void Offer(std::string_view className) {
    Offer(className, [] { return Ref<Object>(new T); });
  }
  /// Offers what the factory makes. Raises 5 for an empty name or no factory.
  void Offer(std::string_view className, Components::Factory factory);

  /// The factory of a class, the name without regard to case; none when the class is not offered.
  Components::Factory Find(std::string_view className) const noexcept;

 private:
  std::vector<std::pair<std::string, Components::Factory>> offers_;
};

}  // namespace velmoria

/// Called once, in the first apartment that asks for a class of the component, while no other is being loaded. What it
/// throws reaches whoever asked, and the next who asks calls it again.
extern "C" VELMORIA_API void OfferVelmoriaComponents(velmoria::ComponentLibrary& library);
