#pragma once

#include "platform/Locale.h"
#include "platform/RegistryStore.h"
#include "platform/forms/Form.h"
#include "support/StringTable.h"

namespace marl {

/// The ports of a dialog that edits registry values.
struct SettingsDialogPorts {
  Desktop& desktop;
  RegistryStore& registry;
  const Locale& locale;
  const StringTable& strings;
};

}  // namespace marl
