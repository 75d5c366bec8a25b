#include "velmoria/platform/components/components.h"

#include <mutex>
#include <string>
#include <unordered_map>

#include "velmoria/platform/components/library_components_impl.h"
#include "velmoria/platform/components/offered_components_impl.h"
#include "velmoria/runtime/error.h"
#include "velmoria/runtime/text.h"

namespace velmoria {

namespace {

// Looked up for every object that is made: nothing is folded into a copy.
struct FoldedName {
  using is_transparent = void;
  std::size_t operator()(std::string_view name) const noexcept { return HashFolded(name); }
  bool operator()(std::string_view left, std::string_view right) const noexcept { return EqualFolded(left, right); }
};

struct Register {
  std::mutex Guard;
  std::unordered_map<std::string, Components::Factory, FoldedName, FoldedName> Factories;
};

Register& TheRegister() {
  static Register only;
  return only;
}

Components::Factory FindFactory(std::string_view name) {
  auto& known = TheRegister();
  const std::scoped_lock lock(known.Guard);
  const auto found = known.Factories.find(name);
  return found == known.Factories.end() ? nullptr : found->second;
}

}  // namespace

void Components::Register(std::string_view name, Factory factory) {
  if (name.empty() || !factory) Fail(RuntimeFailure::InvalidArgument);
  auto& known = TheRegister();
  const std::scoped_lock lock(known.Guard);
  known.Factories.insert_or_assign(std::string(name), factory);
}

bool Components::Unregister(std::string_view name) {
  auto& known = TheRegister();
  const std::scoped_lock lock(known.Guard);
  return known.Factories.erase(std::string(name)) != 0;
}

Ref<Object> Components::Create(std::string_view name) {
  auto component = OfferedComponents().Create(name);
  if (!component) Fail(RuntimeFailure::CannotCreateComponent);
  return component;
}

void Components::AddFolder(std::string_view folder) { LibraryComponents::AddFolder(folder); }

// The factory runs outside the lock: it may register or create others.
Ref<Object> OfferedComponents::Create(std::string_view name) {
  if (const auto factory = FindFactory(name)) {
    if (auto registered = factory()) return registered;
  }
  return LibraryComponents().Create(name);
}

}  // namespace velmoria
