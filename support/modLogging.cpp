#include "support/modLogging.h"

namespace marl {

void modLogging::OpenDebugLog() {
  CloseDebugLog();
  if (!enabled_) return;
  Status status = kOk;
  const bool root = folder_.ends_with(u'\\');
  file_ = files_.Create(folder_ + (root ? u"" : u"\\") + u"debug.log", status);
  // The program has no other file open by number, so the first one is always free.
  fileNumber_ = file_ ? 1 : 0;
}

void modLogging::CloseDebugLog() {
  if (fileNumber_ != 0) file_.reset();
  fileNumber_ = 0;
}

}  // namespace marl
