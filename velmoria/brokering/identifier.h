#pragma once

#include <string>

#include "velmoria/core/reporting.h"
#include "velmoria/fwd.h"
#include "velmoria/runtime/object.h"
#include "velmoria/runtime/pooled.h"

namespace velmoria {

/// Which instance a business object is: a Server, a Class and the Properties of its key. On a row these are the row's
/// own members, so the identity follows the values.
class VELMORIA_API Identifier final : public Object, public Reporting, public Pooled {
 public:
  Identifier();
  ~Identifier() override;
  std::string_view ReportedType() const noexcept override { return "Identifier"; }

  /// The text of the key values, under a format or the default one. Whether the format defines a string key and
  /// whether it has Properties is not looked at. A Null adds nothing; an unset number adds 0. Raises 15000 for a value
  /// without a text form.
  std::string Key(const KeyFormatPtr& keyFormat = {}) const;
  /// Whether a key value differs from what is saved.
  bool Dirty() const;
  // Empty before it is set up.
  std::string ServerName() const;
  std::string ClassName() const;
  PropertiesPtr Properties() const;
  std::string Details() const;

  // Inside the library.
  /// Once, with all three.
  void Setup(ServerDataPtr server, ClassDataPtr classData, PropertiesPtr properties);
  /// The same with the one part of the key; it is put into a collection when Properties is first asked for.
  void Setup(ServerDataPtr server, ClassDataPtr classData, PropertyPtr part);

 private:
  std::string StateDetails() const override { return Details(); }
  void AppendValue(std::string& key, const velmoria::Property& part, const velmoria::KeyFormat& format) const;

  ServerDataPtr server_;
  ClassDataPtr class_;
  mutable PropertyPtr part_;  // until it is in properties_
  mutable PropertiesPtr properties_;
};

}  // namespace velmoria
