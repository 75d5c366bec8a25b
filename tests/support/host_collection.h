#pragma once

#include "velmoria/velmoria.h"

namespace velmoria::test {

/// A host's own collection, without anything of its own.
class HostCollection : public BusinessCollection {};

/// One that does not take part.
class RefusingCollection final : public HostCollection {
 public:
  void Setup(BusinessObjectsPtr) override { Fail(RuntimeFailure::InvalidArgument, "no thanks"); }
};

}  // namespace velmoria::test
