#include <filesystem>
#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

#include <dlfcn.h>

#include "velmoria/platform/components/component_library.h"
#include "velmoria/platform/components/library_components_impl.h"
#include "velmoria/runtime/error.h"
#include "velmoria/runtime/text.h"

namespace velmoria {

namespace {

struct Loading {
  std::recursive_mutex Guard;  // what offers may create components of other libraries
  std::vector<std::filesystem::path> Folders;
  std::unordered_map<std::string, std::unique_ptr<ComponentLibrary>> Libraries;  // by case-folded component name
};

Loading& TheLoading() {
  static Loading only;
  return only;
}

struct Name {
  std::string_view Component;
  std::string_view Class;
};

// A name without component has no library, nor has one that could lead out of a folder.
Name Split(std::string_view name) {
  constexpr std::string_view kNeverInFileNames("/\0", 2);
  const std::size_t dot = name.rfind('.');
  if (dot == std::string_view::npos || name.find_first_of(kNeverInFileNames) != std::string_view::npos) return {};
  return {name.substr(0, dot), name.substr(dot + 1)};
}

std::string FileName(std::string_view component) { return std::string("lib").append(component).append(".so"); }

// The file of that name, or one that differs by case only; empty when there is none.
std::filesystem::path FindFile(const std::filesystem::path& folder, const std::string& name) {
  std::error_code ignored;
  if (std::filesystem::exists(folder / name, ignored)) return folder / name;
  for (const auto& entry : std::filesystem::directory_iterator(folder, ignored)) {
    if (EqualFolded(entry.path().filename().string(), name)) return entry.path();
  }
  return {};
}

void* OpenInFolders(const std::string& name) {
  for (const auto& folder : TheLoading().Folders) {
    const auto file = FindFile(folder, name);
    if (file.empty()) continue;
    if (void* const library = ::dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL)) return library;
    Fail(RuntimeFailure::CannotCreateComponent, ::dlerror());
  }
  return nullptr;
}

void* OpenBySystem(const std::string& name) {
  if (void* const library = ::dlopen(name.c_str(), RTLD_NOW | RTLD_LOCAL)) return library;
  return ::dlopen(FoldCase(name).c_str(), RTLD_NOW | RTLD_LOCAL);
}

void* Open(const std::string& name) {
  if (void* const library = OpenInFolders(name)) return library;
  return OpenBySystem(name);
}

// None when there is no such library.
std::unique_ptr<ComponentLibrary> Load(std::string_view component) {
  void* const library = Open(FileName(component));
  if (!library) return nullptr;
  auto offers = std::make_unique<ComponentLibrary>();
  if (void* const routine = ::dlsym(library, "OfferVelmoriaComponents")) {
    reinterpret_cast<decltype(&OfferVelmoriaComponents)>(routine)(*offers);
  } else {
    ::dlclose(library);
  }
  return offers;
}

Components::Factory FindFactory(const Name& name) {
  auto& loading = TheLoading();
  const std::scoped_lock lock(loading.Guard);
  const std::string key = FoldCase(name.Component);
  auto found = loading.Libraries.find(key);
  if (found == loading.Libraries.end()) {
    auto library = Load(name.Component);
    if (!library) return nullptr;
    found = loading.Libraries.emplace(key, std::move(library)).first;
  }
  return found->second->Find(name.Class);
}

}  // namespace

// The factory runs outside the lock: it may take its time.
Ref<Object> LibraryComponents::Create(std::string_view name) {
  const Name parts = Split(name);
  if (parts.Component.empty()) return nullptr;
  const auto factory = FindFactory(parts);
  return factory ? factory() : nullptr;
}

void LibraryComponents::AddFolder(std::string_view folder) {
  if (folder.empty()) Fail(RuntimeFailure::InvalidArgument);
  auto& loading = TheLoading();
  const std::scoped_lock lock(loading.Guard);
  loading.Folders.emplace_back(folder);
}

}  // namespace velmoria
