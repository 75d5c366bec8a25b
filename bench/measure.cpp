#include "measure.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <string>

#include <malloc.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

double Clock(clockid_t clock) {
  timespec now{};
  clock_gettime(clock, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

double MedianOf(std::vector<Taken> rounds, double Taken::* which) {
  std::ranges::sort(rounds, {}, which);
  return rounds[rounds.size() / 2].*which;
}

/// A line of the process's status, in bytes.
std::size_t StatusBytes(const std::string& name) {
  std::ifstream status("/proc/self/status");
  for (std::string word; status >> word;)
    if (std::size_t kilobytes = 0; word == name && status >> kilobytes) return kilobytes * 1024;
  std::abort();
}

}  // namespace

double WallClock() { return Clock(CLOCK_MONOTONIC); }
double ProcessorClock() { return Clock(CLOCK_PROCESS_CPUTIME_ID); }

Taken Median(const std::vector<Taken>& rounds) {
  return {.Seconds = MedianOf(rounds, &Taken::Seconds), .Processor = MedianOf(rounds, &Taken::Processor)};
}

std::size_t HeapBytes() { return mallinfo2().uordblks; }

std::size_t BytesOfProcess(void (*work)(const void* argument), const void* argument) {
  int ends[2];
  std::fflush(stdout);
  if (pipe(ends) != 0) std::abort();
  const pid_t child = fork();
  if (child == 0) {
    malloc_trim(0);
    const auto before = StatusBytes("VmRSS:");
    work(argument);
    const auto grown = StatusBytes("VmHWM:") - before;
    _exit(write(ends[1], &grown, sizeof grown) == sizeof grown ? EXIT_SUCCESS : EXIT_FAILURE);
  }
  std::size_t bytes = 0;
  int status = EXIT_FAILURE;
  if (read(ends[0], &bytes, sizeof bytes) != sizeof bytes) std::abort();
  if (waitpid(child, &status, 0) != child || status != EXIT_SUCCESS) std::abort();
  close(ends[0]);
  close(ends[1]);
  return bytes;
}

void Print(const char* what, const std::vector<Taken>& rounds, const std::vector<Taken>& plain, const char* goal) {
  const Taken taken = Median(rounds);
  const Taken against = Median(plain);
  std::printf("%-52s %9.4f s   ratio %5.2f   of processor %5.2f   goal %s\n", what, taken.Seconds,
              taken.Seconds / against.Seconds, taken.Processor / against.Processor, goal);
  std::fflush(stdout);
}

void PrintBytes(const char* what, double bytes, double plain, const char* goal) {
  std::printf("%-52s %9.1f B   ratio %5.2f   goal %s\n", what, bytes, bytes / plain, goal);
}
