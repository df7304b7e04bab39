#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "platform/FileSystem.h"
#include "platform/Text.h"

namespace marl {

/// The text before its first NUL; all of it if there is none.
TextView StripNull(TextView text);

/// The search of a folder and those below it for files by their names.
class modFindFiles {
 public:
  /// `doEvents` runs before each entry, so that the user interface stays alive.
  modFindFiles(const FileSystem& files, std::function<void()> doEvents)
      : files_(files), doEvents_(std::move(doEvents)) {}

  /// Any number but 0 ends the search that is under way at its next entry. The hook for a stop
  /// button; who starts a search clears it.
  std::int16_t SearchCancelled = 0;

  /// Adds the paths of the files whose names match one of `filters` to `result`, hidden ones
  /// included, in the order that the folders yield them: what lies in a subfolder stands in the
  /// place of that subfolder. Links between folders are followed wherever they lead.
  ///
  /// `folder` gets a backslash at its end if it has none. `filters` are shell patterns, each with
  /// "|" behind it; what follows the last "|" is not seen. Case does not count in them. `pattern`
  /// is held, case included, against the path of the folder, with its backslash, and not against
  /// the names in it. A folder that cannot be listed has nothing in it.
  void FindFiles(Text& folder, TextView pattern, TextView filters, std::int16_t recurse,
                 std::vector<Text>& result);

 private:
  const FileSystem& files_;
  std::function<void()> doEvents_;
};

}  // namespace marl
