#pragma once

#include "platform/Locale.h"
#include "platform/RegistryStore.h"
#include "platform/forms/Form.h"
#include "support/StringTable.h"

namespace marl {

/// What a dialog needs that shows values of the registry and stores them.
struct SettingsDialogPorts {
  Desktop& desktop;
  RegistryStore& registry;
  const Locale& locale;
  const StringTable& strings;
};

}  // namespace marl
