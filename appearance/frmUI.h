#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <memory>

#include "appearance/GradientRect.h"
#include "appearance/IconSets.h"
#include "appearance/PanelLayout.h"
#include "appearance/SkinFile.h"
#include "appearance/SkinSettings.h"
#include "appearance/frmFont.h"
#include "platform/ColorDialog.h"
#include "platform/FileDialogs.h"
#include "platform/FileSystem.h"
#include "platform/FontList.h"
#include "platform/Locale.h"
#include "platform/Pictures.h"
#include "platform/RegistryStore.h"
#include "platform/forms/Controls.h"
#include "platform/forms/Desktop.h"
#include "platform/forms/Form.h"
#include "support/Numbers.h"
#include "support/StringTable.h"

namespace marl {

/// Display settings: edits the look of the switchboard on a sample. The dialog shows the stored
/// values and changes nothing but its own controls; OK writes the registry. It stays loaded when it
/// is closed: the caller reads `Cancelled`, applies the skin, and unloads it.
class frmUI : public Form, private SkinTarget, private SampleForm {
 public:
  struct Ports {
    Desktop& desktop;
    RegistryStore& registry;
    FileSystem& files;
    FileDialogs& fileDialogs;
    ColorDialog& colorDialog;
    FontList& fontList;
    Pictures& pictures;
    const Locale& locale;
    const StringTable& strings;
    /// Gives a window the program's icon.
    std::function<void(WindowHandle window)> setIcon;
  };
  /// What the dialog needs from the main form.
  struct Switchboard {
    SkinSettings skin;  ///< the panel's present look, used where the registry has no value
    std::array<Text, kButtonCount> captions;  ///< of the buttons, by their index
    Text applicationFolder;
  };
  frmUI(Ports ports, Switchboard switchboard);

  /// True if the dialog was closed with its Cancel button.
  bool Cancelled = false;

  Frame fraGradient{*this, "fraGradient"};
  Label lblAngle{*this, "lblAngle", -1, &fraGradient};
  HScrollBar hsbAngle{*this, "hsbAngle", -1, &fraGradient};
  Label lblAngleValue{*this, "lblAngleValue", -1, &fraGradient};

  Frame fraText{*this, "fraText"};
  PictureBox picContainer{*this, "picContainer", 2, &fraText};
  /// The sample's normal and highlighted picture in the chosen set.
  std::array<Image, 2> imgSample{
      {Image{*this, "imgSample", 0, &picContainer}, Image{*this, "imgSample", 1, &picContainer}}};
  std::array<Label, 2> lblSample{
      {Label{*this, "lblSample", 0, &picContainer}, Label{*this, "lblSample", 1, &picContainer}}};
  /// Opens from the keyboard what a click on a sample opens.
  std::array<CommandButton, 2> cmdSample{{CommandButton{*this, "cmdSample", 0, &fraText},
                                          CommandButton{*this, "cmdSample", 1, &fraText}}};

  Frame fraBorder{*this, "fraBorder"};
  CheckBox chkThickBorder{*this, "chkThickBorder", -1, &fraBorder};

  Frame fraIcons{*this, "fraIcons"};
  ListBox lstIcons{*this, "lstIcons", -1, &fraIcons};
  std::array<CommandButton, 2> cmdMove{{CommandButton{*this, "cmdMove", 0, &fraIcons},
                                        CommandButton{*this, "cmdMove", 1, &fraIcons}}};
  ComboBox cmbIcons{*this, "cmbIcons", -1, &fraIcons};
  CheckBox chkUseTwoState{*this, "chkUseTwoState", -1, &fraIcons};
  Label lblIconsPerRow{*this, "lblIconsPerRow", -1, &fraIcons};
  ComboBox cmbIconsPerRow{*this, "cmbIconsPerRow", -1, &fraIcons};

  CommandButton cmdLoad{*this, "cmdLoad"};
  CommandButton cmdSave{*this, "cmdSave"};
  CommandButton cmdDefault{*this, "cmdDefault"};
  /// Names the samples whose text is hard to read on the gradient of the panel; empty if none is.
  Label lblContrast{*this, "lblContrast"};
  std::array<CommandButton, 2> cmdDismiss{
      {CommandButton{*this, "cmdDismiss", 0}, CommandButton{*this, "cmdDismiss", 1}}};

