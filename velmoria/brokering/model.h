#pragma once

#include "velmoria/brokering/ibusiness_object.h"
#include "velmoria/core/reporting.h"
#include "velmoria/runtime/event.h"
#include "velmoria/runtime/pooled.h"

namespace velmoria {

/// The framework's own business object: a PropertyContext, which holds the persistent properties, and a
/// BusinessContext, from which related collections are reached. It is made by brokering and lasts while referenced.
class VELMORIA_API Model final : public IBusinessObject, public Reporting, public Pooled {
 public:
  Model();
  ~Model() override;

  std::string_view ReportedType() const noexcept override;

  CancelEvent<Model> BeforeUpdate;
  Event<Model> AfterUpdate;
  CancelEvent<Model> BeforePendingDelete;
  Event<Model> AfterPendingDelete;
  /// A listener may supply what was not found; then no error follows.
  Event<Model, const Variant&, PropertiesPtr&> PropertiesNotFound;
  Event<Model, const Variant&, const PropertyPtr&, PropertyPtr&> PropertyNotFound;
  Event<Model, const Variant&, IBusinessObjectsPtr&> BusinessObjectsNotFound;

  velmoria::PropertyContextPtr PropertyContext() const;
  /// The broker of the related objects; it stands for this object and is made on first request.
  velmoria::BusinessContextPtr BusinessContext();

  /// otModel, always.
  zObjectTypes ObjectType() const override;
  /// A name that is not held yet is taken for a Relationship of the class and loaded; raises 15063 when that gives
  /// nothing either and no listener supplies one.
  IBusinessObjectsPtr BusinessObjects(const Variant& index) override;
  std::int32_t BusinessObjectsCount() override;
  /// Raises 15072 when no collection has it and no listener supplies one.
  PropertyPtr FindProperty(const Variant& index, PropertyPtr parameter = {}) override;
  /// A name that is not held yet is taken for an Action and loaded; raises 15071 when that gives nothing either.
  PropertiesPtr Properties(const Variant& index) override;
  std::int32_t PropertyCount() override;
  std::int32_t PropertiesCount() override;
  IdentifierPtr Identifier() override;
  IdentifierPtr ParentIdentifier() override;
  /// Raises 15095 under a format without string keys.
  std::string Key(KeyFormatPtr keyFormat = {}) override;
  /// Whether a value differs from what is saved.
  bool Dirty() override;
  bool Modifiable() override;
  zEditFlags EditFlags() override;
  std::string EditFlagsDisplay() override;
  zStateFlags StateFlags() override;
  std::string StateFlagsDisplay() override;
  std::string Details() override;
  void Update() override { Update(false); }
  void Delete() override { Delete(false); }
  void Undo() override;
  /// Recursive carries the operation on to the held related collections.
  void Update(bool recursive);
  void Delete(bool recursive);

  ModelPtr GetModel() override;
  /// Does nothing: a Model is its own.
  void SetModel(ModelPtr model) override;

  // Inside the library.
  /// Gives the Model its data, once.
  void Setup(PropertyContextPtr propertyContext, IdentifierPtr parentIdentifier);

 protected:
  std::string StateDetails() const override;

 private:
  velmoria::PropertyContext& Held() const;

  PropertyContextPtr propertyContext_;
  BusinessContextPtr businessContext_;
  IdentifierPtr parentIdentifier_;
};

}  // namespace velmoria
