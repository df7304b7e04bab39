#pragma once

#include <functional>
#include <vector>

#include "platform/ColorDialog.h"
#include "platform/memory/MemoryDesktop.h"

namespace marl {

/// A colour dialog that a test answers in place of the user; without an answer it is cancelled.
class MemoryColorDialog : public ColorDialog {
 public:
  struct Showing {
    const Form* owner = nullptr;
    int flags = 0;
    Color color = 0;  ///< the initial colour
  };

  /// Runs while the dialog is open. It sets the user's choice and returns true, or cancels.
  std::function<bool(Color& color)> whenShown;
  std::vector<Showing> shown;

  /// The user will choose this colour.
  void Choose(Color choice) {
    whenShown = [choice](Color& color) {
      color = choice;
      return true;
    };
  }

  bool ShowColor(const Form* owner, int flags, Color& color) override {
    shown.push_back({owner, flags, color});
    const MemoryDesktop::Standing dialog(owner ? dynamic_cast<MemoryDesktop*>(&owner->desktop())
                                               : nullptr);
    Color choice = color;
    const bool chosen = whenShown && whenShown(choice);
    dialog.Answered();
    if (!chosen) return false;
    color = choice;
    return true;
  }
};

}  // namespace marl
