#pragma once

#include "platform/Locale.h"
#include "platform/Pictures.h"
#include "platform/forms/Controls.h"
#include "platform/forms/Form.h"

namespace marl {

/// The picture on the screen while the program starts. It closes after start-up is complete, at the
/// end of its five seconds or at a click or key press.
class frmSplash : public Form {
 public:
  frmSplash(Desktop& desktop, Pictures& pictures, const Locale& locales);

  /// Resource id of the picture that fits the screen.
  static int PictureId(const Desktop& desktop);

  /// True once start-up is complete.
  bool CanDismiss() const { return canDismiss_; }
  /// Says whether start-up is complete. If it is and the time is up, the splash closes at once.
  void SetCanDismiss(bool canDismiss);

  /// "Version 2007 SP3 Build 7044", from the numbers of the program's version resource; without a
  /// service pack if there is none.
  static Text ResourceVersion(int major, int minor, int revision);
  /// The part of a version that is shown: from the first "S" or "(" on, or all of it if there is
  /// neither.
  static Text ShownVersion(TextView version);

  Image img2006{*this, "img2006"};
  Label lblVersion{*this, "lblVersion"};
  Timer tmrSplash{*this, "tmrSplash"};

 protected:
  void OnLoad() override;
  void OnClick() override;
  void OnKeyPress(char16_t character) override;
  void OnLookChanged() override { FitToPicture(); }

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