  /// Swatches: 0 and 1 are the gradient's colours, 4 and 5 the bevel's. There are no others.
  Shape& shpColor(int index) { return swatches_[PlaceOf(index)]; }
  const Shape& shpColor(int index) const { return swatches_[PlaceOf(index)]; }
  /// The button beside a swatch.
  CommandButton& cmdSetColor(int index) { return setters_[PlaceOf(index)]; }

  /// Fills the list from a display order's text. If the panel could not use it, the list stays as
  /// it is and this throws: "Subscript out of range" for fewer than `kStoredPositions` entries or a
  /// button that does not exist, "Type mismatch" or "Overflow" for a part that is no number,
  /// "Overflow" for more than 1000 entries.
  void SetDisplayIcons(TextView text);
  /// The list as a display order's text, in its normal form.
  Text GetDisplayIcons() const;
  /// Draws the sample's gradient.
  void RefreshSample();

 protected:
  void OnLoad() override;
  void OnLookChanged() override;

 private:
  /// A row of the list that is being dragged.
  struct Row {
    Text text;
    int position = -1;
    int data = 0;
    bool ticked = false;
  };

  /// How the controls show a parameter. A control that refuses a value throws and keeps its old
  /// one.
  struct NumberControl {
    std::int32_t SkinSettings::*field;
    std::int32_t (*get)(const frmUI& form);
    void (*set)(frmUI& form, std::int32_t number);
  };
  struct TextControl {
    Text SkinSettings::*field;
    Text (*get)(const frmUI& form);
    void (*set)(frmUI& form, TextView text);
  };
  static const NumberControl kNumberControls[];
  static const TextControl kTextControls[];

  static constexpr std::size_t PlaceOf(int index) {
    return static_cast<std::size_t>(index < 2 ? index : index - 2);
  }

  void Arrange();
  void Wire();
  void Localise();
  Text ColorText(Color color) const;
  void ShowSkin(const SkinSettings& skin);
  SkinSettings Skin() const;
  void SetNumber(std::int32_t SkinSettings::*field, std::int32_t number) override;
  void SetText(Text SkinSettings::*field, TextView text) override;
  Label& Sample(int index) override { return lblSample[static_cast<std::size_t>(index)]; }
  Color GradientColor(int index) const override { return shpColor(index).FillColor(); }
  int GradientAngle() const override { return hsbAngle.Value(); }

  Text SampleText(std::size_t index) const;
  void ShowContrast();
  void ShowPictures();
  void AngleChanged();
  void PickColor(int index);
  void EditSample(int index);
  void SetDefaults();
  void MoveRow(int direction);
  Row SelectedRow() const;
  void InsertRow(const Row& row, int position);
  void Drag();
  FileDialogSettings SkinDialog(int flags);
  void LoadSkin();
  void SaveSkin();
  void Dismiss(int index);

  Ports ports_;
  Switchboard switchboard_;
  NumberFormat numbers_;  ///< the user's format
  IconSets icons_{ports_.pictures};
  std::unique_ptr<clsGradient> gradient_;  ///< created at first use
  GradientPicture sample_;
  int arranging_ = 0;  ///< above 0 while several controls change together
  bool dragging_ = false;
  Row dragged_;
  std::array<Shape, 4> swatches_{
      {Shape{*this, "shpColor", 0, &fraGradient}, Shape{*this, "shpColor", 1, &fraGradient},
       Shape{*this, "shpColor", 4, &fraBorder}, Shape{*this, "shpColor", 5, &fraBorder}}};
  std::array<CommandButton, 4> setters_{{CommandButton{*this, "cmdSetColor", 0, &fraGradient},
                                         CommandButton{*this, "cmdSetColor", 1, &fraGradient},
                                         CommandButton{*this, "cmdSetColor", 4, &fraBorder},
                                         CommandButton{*this, "cmdSetColor", 5, &fraBorder}}};
};

}  // namespace marl
