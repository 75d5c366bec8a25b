#pragma once

#include <string>

#include <gtest/gtest.h>

#include "tests/support/design_kinds.h"
#include "tests/support/scoped_apartment.h"

namespace velmoria::test {

/// What holds for every kind of design object is tested over collections of it.
template <class Sample>
class EveryDesignCollection : public testing::Test {
 protected:
  using Kind = typename Sample::Kind;
  using Collection = typename Sample::Collection;

  static std::string Keys(const Collection& collection) {
    std::string keys;
    for (const auto& member : collection) keys += Sample::KeyOf(*member) + " ";
    return keys;
  }
  static std::string KeyTexts(std::initializer_list<int> numbers) {
    std::string keys;
    for (const int n : numbers) keys += Sample::KeyText(n) + " ";
    return keys;
  }
  static auto Filled() {
    auto collection = Sample::Bound();
    for (const int n : {1, 2, 3}) collection->SetupItem(Sample::Fields(n));
    return collection;
  }
  static auto Free(int n) { return MakeDesign<Kind>(Sample::Fields(n)); }

  ScopedApartment apartment_;
};

}  // namespace velmoria::test
