#pragma once

#include "velmoria/brokering/ibusiness_object.h"

namespace velmoria {

/// The convenience base of a host's business class: it holds the Model and forwards every operation to it, so that a
/// class adds only what is its own. Until brokering has given the Model every operation raises 91, object not set.
///
///   class Order : public BusinessObject {
///    public:
///     std::int32_t Id() { return FindProperty("Id")->Value().AsLong(); }
///   };
///   Components::Register<Order>("Sales.Order");
class VELMORIA_API BusinessObject : public IBusinessObject {
 public:
  BusinessObject();
  ~BusinessObject() override;

  std::string_view ReportedType() const noexcept override;

  zObjectTypes ObjectType() const override;  ///< otBusiness
  IBusinessObjectsPtr BusinessObjects(const Variant& index) override;
  std::int32_t BusinessObjectsCount() override;
  PropertyPtr FindProperty(const Variant& index, PropertyPtr parameter = {}) override;
  PropertiesPtr Properties(const Variant& index) override;
  std::int32_t PropertyCount() override;
  std::int32_t PropertiesCount() override;
  IdentifierPtr Identifier() override;
  IdentifierPtr ParentIdentifier() override;
  std::string Key(KeyFormatPtr keyFormat = {}) override;
  bool Dirty() override;
  bool Modifiable() override;
  zEditFlags EditFlags() override;
  std::string EditFlagsDisplay() override;
  zStateFlags StateFlags() override;
  std::string StateFlagsDisplay() override;
  std::string Details() override;
  void Update() override;
  void Delete() override;
  void Undo() override;
  ModelPtr GetModel() override;
  void SetModel(ModelPtr model) override;

 private:
  velmoria::Model& Held() const;

  ModelPtr model_;
};

}  // namespace velmoria
