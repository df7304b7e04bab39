#include "shell/frmMain.h"

#include "network/frmLanSettings.h"
#include "settings/ContextMenuState.h"
#include "settings/cRegistry.h"
#include "settings/frmOptions.h"
#include "settings/frmSegmentation.h"
#include "support/Numbers.h"
#include "support/StartCommand.h"
#include "support/modI18N.h"

// The options: most of them are stored for the suite's other programs, which read the same keys.

namespace marl {

namespace {

constexpr TextView kBenchKey = u"Software\\Oru\\Oru Bench\\Settings";
constexpr TextView kMarlKey = u"Software\\Oru\\Marl";
constexpr TextView kSegmentation = u"Marl.SegmentationComponent";

/// The nine boxes, by their index in the dialog.
enum Option : std::size_t {
  kTooltips,
  kTools,
  kUseAltWordCounts,
  kContextMenu,
  kWizard,
  kHideNumberSegs,
  kXPlacement,
  kShowBulletsNumbers,
  kShowBulletsBullets,
};

constexpr std::int32_t kNumbersShown = 1;  // bits of `ShowBullets`
constexpr std::int32_t kBulletsShown = 2;

/// Reads a number. Throws as `RegistryNumber` does.
std::int32_t ReadNumber(cRegistry& registry, TextView section, TextView name, std::int32_t fallback,
                        const NumberFormat& format) {
  registry.SectionKey = section;
  registry.ValueKey = name;
  registry.Default = fallback;
  return RegistryNumber(registry.Value(), format);
}

/// Writes with the kind that the last read has set in `valueType`.
void Write(cRegistry& registry, TextView section, TextView name, const RegistryValue& value) {
  registry.SectionKey = section;
  registry.ValueKey = name;
  registry.Value(value);
}

std::int16_t OneOrZero(bool one) { return static_cast<std::int16_t>(one ? 1 : 0); }

}  // namespace

void frmMain::mnuToolsOptions() {
  const bool contextMenu =
      ContextMenuEnabled(platform_.registry, platform_.strings.Get(IDS_CONTEXT_MENU_ENTRY));
  cRegistry registry(platform_.registry);
  registry.ClassKey = kCurrentUser;
  registry.valueType = kRegDword;
  const auto read = [&](TextView section, TextView name, std::int32_t fallback) {
    return ReadNumber(registry, section, name, fallback, UserNumberFormat(platform_.locales));
  };
  const std::int32_t wordCounts = read(kBenchKey, u"UseAltWordCounts", 0);
  const std::int32_t numberSegs = read(kBenchKey, u"HideNumberSegs", 0);
  const std::int32_t placement = read(kMarlKey, u"XPlacement", 1);
  const std::int32_t bullets = read(kMarlKey, u"ShowBullets", 0);

  frmOptions options({desktop(), platform_.registry, platform_.locales, platform_.strings},
                     {[this](Form& owner) { ShowDisplaySettings(owner); },
                      [this](Form& owner) { ShowLanSettings(owner); },
                      [this](Form& owner) { ShowSegmentationRules(owner); }},
                     *this);
  options.Load();
  const auto check = [&](Option option, bool checked) {
    options.chkOptions[option].SetValue(checked ? 1 : 0);
  };
  check(kTooltips, TooltipsEnabled);
  check(kTools, ToolsMenuVisible);
  check(kUseAltWordCounts, wordCounts != 0);
  check(kContextMenu, contextMenu);
  check(kWizard, Setting(u"Wizard", u"Y") == u"Y");
  check(kHideNumberSegs, numberSegs != 0);
  check(kXPlacement, placement == 0);
  check(kShowBulletsNumbers, (bullets & kNumbersShown) == 0);
  check(kShowBulletsBullets, (bullets & kBulletsShown) == 0);

  options.ShowModal(this);
  if (options.Accepted) {
    const auto checked = [&](Option option) { return options.chkOptions[option].Value() != 0; };
    TooltipsEnabled = checked(kTooltips);
    ToolsMenuVisible = checked(kTools);
    Write(registry, kBenchKey, u"UseAltWordCounts", OneOrZero(checked(kUseAltWordCounts)));
    Write(registry, kBenchKey, u"HideNumberSegs", OneOrZero(checked(kHideNumberSegs)));
    Write(registry, kMarlKey, u"XPlacement", OneOrZero(!checked(kXPlacement)));
    Write(registry, kMarlKey, u"ShowBullets",
          (checked(kShowBulletsNumbers) ? 0 : kNumbersShown) +
              (checked(kShowBulletsBullets) ? 0 : kBulletsShown));
    if (checked(kContextMenu) != contextMenu) ToggleContextMenu(contextMenu);
    Save(u"Wizard", checked(kWizard) ? u"Y" : u"N");
    ApplyToolsMenu();
  }
  options.Unload();
}

// Another program of the suite does the work; the options show the effect when they are opened
// again.
void frmMain::ToggleContextMenu(bool enabled) {
  const Text command = JoinPath(ProgramFolder(), u"Q17Shell.exe") + (enabled ? u" /U" : u" /R");
  if (!StartCommand(platform_.shell, platform_.files, command, kShowMinimised)) {
    throw RuntimeError(53, u"File not found");
  }
}

void frmMain::ShowLanSettings(Form& owner) {
  frmLanSettings dialog({desktop(), platform_.registry, platform_.locales, platform_.strings});
  dialog.ShowModal(&owner);
}

void frmMain::ShowSegmentationRules(Form& owner) {
  Text failure;
  if (const auto component = platform_.components.Create(kSegmentation, failure)) {
    std::vector<ComponentValue> arguments;
    ComponentValue dropped;
    if (!component->Call(u"Run", arguments, dropped, failure)) throw RuntimeError(440, failure);
    return;
  }
  if (!failure.empty()) throw RuntimeError(429, failure);
  frmSegmentation dialog({desktop(), platform_.registry, platform_.locales, platform_.strings});
  dialog.ShowModal(&owner);
}

}  // namespace marl
