#pragma once

#include <thread>

namespace velmoria::test {

/// Asks until a result, or an agent's, that opens in the background is open or has failed.
template <class Opening>
void AwaitOpened(const Opening& opening) {
  while (opening->StillExecuting()) std::this_thread::yield();
}

}  // namespace velmoria::test
