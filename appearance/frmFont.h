#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>

#include "appearance/GradientRect.h"
#include "platform/ColorDialog.h"
#include "platform/FontList.h"
#include "platform/Locale.h"
#include "platform/forms/Controls.h"
#include "platform/forms/Form.h"
#include "support/Numbers.h"
#include "support/StringTable.h"

namespace marl {

/// What `frmFont` needs of the form whose sample labels it edits.
class SampleForm {
 public:
  /// `lblSample(index)`: 0 is the normal label, 1 the highlighted one.
  virtual Label& Sample(int index) = 0;
  /// Fill colour of `shpColor(index)`: 0 and 1 are the colours of the gradient.
  virtual Color GradientColor(int index) const = 0;
  /// `hsbAngle`, in degrees.
  virtual int GradientAngle() const = 0;

 protected:
  ~SampleForm() = default;
};

/// Edits font and colour of one sample label, with a sample of its own on the real gradient. The
/// caller sets `SampleIndex`, calls `SetInitialFont` and shows the form modally; `cmdDismiss(0)`
/// copies the result to the label.
class frmFont : public Form {
 public:
  struct Ports {
    Desktop& desktop;
    const Locale& locale;
    const StringTable& strings;
    ColorDialog& colorDialog;
    FontList& fontList;
  };
  frmFont(const Ports& ports, SampleForm& samples);

  PictureBox picGrad{*this, "picGrad"};
  Label lblSample{*this, "lblSample", -1, &picGrad};
  ComboBox cmbFont{*this, "cmbFont"};
  Label lblSize{*this, "lblSize"};
  TextBox txtSize{*this, "txtSize"};
  ComboBox cmbSize{*this, "cmbSize"};
  std::array<std::unique_ptr<CheckBox>, 3> chkStyle;  ///< bold, italic, underline
  CommandButton cmdSetColor{*this, "cmdSetColor"};
  std::array<std::unique_ptr<CommandButton>, 2> cmdDismiss;

  std::int16_t SampleIndex = 0;
  /// Loads the form and takes font, colour and gradient from the label `SampleIndex` and its form.
  void SetInitialFont();

 protected:
  void OnLoad() override;
  void OnActivate() override;
  void OnLookChanged() override { DrawGradient(); }

 private:
  void SyncStyleControls();
  void StyleClicked();
  void FontChosen();
  void SizeChosen();
  void SizeChanged();
  void SetColorClicked();
  void Dismissed(int index);
  void SetSampleFont(const marl::Font& font);
  void CentreSample();
  void DrawGradient();

  Ports ports_;
  SampleForm& samples_;
  NumberFormat numbers_;
  bool beginAtSize_ = false;  ///< the focus starts in the size field
  std::optional<clsGradient> gradient_;
  GradientPicture picture_;
};

}  // namespace marl
