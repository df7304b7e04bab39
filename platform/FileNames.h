#pragma once

#include <cstddef>

#include "platform/Text.h"

namespace marl {

/// The prefix of paths that the platform does not normalise, of any length.
constexpr TextView kLongPathPrefix = u"\\\\?\\";

/// Characters of the longest path: the platform's limit of 32,767 with a terminator and a prefix.
/// Longer ones crash some versions of Wine.
constexpr std::size_t kLongestPath = 32'750;

/// True for a text that can be a path: neither empty nor too long nor with a NUL, where the
/// platform would stop reading.
constexpr bool IsPath(TextView path) {
  return !path.empty() && path.size() <= kLongestPath && path.find(u'\0') == TextView::npos;
}

/// True for a path without wildcards: "*" and "?", and also quotes and angle brackets, which the
/// file system takes as wildcards and which would break a command line. The prefix of a long path
/// is not a wildcard.
constexpr bool IsExactPath(TextView path) {
  if (!IsPath(path)) return false;
  if (path.starts_with(kLongPathPrefix)) path.remove_prefix(kLongPathPrefix.size());
  return path.find_first_of(u"*?\"<>") == TextView::npos;
}

}  // namespace marl
