#pragma once

#include <cstdint>
#include <string>

#include "velmoria/core/enumerations.h"
#include "velmoria/fwd.h"
#include "velmoria/runtime/object.h"
#include "velmoria/runtime/variant.h"

namespace velmoria {

/// What brokering hands out as a business object: a Model, or a class of the host that stands around one. A host class
/// usually derives from BusinessObject, which forwards every operation to its Model.
class VELMORIA_API IBusinessObject : public virtual Object {
 public:
  virtual zObjectTypes ObjectType() const = 0;

  /// A related collection, by 1-based position or name among those that the object holds.
  virtual IBusinessObjectsPtr BusinessObjects(const Variant& index) = 0;
  virtual std::int32_t BusinessObjectsCount() = 0;

  /// The Property of that name, or at that 1-based position counted over all Properties collections of the object.
  virtual PropertyPtr FindProperty(const Variant& index, PropertyPtr parameter = {}) = 0;
  /// One Properties collection, by 1-based position or name.
  virtual PropertiesPtr Properties(const Variant& index) = 0;
  virtual std::int32_t PropertyCount() = 0;
  virtual std::int32_t PropertiesCount() = 0;

  virtual IdentifierPtr Identifier() = 0;
  /// The identifier of the object through which this one was reached, or none.
  virtual IdentifierPtr ParentIdentifier() = 0;
  /// The key under which the object lives in a collection of that format; none means the default format.
  virtual std::string Key(KeyFormatPtr keyFormat = {}) = 0;

  virtual bool Dirty() = 0;
  virtual bool Modifiable() = 0;
  virtual zEditFlags EditFlags() = 0;
  virtual std::string EditFlagsDisplay() = 0;
  virtual zStateFlags StateFlags() = 0;
  virtual std::string StateFlagsDisplay() = 0;
  virtual std::string Details() = 0;

  /// Writes the changes, inserts a new object, or deletes one that Delete flagged.
  virtual void Update() = 0;
  /// Flags the object for deletion; the next Update deletes it.
  virtual void Delete() = 0;
  /// Takes a pending deletion back; unsaved changes of a row count as saved from here on, and are not written.
  virtual void Undo() = 0;

  virtual ModelPtr GetModel() = 0;
  /// The handshake: brokering gives a host object the Model that holds its data, once, right after making it.
  virtual void SetModel(ModelPtr model) = 0;
};

}  // namespace velmoria
