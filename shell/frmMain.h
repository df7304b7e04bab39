#pragma once

#include <array>
#include <memory>

#include "appearance/GradientRect.h"
#include "appearance/IconSets.h"
#include "appearance/PanelColors.h"
#include "appearance/PanelFocus.h"
#include "appearance/SkinSettings.h"
#include "appearance/clsTooltip.h"
#include "appearance/modSetIcon.h"
#include "documents/modFindFiles.h"
#include "network/TrackingServer.h"
#include "platform/forms/Controls.h"
#include "platform/forms/Form.h"
#include "shell/FileDialog.h"
#include "shell/Launcher.h"
#include "shell/Platform.h"
#include "shell/SuiteComponents.h"
#include "shell/SwitchboardModel.h"
#include "shell/modMarl.h"
#include "support/Numbers.h"
#include "support/clsCommon.h"
#include "support/clsLanguages.h"
#include "support/frmSplash.h"
#include "support/modLogging.h"

namespace marl {

/// Behind the panel until its gradient is painted.
inline constexpr Color kPanelBackground = Rgb(0, 77, 57);

/// The switchboard: a panel of 18 large buttons that start the tools of the suite.
///
/// frmMain_Load.cpp has start-up and shutdown, frmMain_Commands.cpp what buttons and menu items do.
class frmMain : public Form, public HookedForm {
 public:
  /// `debugLog`: write the debug log.
  explicit frmMain(Platform& platform, bool debugLog = kDebugLog);

  // State of the main form.
  int ClientHeight = 0;           ///< inner height to keep, in twips
  bool TrayReady = false;         ///< the message hook is in place
  bool TooltipsEnabled = true;    ///< setting `Tooltips`
  bool ToolsMenuVisible = false;  ///< setting `Tools`
  Text HelpFile;                  ///< the application's help file
  Text ApplicationFolder;         ///< folder of the program and of all tools
  Text BrowserPath;               ///< program that opens .html files, or empty
  int IconsPerRow = 0;            ///< columns of the panel
  HiddenKeySequence HiddenKeys;   ///< how far "SETGUI" has been typed
  int HoverButton = -1;           ///< button under the mouse, or -1
  int FocusButton = -1;           ///< button that the keyboard has chosen, or -1
  SkinSettings Skin;              ///< the look, as the last `SetUI` read it
  std::array<Text, kButtonCount> TooltipTexts;
  std::array<std::unique_ptr<clsTooltip>, kButtonCount> TooltipObjects;

  // The controls of a button have its index.
  std::array<std::unique_ptr<Shape>, kButtonCount> shpRun;
  std::array<std::unique_ptr<Image>, kButtonCount> imgRun;
  std::array<std::unique_ptr<Label>, kButtonCount> lblRun;
  std::array<std::unique_ptr<Line>, 12> linRun;  ///< the first eight are the bevel
  std::unique_ptr<Image> imgFocus;               ///< the ring around `FocusButton`
  StatusBar stbMain{*this, "stbMain"};
  Timer tmrOver{*this, "tmrOver"};
  Timer tmrTray{*this, "tmrTray"};  ///< runs while the shell refuses the icon
  Menu mnuPopup{*this, "mnuPopup"};
  std::array<std::unique_ptr<Menu>, kButtonCount> mnuMarl;
  FileDialog dlgOpen;                 ///< its file name is the current project file
  std::unique_ptr<frmSplash> splash;  ///< shown while the program starts

  /// Reads the skin and lays out the panel: buttons, size of the form, gradient, tips. Throws if
  /// the skin cannot be used.
  void SetUI();
  /// Repaints picture and label of every button, in button order.
  void RefreshButtons() override;
  /// Runs the resize handler.
  void Resized() override;
  /// Hides the minimised form if its icon is in the notification area, and shows it on the taskbar
  /// if it is not; the icon is then tried again.
  void TrayIconChanged() override;
  /// Restores the window from the notification area: normal state, visible, in front.
  void RestoreWindow() override;
  /// Shows the menu of all buttons at the mouse. Throws if start-up has not created it yet.
  void SystrayMenu() override;
  WindowHandle HookedWindow() const override { return hWnd(); }
  /// Recreates the balloon tips of all visible buttons; removes them if `TooltipsEnabled` is off.
  void BindTooltips();
  /// Presses a button, whether by its image, its label, its frame or the tray menu.
  void Press(int index);
  /// Tag of the current tracking server, or empty.
  const Text& CurrentServerTag() const { return servers_.CurrentServerTag; }

  // Entries of the menu bar.
  void mnuProjectNew();
  void mnuProjectOpen();
  void mnuProjectSave();
  void mnuProjectClean();
  void mnuProjectAnalyse();
  void mnuProjectPTM();
  void mnuProjectChangeServer();
  void mnuProjectTrackProjects();
  void mnuProjectExit();
  void mnuTMImport();
  void mnuTMExport();
  void mnuTranslateBatch();
  void mnuTranslateProject();
  void mnuTranslateSingle();
  void mnuTranslateClipboard();
  void mnuTranslateReplace();
  void mnuAlignNew();
  void mnuAlignOpen();
  void mnuGlossaryMaintain();
  void mnuQACheck();
  void mnuToolsApp(int index);
  void mnuToolsQACheck();
  void mnuToolsCommentReport();
  void mnuToolsOptions();
  void mnuHelpContents();
  void mnuHelpTutorial();
  void mnuHelpAbout();

