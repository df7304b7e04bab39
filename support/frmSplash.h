#pragma once

#include "platform/Locale.h"
#include "platform/Pictures.h"
#include "platform/forms/Controls.h"
#include "platform/forms/Form.h"

namespace marl {

/// The picture that stands on the screen while the program starts. It stands until start-up is
/// done, and then to the end of its five seconds, or to the first click or key press.
class frmSplash : public Form {
 public:
  frmSplash(Desktop& desktop, Pictures& pictures, const Locale& locales);

  /// Number of the picture that fits the screen.
  static int PictureId(const Desktop& desktop);

  /// True once start-up is done.
  bool CanDismiss() const { return canDismiss_; }
  /// Start-up is done, or not. A splash whose time has run out goes at once when it may.
  void SetCanDismiss(bool canDismiss);

  /// "Version 2007 SP3 Build 7044", from the numbers of the program's version resource; without a
  /// service pack when there is none.
  static Text ResourceVersion(int major, int minor, int revision);
  /// What of a version is shown: from the first "S" or "(" on, or all of it without either.
  static Text ShownVersion(TextView version);

  Image img2006{*this, "img2006"};
  Label lblVersion{*this, "lblVersion"};
  Timer tmrSplash{*this, "tmrSplash"};

 protected:
  void OnLoad() override;
  void OnClick() override;
  void OnKeyPress(char16_t character) override;

 private:
  void Dismiss();
  void TimeIsUp();
  void FitToPicture();

  Pictures& pictures_;
  const Locale& locales_;
  bool canDismiss_ = false;
  bool timerExpired_ = false;
};

}  // namespace marl
