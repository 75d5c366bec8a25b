#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "velmoria/core/enumerations.h"
#include "velmoria/core/position.h"
#include "velmoria/core/reporting.h"
#include "velmoria/fwd.h"
#include "velmoria/runtime/keyed_list.h"
#include "velmoria/runtime/object.h"

namespace velmoria {

class SettingsStore;

/// The arguments of Profile.Item: what to look for, and what to make of a name that is not there.
struct ProfileItemArguments {
  Variant Index;  // required: 1-based position or name
  Variant DefaultValue = Variant::Missing();
  zDataTypes DefaultDataType = dtVariant;
  std::int32_t DefaultSize = 0;
};

/// The arguments of Profile.SetupItem.
struct ProfileSetupItemArguments {
  std::string Name;  // required
  Variant Value = Variant::Missing();
  zDataTypes DataType = dtVariant;
  std::int32_t Size = 0;
};

/// The named settings of the user: read from the settings store when the apartment starts and written back when it
/// ends, with the defaults that were asked for meanwhile. The apartment owns it.
class VELMORIA_API Profile final : public Object, public Reporting {
 public:
  using Iterator = KeyedList<AttributePtr>::Iterator;

  explicit Profile(std::shared_ptr<SettingsStore> store);
  /// Writes the store, as Update does, unless the settings could never be read.
  ~Profile() override;

  std::string_view ReportedType() const noexcept override { return "Profile"; }

  std::string Details() const;
  std::int32_t Count() const;
  Iterator begin() const;
  Iterator end() const;

  /// By 1-based position or name; raises as Attributes.Remove does.
  void Remove(const Variant& index);
  /// Raises as Attributes.Add does.
  void Add(const AttributePtr& item, const Position& position = {});
  /// The setting of that name, which keeps its value; made if it is not there. Raises nothing; none if it cannot be
  /// made.
  AttributePtr SetupItem(const ProfileSetupItemArguments& arguments);
  /// The setting, or none. A name that is not there is made when a DefaultValue is given; a number never makes one.
  /// Raises nothing.
  AttributePtr Item(const ProfileItemArguments& arguments);
  /// Writes all settings, numbered from 1, and the log settings of Messages to the store.
  void Update();

  // Inside the library.
  /// Reads the settings. A text that is no value of its setting's type is kept as it is: only reading that setting
  /// fails, and it is written back unchanged.
  void Load();

 protected:
  std::string StateDetails() const override { return Details(); }

 private:
  void LoadItem(const std::string& number, const std::string& name);

  std::shared_ptr<SettingsStore> store_;
  AttributesPtr attributes_;
  bool isLoaded_ = false;
};

}  // namespace velmoria
