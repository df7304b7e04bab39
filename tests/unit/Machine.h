#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/memory/MemoryClock.h"
#include "platform/memory/MemoryColorDialog.h"
#include "platform/memory/MemoryComponents.h"
#include "platform/memory/MemoryDesktop.h"
#include "platform/memory/MemoryFileDialogs.h"
#include "platform/memory/MemoryFileSystem.h"
#include "platform/memory/MemoryFontList.h"
#include "platform/memory/MemoryIcons.h"
#include "platform/memory/MemoryLocale.h"
#include "platform/memory/MemoryPictures.h"
#include "platform/memory/MemoryProfile.h"
#include "platform/memory/MemoryRegistryStore.h"
#include "platform/memory/MemorySettingsStore.h"
#include "platform/memory/MemoryShell.h"
#include "platform/memory/MemoryStrings.h"
#include "platform/memory/MemoryTipWindows.h"
#include "platform/memory/MemoryTray.h"
#include "platform/memory/MemoryWindowHooks.h"
#include "shell/Application.h"
#include "tests/unit/FaultyPorts.h"

namespace marl {

/// Everything that is stored on a machine: each setting, registry value and file by its place, with
/// its kind and bytes.
using StoredState = std::map<std::string, std::string>;

/// What stays when the program ends: files, settings, registry. The whole suite is installed, and
/// a project of each kind and a skin are there.
struct Machine {
  MemoryFileSystem files;
  MemorySettingsStore settings;
  MemoryRegistryStore registry;
  MemoryProfile profile{files};
  std::shared_ptr<MemorySession> session = std::make_shared<MemorySession>();

  /// The settings are those of a user who has worked before; with `firstUse`, there are none.
  explicit Machine(bool firstUse = false);
  Machine(const Machine&) = delete;
  Machine& operator=(const Machine&) = delete;

  StoredState Stored() const;

  static constexpr TextView kProject = u"C:\\P\\job.qprx";
  static constexpr TextView kOlderProject = u"C:\\P\\old.prj";
  static constexpr TextView kSkin = u"C:\\P\\some.qsk";
  static constexpr TextView kNewSkin = u"C:\\P\\new.qsk";
};

/// The program on a machine, from its start to its end, on ports that can fail.
class ProgramRun {
 public:
  explicit ProgramRun(Machine& machine);
  ~ProgramRun();
  ProgramRun(const ProgramRun&) = delete;
  ProgramRun& operator=(const ProgramRun&) = delete;

  Faults faults;
  FaultyDesktop desktop{faults};
  MemoryShell shell;
  MemoryProcess process;
  MemoryComponents components;
  MemoryStrings resource;
  MemoryLocale locales;
  MemoryIcons icons;
  MemoryPictures pictures;
  MemoryWindowHooks hooks;
  MemoryTray tray;
  MemoryTipWindows tips;
  MemoryFileDialogs fileDialogs;
  MemoryColorDialog colorDialog;
  MemoryFontList fontList;
  MemoryClock clock;

  /// What the user does in a dialog, by its name. Without an entry, the dialog is closed.
  std::map<std::string, std::function<void(Form&)>> inDialog;
  bool answersYes = false;  ///< to every question
  /// Called when calls begin to be counted.
  std::function<void()> whenCounting;

  /// Starts the program. It has then ended, or waits for the user.
  void Start();
  /// One act of the user. Nothing happens once the program has ended.
  template <typename Body>
  void Act(Body&& body) {
    if (desktop.ended()) return;
    const AllocationsWatched watched(true);
    desktop.Event(body);
  }
  /// Exits by closing the main window.
  void Leave();

  Machine& machine() { return machine_; }
  bool started() const { return application_ != nullptr; }
  /// True if start-up has been completed, now or before the program ended.
  bool cameUp() const { return cameUp_; }
  bool up() const { return application_ && !desktop.ended() && !desktop.forms().empty(); }
  frmMain& main() { return application_->mainForm(); }
  /// Destroys the program with all its forms.
  void Discard() { application_.reset(); }

  /// What is still held: keys, files, libraries, components, tips, menus, forms, hooks. Empty if
  /// nothing is.
  std::string Held() const;

 private:
  Machine& machine_;
  FaultyFiles files_;
  FaultySettings settings_;
  FaultyRegistry registry_;
  FaultyProfile profile_;
  FaultyShell shell_{shell, faults};
  FaultyProcess process_{process, faults};
  FaultyComponents components_{components, faults};
  FaultyStrings resource_{resource, faults};
  StringTable strings_{resource_};
  FaultyLocale locales_{locales, faults};
  FaultyIcons icons_{icons, faults};
  FaultyPictures pictures_{pictures, faults};
  FaultyHooks hooks_{hooks, faults};
  FaultyTray tray_{tray, faults};
  FaultyTips tips_{tips, faults};
  FaultyFileDialogs fileDialogs_{fileDialogs, faults};
  FaultyColorDialog colorDialog_{colorDialog, faults};
  FaultyFontList fontList_{fontList, faults};
  std::unique_ptr<Application> application_;
  bool cameUp_ = false;
};

}  // namespace marl
