#pragma once

#include "platform/memory/MemoryClock.h"
#include "platform/memory/MemoryDesktop.h"
#include "platform/memory/MemoryFileSystem.h"
#include "platform/memory/MemoryLocale.h"
#include "platform/memory/MemoryProfile.h"
#include "platform/memory/MemoryRegistryStore.h"
#include "platform/memory/MemoryShell.h"
#include "platform/memory/MemoryStrings.h"
#include "support/clsCommon.h"

namespace marl {

/// The ports that the project commands need.
struct ProjectWorld {
  MemoryDesktop desktop;
  MemoryFileSystem files;
  MemoryProfile profile{files};
  MemoryRegistryStore registry;
  MemoryProcess process;
  MemoryShell shell;
  MemoryStrings resource;
  StringTable strings{resource};
  MemoryLocale locale;
  MemoryClock clock;
  clsCommon common{{desktop, files, profile, registry, process, shell, strings}};

  using Messages = std::vector<MemoryDesktop::Message>;
  static Messages Says(TextView text, int flags = kExclamation) {
    return {{Text(text), flags, u"Marl"}};
  }
};

}  // namespace marl
