#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "velmoria/brokering/business_context_arguments.h"
#include "velmoria/core/enumerations.h"
#include "velmoria/core/lockable.h"
#include "velmoria/core/persistent_members.h"
#include "velmoria/core/position.h"
#include "velmoria/fwd.h"
#include "velmoria/runtime/event.h"
#include "velmoria/runtime/keyed_list.h"
#include "velmoria/runtime/object.h"

namespace velmoria {

struct GetPropertiesArguments;
struct BusinessContextSelection;

/// The broker: it holds a selection (server, class, action, key values or Identifier, parameters), turns it into
/// business objects, and keeps the collections that it loaded. A change of server clears the class, a change of class
/// the action, a change of action the relationship, the identity, the parameters and the key values; a setter that
/// fails leaves what the reset before it did. A locked selection raises 15002. The context of a Model stands for one
/// business object and follows its relationships.
class VELMORIA_API BusinessContext final : public Object, public Lockable, public PersistentMembers<IBusinessObjects> {
 public:
  BusinessContext();
  ~BusinessContext() override;

  std::string_view ReportedType() const noexcept override;

  CancelEvent<BusinessContext, IBusinessObjects&> BeforeAdd;
  Event<BusinessContext, IBusinessObjects&> AfterAdd;
  CancelEvent<BusinessContext, IBusinessObjects&> BeforeRemove;
  Event<BusinessContext, IBusinessObjects&> AfterRemove;
  /// A listener may supply the collection; then no error follows.
  Event<BusinessContext, const Variant&, IBusinessObjectsPtr&> ItemNotFound;

  std::string ServerName() const { return serverName_; }
  void SetServerName(std::string value);
  std::string ClassName() const;
  /// With a ServerName raises 15065 or 15074 on a miss; without one the registered Servers are walked, the first that
  /// has the class becomes the ServerName, and 15065 is raised when none has it.
  void SetClassName(const std::string& value);
  std::string ActionName() const;
  /// Raises 15157 without a class, 15061 when the class has no such action, an empty name included.
  void SetActionName(const std::string& value);
  std::string RelationshipName() const;
  /// Selects the related server, class and action of a Relationship of the object that the context stands for; its
  /// Links then fill the Parameters. Raises 15093 where the context stands for none, 15073 for an unknown name, and
  /// what the three names raise that the Relationship gives. The same name again takes the object's present values.
  void SetRelationshipName(const std::string& value);
  IdentifierPtr Identifier() const;
  void SetIdentifier(IdentifierPtr value);
  /// The values of the next operation; built from the selection when there are none. Raises 15157 without a class and
  /// 15057 when a Link of the relationship leads to nothing.
  PropertiesPtr Parameters();
  void SetParameters(PropertiesPtr value);
  Variant KeyValue1() const { return keyValues_[0]; }
  Variant KeyValue2() const { return keyValues_[1]; }
  Variant KeyValue3() const { return keyValues_[2]; }
  Variant KeyValue4() const { return keyValues_[3]; }
  void SetKeyValue1(const Variant& value) { SetKeyValue(0, value); }
  void SetKeyValue2(const Variant& value) { SetKeyValue(1, value); }
  void SetKeyValue3(const Variant& value) { SetKeyValue(2, value); }
  void SetKeyValue4(const Variant& value) { SetKeyValue(3, value); }
  KeyFormatPtr KeyFormat() const;
  void SetKeyFormat(KeyFormatPtr value);

  zCollectionTypes CollectionType() const { return collectionType_; }
  void SetCollectionType(zCollectionTypes value);
  zObjectTypes ObjectType() const { return objectType_; }
  void SetObjectType(zObjectTypes value);
  bool ServerLocked() const { return serverLocked_; }
  void SetServerLocked(bool value);
  bool ClassLocked() const { return classLocked_; }
  void SetClassLocked(bool value);
  bool ActionLocked() const { return actionLocked_; }
  void SetActionLocked(bool value);
  bool RelationshipLocked() const { return relationshipLocked_; }
  void SetRelationshipLocked(bool value);
  bool Locked() const { return locked_; }
  void SetLocked(bool value) { locked_ = value; }
  bool SupportsAdd() const { return !noAdd_; }
  void SetSupportsAdd(bool value);
  bool SupportsRemove() const { return !noRemove_; }
  void SetSupportsRemove(bool value);
  bool SupportsLoad() const { return !noLoad_; }
  void SetSupportsLoad(bool value);
  std::string Details() const;

  /// The held collections, by 1-based position or name; 15063 when there is none and no listener supplies it.
  IBusinessObjectsPtr Item(const Variant& index);
  std::int32_t Count() const;
  KeyedList<IBusinessObjectsPtr>::Iterator begin() const { return items_.begin(); }
  KeyedList<IBusinessObjectsPtr>::Iterator end() const { return items_.end(); }
  /// Raises 15082 when adding is not supported and 15005 when both positions are given.
  void Add(IBusinessObjectsPtr item, const Position& position = {});
  /// Raises 15083 when removing is not supported, 15063 for an unknown index, 5 for a collection that a listener of
  /// ItemNotFound supplied or that one of BeforeRemove has removed.
  void Remove(const Variant& index);
  void Update();
  void Delete();
  void Undo();
  bool Modifiable(bool all = true) const;

