#pragma once

#include <memory>

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

namespace marl {

/// A whole machine in memory for the program to run on: a user who has answered the first-run
/// questions, and the icon library in the program's folder.
struct World {
  MemoryDesktop desktop;
  MemoryFileSystem files;
  MemorySettingsStore settings;
  MemoryShell shell;
  MemoryProcess process;
  MemoryComponents components;
  MemoryStrings resource;
  StringTable strings{resource};
  MemoryLocale locales;
  MemoryIcons icons;
  MemoryPictures pictures;
  MemoryRegistryStore registry;
  MemoryWindowHooks hooks;
  MemoryTray tray;
  MemoryTipWindows tips;
  MemoryProfile profile{files};
  MemoryFileDialogs fileDialogs;
  MemoryColorDialog colorDialog;
  MemoryFontList fontList;
  MemoryClock clock;
  RegistryStore* otherRegistry = nullptr;  ///< given to the program instead of `registry`
  std::unique_ptr<Application> application;

  World();
  ~World();

  Platform platform();

  /// Runs the program until it is idle or has ended. Returns its exit code.
  int Start();
  frmMain& main() { return application->mainForm(); }
};

}  // namespace marl
