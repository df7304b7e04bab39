#pragma once

#include "shell/Platform.h"

namespace marl {

/// The tools of the suite that run inside the switchboard's process. Each operation creates the
/// component, calls it once and releases it; it returns when the tool has finished. If the
/// component is not installed, a message says so; if it cannot be created or fails, its error text
/// is thrown as a `RuntimeError`.
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
