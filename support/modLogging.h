#pragma once

#include <cstdint>
#include <memory>

#include "platform/FileSystem.h"

namespace marl {

#ifdef MARL_DEBUG_LOG
inline constexpr bool kDebugLog = true;
#else
inline constexpr bool kDebugLog = false;
#endif

/// Format of the time at the start of each line of the log.
inline constexpr TextView kLogTimeFormat = u"dd/mm/yy hh:mm:ss ";

/// The debug log: `debug.log` in the program's folder. It is a build option, off in the program
/// that ships. Failures are ignored.
class modLogging {
 public:
  /// `folder` is the program's folder.
  modLogging(FileSystem& files, TextView folder, bool enabled = kDebugLog)
      : files_(files), folder_(folder), enabled_(enabled) {}

  /// Closes an open log, and starts a new one if the build has a log.
  void OpenDebugLog();
  void CloseDebugLog();
  /// 0 if no log is open.
  std::int16_t FileNumber() const { return fileNumber_; }

 private:
  FileSystem& files_;
  Text folder_;
  bool enabled_;
  std::int16_t fileNumber_ = 0;
  std::unique_ptr<OutputFile> file_;
};

}  // namespace marl
