#pragma once

#include "platform/Text.h"

namespace marl {

class Form;

/// Flags of a common file dialog, with the platform's numbers.
enum FileDialogFlag : int {
  kOverwritePrompt = 0x2,
  kHideReadOnly = 0x4,
  kFileMustExist = 0x1000,
};

/// What a common file dialog starts from.
struct FileDialogSettings {
  Text Title;
  Text Filter;    ///< descriptions and patterns in turn, separated by "|"
  Text Folder;    ///< where it opens; the platform chooses if it is empty
  Text FileName;  ///< what stands in the field
  /// Given to a name without one, written without its dot; none if empty. The filter's first
  /// pattern names the same: the platform may prefer that one.
  Text Extension;
  int Flags = 0;
};

enum class FileDialogResult { kChosen, kCancelled, kFailed };

/// The platform's dialogs for the choice of a file, above a form and modal to it. The program's
/// current folder stays what it was.
class FileDialogs {
 public:
  virtual ~FileDialogs() = default;
  /// Asks for a file to open (GetOpenFileName). `path` is the full path of the choice, and is
  /// untouched unless kChosen. kFailed when the dialog could not do its work.
  virtual FileDialogResult ShowOpen(const Form* owner, const FileDialogSettings& settings,
                                    Text& path) = 0;
  /// Asks for a file to save to (GetSaveFileName).
  virtual FileDialogResult ShowSave(const Form* owner, const FileDialogSettings& settings,
                                    Text& path) = 0;
};

}  // namespace marl
