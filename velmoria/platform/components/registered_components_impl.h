#pragma once

#include "velmoria/platform/components/component_source_impl.h"

namespace velmoria {

/// The components that the host has registered with Components::Register.
class RegisteredComponents final : public ComponentSource {
 public:
  Ref<Object> Create(std::string_view name) override;
};

}  // namespace velmoria
