#pragma once

#include <stdexcept>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "tests/support/scoped_apartment.h"
#include "velmoria/velmoria.h"

namespace velmoria::test {

/// A business object of a host without a database: it has a key and counts what is done to it.
class NamedObject final : public BusinessObject {
 public:
  explicit NamedObject(std::string key) : ItsKey(std::move(key)) {}
  std::string Key(KeyFormatPtr) override {
    if (KeyFails) throw std::runtime_error("no key");
    return ItsKey;
  }
  zEditFlags EditFlags() override { return Edits; }
  zStateFlags StateFlags() override { return State; }
  bool Dirty() override { return IsDirty; }
  bool Modifiable() override { return IsModifiable; }
  void Update() override {
    if (Fails) Fail(RuntimeFailure::DeviceError);
    ++Updates;
  }
  void Delete() override { ++Deletes; }
  void Undo() override { ++Undos; }

  zEditFlags Edits = efAll;
  zStateFlags State = sfpersistent;
  bool IsDirty = false;
  bool IsModifiable = true;
  bool Fails = false;
  int Updates = 0;
  int Deletes = 0;
  int Undos = 0;
  std::string ItsKey;
  bool KeyFails = false;
};

class BusinessObjectsTest : public testing::Test {
 protected:
  static Ref<NamedObject> Named(const std::string& key) { return Make<NamedObject>(key); }
  static BusinessObjectsPtr NewCollection(KeyFormatPtr format = {}, bool supportsAdd = true, bool locked = false,
                                          bool supportsRemove = true) {
    auto collection = Make<BusinessObjects>();
    collection->SetupTransient("People", std::move(format), supportsAdd, locked, {}, supportsRemove);
    return collection;
  }
  static std::string Keys(IBusinessObjects& collection) {
    std::string keys;
    for (const auto& member : collection) keys += member->Key();
    return keys;
  }

  ScopedApartment apartment_;
};

}  // namespace velmoria::test
