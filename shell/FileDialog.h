#pragma once

#include "platform/FileDialogs.h"
#include "platform/Text.h"

namespace marl {

/// The choice of a file, kept between showings: what the common file dialog starts from and what
/// it ends with.
struct FileDialog {
  Text FileName;
  Text DialogTitle;
  Text Filter;  ///< descriptions and patterns in turn, separated by "|"
  Text InitDir;
  int Flags = kHideReadOnly | kFileMustExist;
};

}  // namespace marl
