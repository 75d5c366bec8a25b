#pragma once

#include <sys/wait.h>
#include <unistd.h>

namespace velmoria::test {

/// Runs a routine in a process of its own, to be waited for by EndsWell.
template <class Routine>
pid_t StartProcess(Routine routine) {
  const auto process = fork();
  if (process != 0) return process;
  try {
    routine();
  } catch (...) { _exit(1); }
  _exit(0);
}

/// Waits for the process: whether its routine came to its end.
inline bool EndsWell(pid_t process) {
  int status = 0;
  return waitpid(process, &status, 0) == process && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

}  // namespace velmoria::test
