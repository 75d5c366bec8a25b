#include "velmoria/runtime/pooled.h"

#include <array>
#include <new>

namespace velmoria {

namespace {

// An address checker finds a use after the end only when the heap itself sees every block.
#if defined(__SANITIZE_ADDRESS__)
constexpr bool kKeepBlocks = false;
#else
constexpr bool kKeepBlocks = true;
#endif

constexpr std::size_t kGrain = 16;
constexpr std::size_t kLargestKept = 1024;
constexpr std::size_t kMostKept = 65536;  // blocks of one size

struct Block {
  Block* Next;
};

struct Shelf {
  Block* First = nullptr;
  std::size_t Count = 0;
};

using Shelves = std::array<Shelf, kLargestKept / kGrain + 1>;

// Plain data, so that it can be used until the very end of the thread, also by destructors that run after Cleaner's.
constinit thread_local Shelves shelves{};
constinit thread_local bool ended = false;

struct Cleaner {
  ~Cleaner() {
    ended = true;
    for (Shelf& shelf : shelves) {
      while (Block* block = shelf.First) {
        shelf.First = block->Next;
        ::operator delete(block);
      }
      shelf.Count = 0;
    }
  }
};

void CleanAtThreadEnd() { static const thread_local Cleaner cleaner; }

constexpr std::size_t ShelfNumber(std::size_t size) { return (size + kGrain - 1) / kGrain; }

}  // namespace

void* AllocatePooled(std::size_t size) {
  const std::size_t number = ShelfNumber(size == 0 ? 1 : size);
  if (number < shelves.size()) {
    Shelf& shelf = shelves[number];
    if (Block* block = shelf.First) {
      shelf.First = block->Next;
      --shelf.Count;
      return block;
    }
  }
  return ::operator new(number * kGrain);
}

void FreePooled(void* block, std::size_t size) noexcept {
  if (!block) return;
  const std::size_t number = ShelfNumber(size == 0 ? 1 : size);
  if (kKeepBlocks && !ended && number < shelves.size() && shelves[number].Count < kMostKept) {
    Shelf& shelf = shelves[number];
    if (!shelf.First) CleanAtThreadEnd();
    shelf.First = ::new (block) Block{shelf.First};
    ++shelf.Count;
    return;
  }
  ::operator delete(block);
}

}  // namespace velmoria
