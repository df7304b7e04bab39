#include "platform/Process.h"

#include <algorithm>
#include <cstddef>

namespace marl {

TextView BehindProgram(TextView commandLine) {
  std::size_t at = 0;
  if (commandLine.starts_with(u'"')) {
    at = commandLine.find(u'"', 1);
    at = at == TextView::npos ? commandLine.size() : at + 1;
  } else {
    at = std::min(commandLine.find_first_of(u" \t"), commandLine.size());
  }
  if (at < commandLine.size() && (commandLine[at] == u' ' || commandLine[at] == u'\t')) ++at;
  return commandLine.substr(at);
}

}  // namespace marl
