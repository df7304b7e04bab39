#pragma once

#include <cstdint>
#include <iosfwd>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "tests/desktop/Desktop.h"

// The suite around the program under test: its folder, the stand-ins and their log.

namespace marl::desktop {

/// Paths of the programs under test: the command line's --marl=PATH and --stand-in=PATH, or the
/// environment's MARL_PROGRAM and MARL_STAND_IN; and --marl-CODE=PATH for the program in a
/// language.
struct Programs {
  std::wstring marl;  ///< in the first language
  std::wstring standIn;
  std::map<std::string, std::wstring> translations;  ///< in each other language, by its code

  const std::wstring& In(const std::string& language) const {
    const auto found = translations.find(language);
    return found == translations.end() ? marl : found->second;
  }
};
extern Programs g_programs;

/// The program that a button of the panel starts, by the button's index; empty if it starts none.
std::wstring ToolOf(int button);

/// One entry of a stand-in's log.
struct Started {
  std::wstring program;
  std::wstring path;
  std::wstring arguments;
  std::wstring directory;
  int show = -1;

  bool operator==(const Started&) const = default;
};
std::ostream& operator<<(std::ostream& out, const Started& started);

/// Reads one line of a stand-in's log; nothing if the line is not valid.
std::optional<Started> ParseStarted(const std::string& line);

/// A folder with Marl.exe and a stand-in under each tool's name; deleted at the end. Beside it are
/// a private temporary folder and the stand-ins' log.
class SuiteFolder {
 public:
  /// Creates the folder `name` in a new place, without the tools in `without`.
  explicit SuiteFolder(const std::wstring& name = L"Suite",
                       const std::vector<std::wstring>& without = {});
  ~SuiteFolder();
  SuiteFolder(const SuiteFolder&) = delete;
  SuiteFolder& operator=(const SuiteFolder&) = delete;

  /// The folder, without a separator at its end.
  const std::wstring& path() const { return path_; }
  const std::wstring& temp() const { return temp_; }
  const std::wstring& log() const { return log_; }
  std::wstring marl() const { return path_ + L"\\Marl.exe"; }
  void Remove(const std::wstring& tool) const;

  /// All starts logged so far, in order.
  const std::vector<Started>& Starts() const;
  /// The starts apart from the component registrar's, once there are at least `count` of them or
  /// the deadline has passed.
  std::vector<Started> WaitForTools(std::size_t count) const;
  /// Contents of the folder and its temporary folder: path, size and time of writing.
  std::map<std::wstring, std::pair<std::uint64_t, std::uint64_t>> Files() const;

 private:
  std::wstring root_;
  std::wstring path_;
  std::wstring temp_;
  std::wstring log_;
  // The part of the log that has been read.
  mutable std::vector<Started> starts_;
  mutable LONG read_ = 0;
};

/// All tools of the suite that Marl starts.
const std::vector<std::wstring>& Tools();

/// A drive letter for a folder, while this lives.
class DriveLetter {
 public:
  explicit DriveLetter(const std::wstring& folder);
  ~DriveLetter();
  DriveLetter(const DriveLetter&) = delete;
  DriveLetter& operator=(const DriveLetter&) = delete;
  bool made() const { return made_; }
  /// Such as "R:".
  const std::wstring& name() const { return name_; }

 private:
  std::wstring name_;
  std::wstring folder_;
  bool made_ = false;
};

/// A network name for a folder, while this lives.
class NetworkShare {
 public:
  explicit NetworkShare(const std::wstring& folder);
  ~NetworkShare();
  NetworkShare(const NetworkShare&) = delete;
  NetworkShare& operator=(const NetworkShare&) = delete;
  bool made() const { return made_; }
  /// Such as "\\server\share".
  const std::wstring& name() const { return name_; }

 private:
  std::wstring name_;
  std::wstring link_;
  bool made_ = false;
};

}  // namespace marl::desktop
