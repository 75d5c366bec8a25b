#pragma once

#include <cstddef>

#include "velmoria/runtime/api.h"

namespace velmoria {

/// Blocks of one size kept for reuse by the calling thread; what is still kept is freed when the thread ends. A block
/// that comes back after that goes straight to the heap.
VELMORIA_API void* AllocatePooled(std::size_t size);
VELMORIA_API void FreePooled(void* block, std::size_t size) noexcept;

/// Gives a class that is made by the thousand its memory from the thread's free list.
class Pooled {
 public:
  static void* operator new(std::size_t size) { return AllocatePooled(size); }
  static void operator delete(void* block, std::size_t size) noexcept { FreePooled(block, size); }
};

}  // namespace velmoria
