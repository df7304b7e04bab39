#pragma once

#include "platform/RegistryStore.h"

namespace marl {

/// True if the entry with this label is on the context menu of rich text files: the class of `.rtf`
/// below HKEY_CLASSES_ROOT has a command for it. The label is translated, so an entry added in
/// another language counts as absent.
bool ContextMenuEnabled(RegistryStore& store, TextView label);

}  // namespace marl
