#pragma once

#include "documents/modFindFiles.h"
#include "platform/Desktop.h"
#include "platform/Text.h"
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

  /// Searches the folder of `projectFile`, with the pointer of work in the background, asks, and
  /// deletes what was found. A file that cannot be deleted stays, without a word. Throws "Overflow"
  /// behind the first 32,767 files.
  void Run(TextView projectFile) const;

  /// True for a file that is the suite's by its name: of all MIF files only three are.
  static bool IsWorkingFile(TextView path);

 private:
  Ports ports_;
  modFindFiles& search_;
};

}  // namespace marl
