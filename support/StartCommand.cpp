#include "support/StartCommand.h"

#include <algorithm>

namespace marl {

namespace {

constexpr int kShellSuccess = 32;  // the shell's codes above this are no errors

bool IsFullPath(TextView path) {
  return path.starts_with(u"\\\\") ||
         (path.size() > 2 && path[1] == u':' && (path[2] == u'\\' || path[2] == u'/'));
}

struct Command {
  TextView program;
  TextView arguments;
};

TextView WithoutBlanksBefore(TextView text) {
  const std::size_t first = text.find_first_not_of(u' ');
  return first == TextView::npos ? TextView() : text.substr(first);
}

Command Quoted(TextView text) {
  const TextView program = text.substr(0, text.find(u'"'));
  const std::size_t behind = std::min(program.size() + 1, text.size());
  return {program, WithoutBlanksBefore(text.substr(behind))};
}

/// The program is empty if no part of the text is an existing file.
Command Unquoted(const FileSystem& files, TextView text) {
  for (std::size_t end = text.size(); end != TextView::npos; end = text.rfind(u' ', end - 1)) {
    if (end == 0) break;
    const TextView program = text.substr(0, end);
    if (!program.ends_with(u' ') && files.FileExists(program)) {
      return {program, WithoutBlanksBefore(text.substr(end))};
    }
  }
  return {};
}

}  // namespace

bool StartCommand(Shell& shell, const FileSystem& files, TextView command, int show) {
  const bool quoted = command.starts_with(u'"');
  const TextView text = quoted ? command.substr(1) : command;
  if (!IsFullPath(text)) return shell.Run(u"", command, show) == kOk;
  const auto [program, arguments] = quoted ? Quoted(text) : Unquoted(files, text);
  if (program.empty()) return false;
  // CreateProcess adds quotes to a path with blanks only if it has found the program itself. It is
  // given the program here, so the quotes are added here: without them the program would split its
  // own path.
  Text line(command);
  if (!quoted && program.find(u' ') != TextView::npos) {
    line = u'"' + Text(program) + u'"' + Text(text.substr(program.size()));
  }
  const Status status = shell.Run(program, line, show);
  if (status != kElevationRequired) return status == kOk;
  const int code = shell.Execute(ShellOwner::kMainForm, u"", program, arguments, u"", show);
  return code > kShellSuccess || code == kAccessDenied;  // the result when the user refuses
}

}  // namespace marl
