#pragma once

#include "platform/Text.h"

namespace marl {

/// The prefix of a path that the platform takes as it stands, of any length.
constexpr TextView kLongPathPrefix = u"\\\\?\\";

/// True for a text that can be the path of something: neither empty nor with a NUL, behind which
/// the platform would see nothing.
constexpr bool IsPath(TextView path) { return !path.empty() && path.find(u'\0') == TextView::npos; }

/// True for a path without wildcards: those of the user, and quotes and angle brackets, which are
/// wildcards to the platform below and a broken quote on a command line. The prefix of a long path
/// is none.
constexpr bool IsExactPath(TextView path) {
  if (!IsPath(path)) return false;
  if (path.starts_with(kLongPathPrefix)) path.remove_prefix(kLongPathPrefix.size());
  return path.find_first_of(u"*?\"<>") == TextView::npos;
}

}  // namespace marl
