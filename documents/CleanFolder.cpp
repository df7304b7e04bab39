#include "documents/CleanFolder.h"

#include <cstdint>
#include <limits>
#include <vector>

#include "platform/ApplicationTitle.h"
#include "platform/FoldCase.h"
#include "platform/RuntimeError.h"

namespace marl {

namespace {

constexpr TextView kWorkingFiles = u"*.qtd|*.obj|*.mif|*.fmp|";

}  // namespace

bool CleanFolder::IsWorkingFile(TextView path) {
  if (FoldCase(clsCommon::strParseFileName(path, 2)) != u"MIF") return true;
  const Text name = FoldCase(clsCommon::strParseFileName(path, 1));
  return name == u"MARL_IX" || name == u"MARL_XR" || name == u"MARL_VA";
}

void CleanFolder::Run(TextView projectFile) const {
  const auto say = [this](int message, int flags) {
    return ports_.desktop.MsgBox(ports_.strings.Get(message), flags, kApplicationTitle);
  };
  Text folder = clsCommon::strParseFileName(projectFile, 0);
  if (folder.empty()) {
    say(IDS_NO_PROJECT, kExclamation);
    return;
  }
  search_.SearchCancelled = 0;
  std::vector<Text> found;
  {
    const WorkingPointer working(ports_.desktop);
    search_.FindFiles(folder, u"*", kWorkingFiles, -1, found);
  }
  if (found.empty()) {
    say(IDS_NOTHING_TO_CLEAN, kInformation);
    return;
  }
  // Other MIF files are counted so far: if there is nothing else, the answer to the question has no
  // effect.
  if (say(IDS_ASK_CLEAN, kQuestion | kYesNo) != kAnswerYes) return;
  std::int16_t entry = 0;
  for (const Text& path : found) {
    if (entry == std::numeric_limits<std::int16_t>::max()) throw RuntimeError::Overflow();
    ++entry;
    if (IsWorkingFile(path)) ports_.common.DeleteFile(path);
  }
}

}  // namespace marl
