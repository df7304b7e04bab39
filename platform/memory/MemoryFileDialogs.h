#pragma once

#include <functional>
#include <vector>

#include "platform/FileDialogs.h"
#include "platform/memory/MemoryDesktop.h"

namespace marl {

/// File dialogs that a test answers in place of the user; without an answer they are cancelled.
class MemoryFileDialogs : public FileDialogs {
 public:
  struct Showing {
    bool save = false;
    const Form* owner = nullptr;
    FileDialogSettings settings;
  };

  /// Runs while the dialog is open. It sets the path that the user chooses.
  std::function<FileDialogResult(Text& path)> whenShown;
  std::vector<Showing> shown;

  /// The user will choose this file.
  void Choose(TextView path) {
    whenShown = [path = Text(path)](Text& chosen) {
      chosen = path;
      return FileDialogResult::kChosen;
    };
  }

  FileDialogResult ShowOpen(const Form* owner, const FileDialogSettings& settings,
                            Text& path) override {
    return Show({false, owner, settings}, path);
  }
  FileDialogResult ShowSave(const Form* owner, const FileDialogSettings& settings,
                            Text& path) override {
    return Show({true, owner, settings}, path);
  }

 private:
  FileDialogResult Show(Showing showing, Text& path) {
    const MemoryDesktop::Standing dialog(
        showing.owner ? dynamic_cast<MemoryDesktop*>(&showing.owner->desktop()) : nullptr);
    const Text extension = showing.settings.Extension;
    shown.push_back(std::move(showing));
    Text chosen;
    const FileDialogResult result = whenShown ? whenShown(chosen) : FileDialogResult::kCancelled;
    dialog.Answered();
    if (result == FileDialogResult::kChosen) {
      const std::size_t dot = chosen.rfind(u'.');
      const std::size_t slash = chosen.rfind(u'\\');
      const bool bare = dot == Text::npos || (slash != Text::npos && dot < slash);
      if (bare && !extension.empty()) chosen += u'.' + extension;
      path = std::move(chosen);
    }
    return result;
  }
};

}  // namespace marl
