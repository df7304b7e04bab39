#pragma once

#include "platform/FileDialogs.h"
#include "platform/Text.h"

namespace marl {

/// The state of the common file dialog, kept from one use to the next: what it starts with and what
/// it returns.
struct FileDialog {
  Text FileName;
  Text DialogTitle;
  Text Filter;  ///< alternating descriptions and patterns, separated by "|"
  Text InitDir;
  int Flags = kHideReadOnly | kFileMustExist;
};

}  // namespace marl
