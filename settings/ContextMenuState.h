#pragma once

#include "platform/RegistryStore.h"

namespace marl {

/// True when the entry with this label is on the context menu of rich text files: below
/// HKEY_CLASSES_ROOT, the class of `.rtf` has a command for it. The label is the text of the
/// string table, so an entry added in another language counts as absent.
bool ContextMenuEnabled(RegistryStore& store, TextView label);

}  // namespace marl
