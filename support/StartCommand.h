#pragma once

#include "platform/FileSystem.h"
#include "platform/Shell.h"

namespace marl {

/// Starts a command text (CreateProcess). Returns false when it cannot be started.
///
/// The program of a command that begins with a full path is what stands between its quotes, or the
/// longest part up to a blank or the end that is an existing file. The platform is given it by
/// name: of itself it would first try the shorter parts, C:\Program.exe before all. Its command
/// line is the text as it stands, but for quotes around a program that holds a blank. A command
/// without a full path is searched for by the platform.
///
/// A program that needs more rights than this one is handed to the shell, which asks the user. One
/// that the user refuses counts as started.
bool StartCommand(Shell& shell, const FileSystem& files, TextView command, int show);

}  // namespace marl