  /// Shows or hides the programs in the Tools menu, by `ToolsMenuVisible`.
  void ApplyToolsMenu();

 protected:
  void OnLoad() override;
  void OnActivate() override;
  void OnDeactivate() override;
  void OnFocusCues() override;
  void OnResize() override;
  void OnLookChanged() override;
  void OnClick() override;
  void OnKeyPress(char16_t character) override;
  bool OnKeyDown(int key, int state) override;
  /// The visible buttons, in their order on the panel.
  std::vector<AccessiblePart> PartsIn(const Control* container) const override;
  void OnFocusPart(const Control& control) override;
  void OnMouseMove(int button, int shift, float x, float y) override;
  void OnUnload() override;
  void OnEnded() override;
  bool OnExecute(TextView command) override;

 private:
  // Load, step by step.
  void RunRegistrar();
  void EndIfSecondInstance();
  void AskFirstRunQuestions();
  void RedirectToWizard();
  void RemoveTemporaryFiles();
  void SetCaptions();
  void PrepareStrips();
  void PrepareButtons();
  void RestorePosition();
  void RestoreFlags();
  void ProbeBrowser();
  void ShowSplash();
  void WaitForSplash();
  void MarkMissingTools();

  /// What the panel is painted with: the skin, or the system's colours.
  PanelColors Colors() const;
  void PaintGradient();
  /// Gives each label a colour for when it is disabled, which is readable on what is behind it.
  void GreyLabels();
  /// True for a button that is there and whose tool is not missing.
  bool IsAlive(int index) const;
  void Dress(int index, bool highlighted);
  void HighlightButton(int index, bool show);
  void tmrOver_Tick();

  HitAreas Areas() const;
  void AnnounceButton(Announcement what, int button);
  void AnnounceFocus();
  void FocusOn(int button);
  /// Shows the ring around the button with the focus, or hides it.
  void ShowRing();
  Picture Ring(const PixelRect& frame, int thickness) const;
  /// Shows the long text of the button that the keyboard, or else the mouse, has chosen.
  void ShowStatus();
  /// The mouse has moved since the keyboard was used, and is over a button.
  bool MouseTakesOver(int hit);
  void tmrTray_Tick();

  void ShowServer(TextView name);
  void EnableTracking(bool enabled);

  void EnterTray();
  void FillPopup();
  /// The pictures for the tray menu at the form's resolution: an id.
  int PopupPictures() const;
  /// Width of a picture of the panel, in pixels.
  int PictureSize() const;
  void CreateTooltips();
  void DesignMenuBar();
  void SetMenuCaptions();

  Text ProjectFile();
  const clsLanguages& Languages();

  /// Shows the display settings modally above `owner` and applies them unless cancelled.
  void ShowDisplaySettings(Form& owner);
  void ToggleContextMenu(bool enabled);
  void ShowLanSettings(Form& owner);
  void ShowSegmentationRules(Form& owner);

  void SaveSettings();
  bool Ask(int question) const;
  Text Setting(TextView key, TextView default_) const;
  void Save(TextView key, TextView value);
  void RunTool(TextView program, TextView arguments = {});
  /// Opens a document or an address: passes `argument` to the browser found at start-up, or without
  /// one `document` to the shell.
  void Browse(TextView document, TextView argument) const;
  void RunQaCheck(int kind);
  Text ProgramFolder() const;
  Text ProgramName() const;

  Platform& platform_;
  Launcher launcher_{platform_};
  clsCommon common_{{platform_.desktop, platform_.files, platform_.profile, platform_.registry,
                     platform_.process, platform_.shell, platform_.strings}};
  modFindFiles search_{platform_.files, platform_.clock, [this] { platform_.desktop.DoEvents(); }};
  std::unique_ptr<clsLanguages> languages_;  ///< created at first use
  SuiteComponents components_{platform_};
  NumberFormat numbers_;  ///< the user's format, as the last `SetUI` read it
  IconSets iconSets_{platform_.pictures};
  std::unique_ptr<clsGradient> gradient_;
  GradientPicture panel_;
  modSetIcon icons_{platform_.icons, platform_.process};
  /// Sets the program's icons on another form's window.
  const std::function<void(WindowHandle)> setIcon_ = [this](WindowHandle window) {
    icons_.SetFormIcon(window, kMarlIcon, false);
  };
  TrackingServer servers_{{platform_.desktop, platform_.registry, platform_.components,
                           platform_.files, platform_.strings, platform_.locales},
                          {[this](TextView name) { ShowServer(name); },
                           [this](bool enabled) { EnableTracking(enabled); }}};
  modMarl hook_{platform_.hooks, platform_.tray, *this};
  std::unique_ptr<PopupMenu> m_cPopupMenu;
  int popupPictures_ = 0;    ///< id of the pictures in it
  bool popupInUse_ = false;  ///< it is shown, or its chosen item is being handled
  std::vector<std::unique_ptr<Menu>> menuBar_;  ///< in the order of the design
  modLogging log_;
  bool active_ = false;         ///< the form is the active window
  bool keyboardLeads_ = false;  ///< the keyboard was used after the mouse; there is a focus then
  Point restingMouse_;          ///< on the screen, when the keyboard was used last
  bool settingsRead_ = false;   ///< the settings that the exit sequence saves have been read
  bool started_ = false;        ///< start-up is complete
  bool QaBusy = false;
  bool CommentReportBusy = false;
};

}  // namespace marl
