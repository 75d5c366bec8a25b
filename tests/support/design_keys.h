#pragma once

#include <string>

#include "velmoria/core/enumerations.h"
#include "velmoria/runtime/variant.h"

namespace velmoria::test {

// The two ways in which a kind of design object is found in its collection: by a name, and by an engine.

struct NamedSample {
  static constexpr bool ByEngine = false;
  static std::string Key(int n) { return std::string(1, static_cast<char>('a' + n - 1)); }
  static Variant Index(int n) { return Key(n); }
  static std::string KeyText(int n) { return Key(n); }
  static std::string Shown(int n) { return "Index: '" + Key(n) + "'"; }
  static std::string ShownAdding(int n) { return "Name: '" + Key(n) + "'"; }
  template <class Collection>
  static void Rekey(Collection& collection, int from, int to) {
    collection.RenameItem(Key(from), Key(to));
  }
  template <class Member>
  static std::string KeyOf(const Member& member) {
    return member.Name();
  }
};

struct EngineSample {
  static constexpr bool ByEngine = true;
  static zEngines Key(int n) { return static_cast<zEngines>(n); }
  static zEngines Index(int n) { return Key(n); }
  static std::string KeyText(int n) { return std::to_string(n); }
  static std::string Shown(int n) { return "Engine: " + KeyText(n) + "  Index: " + KeyText(n); }
  static std::string ShownAdding(int n) { return "Engine: '" + KeyText(n) + "'"; }
  template <class Collection>
  static void Rekey(Collection& collection, int from, int to) {
    collection.ChangeItemEngine(Key(from), Key(to));
  }
  template <class Member>
  static std::string KeyOf(const Member& member) {
    return std::to_string(static_cast<int>(member.Engine()));
  }
};

}  // namespace velmoria::test
