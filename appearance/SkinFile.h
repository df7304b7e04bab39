#pragma once

#include <cstdint>

#include "appearance/SkinSettings.h"
#include "documents/modUTF8.h"
#include "platform/FileSystem.h"
#include "platform/Text.h"
#include "support/Numbers.h"

namespace marl {

/// What a skin is loaded into. A `RuntimeError` refuses one value and is dropped: the target keeps
/// its state, the other parameters are still read.
class SkinTarget {
 public:
  virtual ~SkinTarget() = default;
  virtual void SetNumber(std::int32_t SkinSettings::*field, std::int32_t number) = 0;
  virtual void SetText(Text SkinSettings::*field, TextView text) = 0;
};

/// The folder of the skins below the program's folder. Makes it when it is missing; failing that
/// is not reported.
Text PrepareSkinFolder(FileSystem& files, TextView applicationFolder);

/// Reads a skin file and hands its parameters to the target, one by one as they stand in it. What
/// the file does not say rightly is passed over without a word: other tags, unknown names, numbers
/// for texts and texts for numbers, numbers beyond 32 bits. The root element may have any name.
/// False when the file cannot be opened.
bool LoadSkinFile(const FileSystem& files, TextView path, SkinTarget& target,
                  const NumberFormat& format = {});

/// Writes the skin as it is into a file, in place of one that was there. Failures are not reported.
void SaveSkinFile(modUTF8& writer, TextView path, const SkinSettings& skin);

}  // namespace marl
