#pragma once

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <string>
#include <vector>

namespace marl::bench {

/// Keeps `value` from being optimised away.
template <typename T>
inline void Keep(const T& value) {
  asm volatile("" : : "r,m"(value) : "memory");
}

/// Processor time of this thread in seconds, which hardly depends on other load. On Windows it is
/// elapsed time, since other processes do much of the system's work there.
inline double Now() {
  timespec time = {};
#ifdef _WIN32
  clock_gettime(CLOCK_MONOTONIC, &time);
#else
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
#endif
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

/// Times several competitors for the same work in one run. They take turns, so that a busy moment
/// hits all of them; the best time of each counts.
class Race {
 public:
  explicit Race(std::string name) : name_(std::move(name)) {}

  /// Adds a competitor; the first one is Marl.
  void Add(std::string runner, std::function<void()> work) {
    runners_.push_back({std::move(runner), std::move(work), 0});
  }

  /// Runs each competitor `rounds` times with `repeats` calls each, and prints the times. `bytes`
  /// is the amount of work in one call.
  void Run(int rounds, int repeats, double bytes) {
    for (int round = 0; round <= rounds; ++round) {
      for (Runner& runner : runners_) {
        const double start = Now();
        for (int i = 0; i < repeats; ++i) runner.work();
        const double seconds = (Now() - start) / repeats;
        // The first round only warms up.
        if (round == 1 || (round > 1 && seconds < runner.seconds)) runner.seconds = seconds;
      }
    }
    for (const Runner& runner : runners_) {
      std::printf("%-16s %-24s %12.3f us %9.1f MB/s\n", name_.c_str(), runner.name.c_str(),
                  runner.seconds * 1e6, bytes / runner.seconds / 1e6);
    }
  }

  /// Seconds of a competitor.
  double Seconds(const std::string& runner) const {
    for (const Runner& candidate : runners_) {
      if (candidate.name == runner) return candidate.seconds;
    }
    std::printf("no runner %s\n", runner.c_str());
    std::exit(2);
  }

  /// How many times faster Marl is than `runner`.
  double Against(const std::string& runner) const {
    return Seconds(runner) / runners_.front().seconds;
  }

 private:
  struct Runner {
    std::string name;
    std::function<void()> work;
    double seconds;
  };

  std::string name_;
  std::vector<Runner> runners_;
};

/// The goals of a benchmark, printed at its end: one line each.
class Goals {
 public:
  /// A ratio that has to be at least `bound`.
  void AtLeast(const std::string& name, double ratio, double bound) {
    Add(name, ratio, bound, ratio >= bound);
  }
  /// A ratio that has to be at most `bound`.
  void AtMost(const std::string& name, double ratio, double bound) {
    Add(name, ratio, bound, ratio <= bound);
  }

  void Tell() const {
    for (const std::string& line : lines_) std::puts(line.c_str());
  }

 private:
  void Add(const std::string& name, double ratio, double bound, bool held) {
    char line[200];
    std::snprintf(line, sizeof(line), "goal %s %.2f %.2f %s", name.c_str(), ratio, bound,
                  held ? "held" : "missed");
    lines_.emplace_back(line);
  }

  std::vector<std::string> lines_;
};

}  // namespace marl::bench
