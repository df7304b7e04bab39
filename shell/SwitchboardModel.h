#pragma once

#include <array>

#include "platform/Text.h"
#include "resources/strings/ids.h"
#include "support/Buttons.h"

namespace marl {

/// The buttons that code refers to.
enum ButtonIndex {
  kAnalyse = 0,
  kEdit = 5,
  kChangeServer = 6,
  kTrackProjects = 7,
  kAdministrator = 8,
  kUtilities = 9,
  kQaCheck = 10,
  kExit = 17,
};

/// In a label's `Tag`: the button's program is missing.
constexpr TextView kDead = u"*";

/// One button of the switchboard. Its index is the same in every display order.
struct SwitchboardButton {
  /// The button's program, in the label's `Tag` until start-up has looked for missing tools; empty
  /// for a button that starts none.
  TextView tag;
  /// The same program, spelled as it is started.
  TextView program;
};

/// The buttons, by index.
extern const std::array<SwitchboardButton, kButtonCount> kSwitchboard;

constexpr int kCaptionString = IDS_BUTTON_ANALYSE;  ///< string id of the first button's caption
constexpr int kTooltipString = IDS_TIP_ANALYSE;     ///< string id of the first button's tip

/// The word that opens the display settings, and how much of it has been typed.
class HiddenKeySequence {
 public:
  /// 1-based position of the next key.
  int position() const { return position_; }
  void Reset() { position_ = 1; }
  /// Takes one character, in upper case. True if it completes the word; `Reset` must follow then. A
  /// wrong key starts over, and does not count as the first letter.
  bool Take(char16_t character);

 private:
  int position_ = 1;
};

}  // namespace marl
