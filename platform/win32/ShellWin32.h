#pragma once

#include <windows.h>

#include <functional>

#include "platform/Shell.h"

namespace marl::win32 {

/// The platform's shell. `mainWindow` returns the owner window for started programs.
class ShellWin32 : public Shell {
 public:
  explicit ShellWin32(std::function<HWND()> mainWindow) : mainWindow_(std::move(mainWindow)) {}
  int Execute(ShellOwner owner, TextView verb, TextView file, TextView parameters,
              TextView directory, int show) override;
  int FindProgram(TextView file, TextView directory, Text& program) override;
  Status Run(TextView program, TextView commandLine, int show) override;
  void Help(TextView file, int command, int data) override;

 private:
  std::function<HWND()> mainWindow_;
};

}  // namespace marl::win32
