#pragma once

#include <array>

#include "platform/Text.h"
#include "support/Buttons.h"

namespace marl {

/// Buttons that the logic names.
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

/// The state of a button whose program is missing, in its label's `Tag`.
constexpr TextView kDead = u"*";

/// One slot of the switchboard. The index never changes, whatever the display order.
struct SwitchboardButton {
  /// Program of the slot as it stands in the label's `Tag` until the missing-tools pass; empty for
  /// a slot that starts none.
  TextView tag;
  /// The same program as it is started.
  TextView program;
};

/// The table of the slots, by index.
extern const std::array<SwitchboardButton, kButtonCount> kSwitchboard;

constexpr int kCaptionString = 2000;  ///< string of a slot's caption, less its index
constexpr int kTooltipString = 2020;  ///< string of a slot's tooltip text, less its index

/// The word that opens the display settings, and how far it has been typed.
class HiddenKeySequence {
 public:
  /// 1-based place of the key that comes next.
  int position() const { return position_; }
  void Reset() { position_ = 1; }
  /// Takes one character, in upper case. True when it completes the word; the sequence then
  /// stands behind its end until `Reset`. A wrong key resets it and does not count as a beginning.
  bool Take(char16_t character);

 private:
  int position_ = 1;
};

}  // namespace marl
