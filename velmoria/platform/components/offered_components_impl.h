#pragma once

#include "velmoria/platform/components/component_source_impl.h"

namespace velmoria {

/// Whatever is offered by name: what the host has registered, else what a shared library offers.
class OfferedComponents final : public ComponentSource {
 public:
  Ref<Object> Create(std::string_view name) override;
};

}  // namespace velmoria
