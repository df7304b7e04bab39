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

/// Initial state of a common file dialog.
struct FileDialogSettings {
  Text Title;
  Text Filter;    ///< alternating descriptions and patterns, separated by "|"
  Text Folder;    ///< initial folder; the platform chooses if it is empty
  Text FileName;  ///< initial text of the field
  /// Default extension, without its dot; none if empty. It must match the filter's first pattern,
  /// which the platform may prefer.
  Text Extension;
  int Flags = 0;
};

enum class FileDialogResult { kChosen, kCancelled, kFailed };

/// The platform's file dialogs, above a form and modal to it. They do not change the program's
/// current folder.
class FileDialogs {
 public:
  virtual ~FileDialogs() = default;
  /// Asks for a file to open (GetOpenFileName). `path` is the full path of the choice, and
  /// unchanged unless kChosen. kFailed if the dialog failed.
  virtual FileDialogResult ShowOpen(const Form* owner, const FileDialogSettings& settings,
                                    Text& path) = 0;
  /// Asks for a file to save to (GetSaveFileName).
  virtual FileDialogResult ShowSave(const Form* owner, const FileDialogSettings& settings,
                                    Text& path) = 0;
};

}  // namespace marl
