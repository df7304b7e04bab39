#pragma once

#include "shell/Platform.h"

namespace marl {

/// The tools of the suite that run inside the switchboard's process. Each operation makes the
/// component, calls it once and releases it; it returns when the tool has ended. A component that
/// is not installed says so in a message; one that is, and cannot be made or fails, ends in a
/// `RuntimeError` with its words.
class SuiteComponents {
 public:
  explicit SuiteComponents(Platform& platform) : platform_(platform) {}

  void RunProjectTm() const;
  void RunReplace() const;
  void RunSingleFile() const;
  /// `kind`: 0 runs the QA check, 1 the terminology check.
  void RunQaCheck(int kind) const;
  void RunCommentReport() const;

 private:
  void Run(TextView component, TextView operation, std::vector<ComponentValue> arguments) const;

  Platform& platform_;
};

}  // namespace marl
