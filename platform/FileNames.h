#pragma once

#include "platform/Text.h"

namespace marl {

/// The prefix of paths that the platform does not normalise, of any length.
constexpr TextView kLongPathPrefix = u"\\\\?\\";

/// True for a text that can be a path: neither empty nor with a NUL, where the platform would stop
/// reading.
constexpr bool IsPath(TextView path) { return !path.empty() && path.find(u'\0') == TextView::npos; }

/// True for a path without wildcards: "*" and "?", and also quotes and angle brackets, which the
/// file system takes as wildcards and which would break a command line. The prefix of a long path
/// is not a wildcard.
constexpr bool IsExactPath(TextView path) {
  if (!IsPath(path)) return false;
  if (path.starts_with(kLongPathPrefix)) path.remove_prefix(kLongPathPrefix.size());
  return path.find_first_of(u"*?\"<>") == TextView::npos;
}

}  // namespace marl
