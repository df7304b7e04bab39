#pragma once

#include "platform/Process.h"
#include "platform/win32/Handle.h"

namespace marl::win32 {

/// The running process.
class ProcessWin32 : public Process {
 public:
  Text CommandLine() const override;
  Text ProgramPath() const override;
  bool PreviousInstance() override;
  void RegisterRestart(TextView commandLine) override;

 private:
  UniqueMutex claim_;
};

}  // namespace marl::win32
