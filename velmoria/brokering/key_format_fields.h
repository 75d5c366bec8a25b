#pragma once

#include <string>

namespace velmoria {

/// How an object's identity becomes its text key, as Framework.CreateKeyFormat takes it.
struct KeyFormatFields {
  std::string Name{};
  std::string Separator{};    // between the parts of a key
  bool Mixed = false;         // ServerName and ClassName come first, so that several classes can share a collection
  bool IncludeNames = false;  // each Property's Name goes before its value
  bool EmptyKey = false;      // no string key at all: members are reached by position only
  bool Locked = false;
};

}  // namespace velmoria
