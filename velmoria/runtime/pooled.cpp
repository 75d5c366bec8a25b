#include "velmoria/runtime/pooled.h"

#include <array>
#include <new>
#include <utility>

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

struct Pool {
  std::array<Shelf, kLargestKept / kGrain + 1> Shelves{};

  ~Pool() {
    for (const Shelf& shelf : Shelves) {
      for (Block* block = shelf.First; block;) ::operator delete(std::exchange(block, block->Next));
    }
  }
};

// Plain data, so that it can be asked until the very end of the thread, also by destructors that run after the pool's.
// One pointer is little enough for the quick model also where the library is loaded late.
[[gnu::tls_model("initial-exec")]] constinit thread_local Pool* pool = nullptr;
constinit thread_local bool ended = false;

struct Holder {
  Pool Held;
  Holder() { pool = &Held; }
  ~Holder() {
    pool = nullptr;
    ended = true;
  }
};

// The thread's pool, made now, or none once it has ended.
Pool* MakePool() {
  if (ended) return nullptr;
  static thread_local Holder holder;
  return pool;
}

constexpr std::size_t ShelfNumber(std::size_t size) { return (size + kGrain - 1) / kGrain; }

}  // namespace

void* AllocatePooled(std::size_t size) {
  const std::size_t number = ShelfNumber(size == 0 ? 1 : size);
  if (Pool* const mine = pool; mine && number < mine->Shelves.size()) {
    Shelf& shelf = mine->Shelves[number];
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
  Pool* const mine = pool ? pool : MakePool();
  if (!kKeepBlocks || !mine || number >= mine->Shelves.size() || mine->Shelves[number].Count == kMostKept) {
    ::operator delete(block);
    return;
  }
  Shelf& shelf = mine->Shelves[number];
  shelf.First = ::new (block) Block{shelf.First};
  ++shelf.Count;
}

}  // namespace velmoria