  /// The one object that the selection finds. Raises 15088 when the Action builds no objects, 15025 when there is no
  /// row, 15077 when there are more, 15023 and 15024 when the host class cannot be made or refuses its Model.
  IBusinessObjectPtr GetBusinessObject(const GetBusinessObjectArguments& arguments = {});
  /// The objects that the selection finds, as a collection bound to the result, which AsyncFlag lets the database open
  /// while the caller goes on. Raises 15088; 15167 and 15168 when the host collection cannot be made or set up.
  IBusinessObjectsPtr GetBusinessObjects(const GetBusinessObjectsArguments& arguments = {});
  /// GetBusinessObjects with a memory: a collection already held is returned as it is, the one under RelationshipName
  /// before the one under Name, and the one under ActionName last; a new one is added. The KeyFormat argument is not
  /// used: the context's own is. Raises 15026 when loading is not supported.
  IBusinessObjectsPtr LoadBusinessObjects(const GetBusinessObjectsArguments& arguments = {},
                                          const Position& position = {});
  /// A new object, which its first Update inserts; without names it is of the selection that the context holds, else
  /// of the class's NewActionName. The ObjectType that decides stays in the context for later calls. With UseMetaData
  /// of the Server the columns are read once for each Action, and no query is made while they are kept. Raises 15090
  /// when the Action does not insert, 15023 and 15024 as GetBusinessObject.
  IBusinessObjectPtr CreateBusinessObject(const CreateBusinessObjectArguments& arguments = {});
  /// Runs an Action that gives no rows. An Identifier held by the context goes before the names, unless Parameters are
  /// given. Raises 15087 when the Action is not for this.
  void Execute(const ExecuteArguments& arguments = {});

  // Inside the library.
  /// Applies the fields; empty names are passed over. Raises 15002 on a locked context.
  void Setup(const BusinessContextFields& fields);
  /// Makes this the context of one business object.
  void SetPropertyContext(PropertyContextPtr value);
  /// The Properties of the one row that the arguments find; 15089, 15115, 15077.
  PropertiesPtr GetProperties(const GetPropertiesArguments& arguments);
  /// The Properties of a new row, under the name; 15089, 15090.
  PropertiesPtr GetNewProperties(const IdentifierPtr& identifier, const std::string& actionName,
                                 const std::string& name);
  /// As Item, its event included, but none instead of an error.
  IBusinessObjectsPtr FindOrAsk(const Variant& index);

 protected:
  std::string StateDetails() const override;

 private:
  void SetKeyValue(std::size_t index, const Variant& value);
  [[noreturn, gnu::cold]] void RefusePinned(std::string_view routine, std::string_view name,
                                            std::string_view kind) const;
  void ChangeClass(ClassPtr newClass);
  void ChangeAction(ActionPtr newAction);
  void ChangeActionName(const std::string& value);
  void ChangeRelationship(RelationshipPtr newRelationship);
  void ClearKeyValues();
  const Class& SelectedClass() const;
  void SelectDefaultAction();
  void SetupSelection(const BusinessContextSelection& selection);
  void SelectByNames(const BusinessContextSelection& selection);
  void SelectNamed(const BusinessContextSelection& selection);
  void SelectByIdentifier(const BusinessContextSelection& selection);
  void PrepareParameters();
  void PrepareIdentifier();
  void PrepareRelationshipParameters();
  void FollowLink(Link& link);
  void FollowIdentifier();
  void RequireUsage(zUsageFlags flag, zErrors number, std::string_view routine) const;
  void RequireInsert(std::string_view routine) const;
  DatabaseAgentPtr OpenAgent();
  RecordsetPtr OpenRecordset();
  PropertiesPtr CreateProperties();
  PropertiesPtr DescribeColumns();
  IBusinessObjectPtr WrapInHostObject(const ModelPtr& model) const;
  IdentifierPtr ParentIdentifier() const;
  zObjectTypes ResolvedObjectType(zObjectTypes argument) const;
  std::string CollectionName(const std::string& argument) const;
  IBusinessObjectsPtr FindHeld(const GetBusinessObjectsArguments& arguments);
  IBusinessObjectsPtr WrapInHostCollection(BusinessObjectsPtr businessObjects, const std::string& component) const;
  std::vector<IBusinessObjectsPtr> Members() const;

  std::string serverName_;
  ClassPtr class_;
  ActionPtr action_;
  RelationshipPtr relationship_;
  IdentifierPtr identifier_;
  PropertiesPtr parameters_;
  PropertyContextPtr propertyContext_;
  KeyFormatPtr keyFormat_;
  KeyedList<IBusinessObjectsPtr> items_;
  std::array<Variant, 4> keyValues_;
  zObjectTypes objectType_ = otDefault;
  zCollectionTypes collectionType_ = cltDefault;
  bool noAdd_ = false;
  bool noRemove_ = false;
  bool noLoad_ = false;
  bool serverLocked_ = false;
  bool classLocked_ = false;
  bool actionLocked_ = false;
  bool relationshipLocked_ = false;
  bool locked_ = false;
};

}  // namespace velmoria
