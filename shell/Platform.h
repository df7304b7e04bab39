#pragma once

#include "platform/ApplicationTitle.h"
#include "platform/Clock.h"
#include "platform/ColorDialog.h"
#include "platform/Components.h"
#include "platform/FileDialogs.h"
#include "platform/FileSystem.h"
#include "platform/FontList.h"
#include "platform/Icons.h"
#include "platform/Locale.h"
#include "platform/Pictures.h"
#include "platform/Process.h"
#include "platform/Profile.h"
#include "platform/RegistryStore.h"
#include "platform/SettingsStore.h"
#include "platform/Shell.h"
#include "platform/TipWindows.h"
#include "platform/Tray.h"
#include "platform/WindowHooks.h"
#include "platform/forms/Desktop.h"
#include "support/StringTable.h"

namespace marl {

/// All ports of the program: Windows, or a desktop in memory.
struct Platform {
  Desktop& desktop;
  FileSystem& files;
  SettingsStore& settings;
  Shell& shell;
  Process& process;
  Components& components;
  const StringTable& strings;
  const Locale& locales;
  Icons& icons;
  Pictures& pictures;
  RegistryStore& registry;
  WindowHooks& hooks;
  Tray& tray;
  TipWindows& tips;
  Profile& profile;
  FileDialogs& fileDialogs;
  ColorDialog& colorDialog;
  FontList& fontList;
  const Clock& clock;
};

}  // namespace marl
