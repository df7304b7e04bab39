#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "platform/Clock.h"
#include "platform/FileSystem.h"
#include "platform/Text.h"

namespace marl {

/// The text before its first NUL; all of it if there is none.
TextView StripNull(TextView text);

/// Searches a folder and its sub-folders for files by name.
class modFindFiles {
 public:
  /// `doEvents` runs before an entry, so that the user interface stays responsive: before the first
  /// one, and before each that comes `kQuiet` or more after its last run. So no message waits
  /// longer than 5 ms, unless the platform takes longer than a millisecond for a single entry.
  modFindFiles(const FileSystem& files, const Clock& clock, std::function<void()> doEvents)
      : files_(files), clock_(clock), doEvents_(std::move(doEvents)) {}

  /// How long a search goes on without `doEvents`, in microseconds.
  static constexpr std::int64_t kQuiet = 4000;

  /// Any value but 0 stops a running search at its next entry, after `doEvents` if that is due;
  /// meant for a stop button. The caller clears it before a search.
  std::int16_t SearchCancelled = 0;

  /// Adds the paths of the files whose names match one of `filters` to `result`, hidden ones
  /// included, in the order of the listings: the files of a sub-folder come where the sub-folder is
  /// listed. Links between folders are followed without a check for loops.
  ///
  /// `folder` gets a trailing backslash if it has none. `filters` are shell patterns, each followed
  /// by "|" (text after the last "|" is ignored), and ignore case. `pattern` is matched, case
  /// included, against each folder's path with its backslash, not against file names. A folder that
  /// cannot be listed counts as empty.
  void FindFiles(Text& folder, TextView pattern, TextView filters, std::int16_t recurse,
                 std::vector<Text>& result);

 private:
  const FileSystem& files_;
  const Clock& clock_;
  std::function<void()> doEvents_;
};

}  // namespace marl
