#include "velmoria/brokering/business_context.h"
#include "velmoria/brokering/identifier.h"
#include "velmoria/core/apartment_impl.h"
#include "velmoria/core/quietly_impl.h"
#include "velmoria/design/class.h"
#include "velmoria/design/classes.h"
#include "velmoria/design/link.h"
#include "velmoria/design/links.h"
#include "velmoria/design/relationship.h"
#include "velmoria/design/relationships.h"
#include "velmoria/design/server.h"
#include "velmoria/design/servers.h"
#include "velmoria/properties/properties.h"
#include "velmoria/properties/property.h"
#include "velmoria/properties/property_context.h"

namespace velmoria {

namespace {

constexpr const char* kNavigating = "BusinessContext.PrepareRelationshipParameters";

// The parameter that the related Action lacks, made from the value's side.
PropertyFields ParameterLike(const Property& source, std::string name, const Variant& value) {
  return {.Name = std::move(name),
          .Value = value,
          .DataType = source.DataType(),
          .SourceColumn = source.SourceColumn(),
          .SourceDataType = source.SourceDataType(),
          .Modifiable = true,
          .Flags = pfInput};
}

PropertyPtr TargetLike(const Properties& parameters, const PropertyPtr& like) {
  return Quietly(kNavigating, [&] { return parameters.Find(PropertyKey{.Parameter = like}); });
}

}  // namespace

std::string BusinessContext::RelationshipName() const { return relationship_ ? relationship_->Name() : std::string{}; }

void BusinessContext::SetRelationshipName(const std::string& value) try {
  if (!propertyContext_) Raise(errNotSupported_RelatedBusinessObjects, "RelationshipName (Let)");
  // Of the object's own class, whatever class is selected.
  const IdentifierPtr parent = Present(ParentIdentifier());
  const ClassPtr parentClass =
      Present(Apartment().Servers)->Item(parent->ServerName())->Classes()->Item(parent->ClassName());
  ChangeRelationship(parentClass->Relationships()->Item(value));
} catch (...) { Failed("RelationshipName (Let)"); }

void BusinessContext::ChangeRelationship(RelationshipPtr newRelationship) {
  if (relationshipLocked_) RefusePinned("ChangeRelationship", RelationshipName(), "Relationship");
  SetServerName(newRelationship->RelatedServerName());
  SetClassName(newRelationship->RelatedClassName());
  SetActionName(newRelationship->RelatedActionName());
  relationship_ = std::move(newRelationship);  // last, for each of the three clears it
}

void BusinessContext::PrepareRelationshipParameters() {
  const LinksPtr links = relationship_->Links();
  if (links->Count() == 0) return FollowIdentifier();
  for (const auto& link : *links) FollowLink(*link);
}

void BusinessContext::FollowLink(Link& link) try {
  const PropertyPtr property = link.Property();
  const PropertyPtr parameter = link.Parameter();
  const auto sourceLike = [&](const PropertyPtr& like) {
    return Quietly(kNavigating, [&] { return propertyContext_->FindOrAsk(PropertyKey{.Parameter = like}); });
  };
  PropertyPtr source = property->Name().empty() ? PropertyPtr{} : sourceLike(property);
  PropertyPtr target = parameter->Name().empty() ? PropertyPtr{} : TargetLike(*parameters_, parameter);
  // A Link that names nothing in the object takes what answers to the parameter.
  if (!source && target) source = sourceLike(target);
  if (!source) Fail(RuntimeFailure::ObjectNotSet);
  if (!target) {
    const std::string name = parameter->Name().empty() ? source->Name() : parameter->Name();
    target = parameters_->SetupItem(ParameterLike(*source, name, Variant::Missing()));
  }
  target->SetValue(source->Value());
} catch (...) {
  const std::string property = link.Property()->Name();
  const std::string parameter = link.Parameter()->Name();
  Failed("PrepareRelationshipParameters", errLink_Navigate, {relationship_->Name(), property, parameter},
         "Property: '" + property + "'  Parameter: '" + parameter + "'");
}

void BusinessContext::FollowIdentifier() try {
  for (const auto& part : *Present(Present(ParentIdentifier())->Properties())) {
    if (const PropertyPtr target = TargetLike(*parameters_, part)) {
      target->SetValue(part->Value());
    } else {
      parameters_->SetupItem(ParameterLike(*part, part->Name(), part->Value()));
    }
  }
} catch (...) {
  Fail(RuntimeFailure::ObjectNotSet);  // without a Link the report itself fails, and that is what the caller gets
}

}  // namespace velmoria
