#pragma once

#include "platform/FileSystem.h"
#include "platform/Shell.h"

namespace marl {

/// Starts a command line (CreateProcess). Returns false if it cannot be started.
///
/// If the command begins with a full path, the program is the quoted part, or the longest part up
/// to a blank or the end that is an existing file. It is passed to the platform, which on its own
/// would first try shorter parts, such as C:\Program.exe. The command line is passed unchanged,
/// except for quotes around a program with a blank. A command without a full path is searched for
/// by the platform.
///
/// A program that needs elevation is started through the shell, which asks the user. If the user
/// refuses, it counts as started.
bool StartCommand(Shell& shell, const FileSystem& files, TextView command, int show);

}  // namespace marl
