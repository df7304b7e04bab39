#pragma once

#include <cstdint>

#include "appearance/SkinSettings.h"
#include "documents/modUTF8.h"
#include "platform/FileSystem.h"
#include "platform/Text.h"
#include "support/Numbers.h"

namespace marl {

/// Receives the parameters of a skin. To refuse a value it throws a `RuntimeError`, which is
/// dropped: the target keeps its state, and the other parameters are still read.
class SkinTarget {
 public:
  virtual ~SkinTarget() = default;
  virtual void SetNumber(std::int32_t SkinSettings::*field, std::int32_t number) = 0;
  virtual void SetText(Text SkinSettings::*field, TextView text) = 0;
};

/// The folder of the skins below the program's folder. Created if it is missing; failures are not
/// reported.
Text PrepareSkinFolder(FileSystem& files, TextView applicationFolder);

/// Reads a skin file and passes its parameters to the target, in the order of the file. Anything
/// invalid is skipped silently: other tags, unknown names, numbers in place of texts and the
/// reverse, numbers beyond 32 bits. The root element may have any name. False if the file cannot be
/// opened.
bool LoadSkinFile(const FileSystem& files, TextView path, SkinTarget& target,
                  const NumberFormat& format = {});

/// Writes the skin to a file, replacing an existing one. Failures are not reported.
void SaveSkinFile(modUTF8& writer, TextView path, const SkinSettings& skin);

}  // namespace marl
