#pragma once

#include "documents/modFindFiles.h"
#include "platform/Text.h"
#include "platform/forms/Desktop.h"
#include "support/StringTable.h"
#include "support/clsCommon.h"

namespace marl {

/// Deletes the suite's working files in the folder of a project and below it.
class CleanFolder {
 public:
  struct Ports {
    Desktop& desktop;
    const StringTable& strings;
    const clsCommon& common;
  };
  CleanFolder(const Ports& ports, modFindFiles& search) : ports_(ports), search_(search) {}

  /// Searches the folder of `projectFile` (showing the "working in background" pointer), asks, and
  /// deletes what was found. Files that cannot be deleted are left without a message. Throws
  /// "Overflow" after the first 32,767 files.
  void Run(TextView projectFile) const;

  /// True if the name is that of a working file of the suite. Of all MIF files only three names
  /// are.
  static bool IsWorkingFile(TextView path);

 private:
  Ports ports_;
  modFindFiles& search_;
};

}  // namespace marl
