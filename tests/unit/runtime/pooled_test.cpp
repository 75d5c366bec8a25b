#include "velmoria/runtime/pooled.h"

#include <cstring>
#include <set>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "velmoria/runtime/object.h"

namespace velmoria {
namespace {

class Small : public Object, public Pooled {
 public:
  long long Payload[4] = {};
};

class Derived : public Small {
 public:
  long long More[40] = {};
};

TEST(PooledTest, BlocksInUseAreApartAndKeepWhatIsWritten) {
  std::vector<unsigned char*> blocks;
  for (int i = 0; i < 200; ++i) {
    blocks.push_back(static_cast<unsigned char*>(AllocatePooled(48)));
    std::memset(blocks.back(), i, 48);
  }
  EXPECT_EQ(std::set<unsigned char*>(blocks.begin(), blocks.end()).size(), 200U);
  for (int i = 0; i < 200; ++i) {
    EXPECT_EQ(blocks[static_cast<std::size_t>(i)][0], i);
    EXPECT_EQ(blocks[static_cast<std::size_t>(i)][47], i);
    FreePooled(blocks[static_cast<std::size_t>(i)], 48);
  }
}

TEST(PooledTest, AFreedBlockServesTheNextRequestOfItsSize) {
#if defined(__SANITIZE_ADDRESS__)
  GTEST_SKIP() << "Does not apply: every block is the heap's own under an address checker";
#endif
  void* first = AllocatePooled(96);
  FreePooled(first, 96);
  void* second = AllocatePooled(96);
  EXPECT_EQ(first, second);
  FreePooled(second, 96);
}

TEST(PooledTest, MoreBlocksOfASizeThanAreUsefulGoBackToTheHeap) {
#if defined(__SANITIZE_ADDRESS__)
  GTEST_SKIP() << "Does not apply: every block is the heap's own under an address checker";
#endif
  constexpr std::size_t kMostKept = 65536;
  void* next = nullptr;
  void* lastKept = nullptr;
  std::thread([&] {
    std::vector<void*> blocks(kMostKept + 1);
    for (void*& block : blocks) block = AllocatePooled(16);
    lastKept = blocks[kMostKept - 1];
    for (void* block : blocks) FreePooled(block, 16);
    next = AllocatePooled(16);
    FreePooled(next, 16);
  }).join();
  EXPECT_EQ(next, lastKept);
}

TEST(PooledTest, SizesOfOneGrainShareTheirBlocks) {
#if defined(__SANITIZE_ADDRESS__)
  GTEST_SKIP() << "Does not apply: every block is the heap's own under an address checker";
#endif
  void* first = AllocatePooled(33);
  FreePooled(first, 33);
  void* second = AllocatePooled(48);
  EXPECT_EQ(first, second);
  FreePooled(second, 48);
}

TEST(PooledTest, BlocksAreAlignedForAnyObject) {
  void* block = AllocatePooled(7);
  EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block) % alignof(std::max_align_t), 0U);
  FreePooled(block, 7);
}

TEST(PooledTest, LargeAndEmptyBlocksWorkToo) {
  void* large = AllocatePooled(100'000);
  void* empty = AllocatePooled(0);
  std::memset(large, 1, 100'000);
  EXPECT_NE(empty, nullptr);
  FreePooled(large, 100'000);
  FreePooled(empty, 0);
  FreePooled(nullptr, 16);
}

TEST(PooledTest, ADerivedObjectIsFreedWithItsOwnSize) {
  for (int i = 0; i < 3; ++i) {
    const Ref<Small> derived = Make<Derived>();
    const Ref<Small> small = Make<Small>();
    static_cast<Derived*>(derived.get())->More[39] = i;
    EXPECT_EQ(small->Payload[3], 0);
  }
}

TEST(PooledTest, ABlockMayEndOnAnotherThread) {
  void* block = AllocatePooled(64);
  std::thread([&] { FreePooled(block, 64); }).join();
  void* other = AllocatePooled(64);
  std::memset(other, 0, 64);
  FreePooled(other, 64);
}

struct LateOwner {
  void* Block = nullptr;
  ~LateOwner() { FreePooled(Block, 80); }
};

TEST(PooledTest, ABlockThatComesBackAfterThePoolsEndIsFreed) {
  std::thread([] {
    thread_local LateOwner owner;  // made before the pool's own end is registered, so it ends after it
    owner.Block = AllocatePooled(80);
    FreePooled(AllocatePooled(80), 80);
  }).join();
}

}  // namespace
}  // namespace velmoria
