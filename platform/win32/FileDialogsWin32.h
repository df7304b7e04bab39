#pragma once

#include "platform/FileDialogs.h"

namespace marl::win32 {

/// The platform's file dialogs.
class FileDialogsWin32 : public FileDialogs {
 public:
  FileDialogResult ShowOpen(const Form* owner, const FileDialogSettings& settings,
                            Text& path) override;
  FileDialogResult ShowSave(const Form* owner, const FileDialogSettings& settings,
                            Text& path) override;
};

}  // namespace marl::win32
