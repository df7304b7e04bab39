#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "platform/FileSystem.h"
#include "platform/Process.h"
#include "platform/Profile.h"
#include "platform/RegistryStore.h"
#include "platform/Shell.h"
#include "platform/forms/Desktop.h"
#include "support/StringTable.h"

namespace marl {

class Form;
class TextBox;

/// Small helpers that the forms share. The class has no state; callers create an instance where
/// they need one. Positions in texts count from 1.
class clsCommon {
 public:
  struct Ports {
    Desktop& desktop;
    FileSystem& files;
    Profile& profile;
    RegistryStore& registry;
    Process& process;
    Shell& shell;
    const StringTable& strings;
  };
  /// Receives the error texts of an operation.
  using AddText = std::function<void(const Text&)>;

  explicit clsCommon(const Ports& ports) : ports_(ports) {}

  /// Centres the form on the screen, even if it is larger than the screen.
  static void CentreForm(Form& form);

  /// Value of an INI file, at most 1023 bytes of it (GetPrivateProfileStringA); the default when
  /// section, key or file is missing. Without a file: the program's name and ".ini", no folder.
  Text GetINISetting(TextView section, TextView key, TextView defaultText,
                     std::optional<TextView> file = {}) const;
  /// Writes a value of an INI file (WritePrivateProfileStringA); failures are ignored.
  void SetINISetting(TextView section, TextView key, TextView value,
                     std::optional<TextView> file = {}) const;

  /// Selects the whole text of the field.
  static void HighLight(TextBox& field);

  /// Starts the platform's system information program; a message says so if there is none.
  void StartSysInfo() const;

  /// Reads a registry value of at most 1024 bytes. REG_SZ gives its text, REG_DWORD decimal text;
  /// any other kind leaves `out` unchanged. If the value is missing: false, and an empty `out`.
  ///
  /// The number is composed of the hexadecimal digits of its bytes, of which those below 16 give
  /// only one digit; other readers of these texts rely on that.
  bool GetKeyValue(KeyHandle root, TextView keyPath, TextView valueName, Text& out) const;

  /// True if a form of exactly this name is loaded.
  bool IsLoaded(std::string_view formName) const;

  /// Search and replace. Positions are searched in the original text, each from the last position
  /// plus the replacement's length, and replaced in the result: a plain replace-all only if both
  /// texts are equally long. An empty replacement for a text that occurs never ends. Positions are
  /// 16-bit; throws "Overflow" beyond.
  static Text SandR(TextView text, TextView search, TextView replacement);

  /// Part of a path: 0 the folder with its last backslash, 1 the name without extension, 2 the
  /// extension without its dot, each empty if there is none; empty for any other number.
  static Text strParseFileName(TextView path, std::int16_t part);

  /// Copies the file and deletes the source, even if the copy failed. Replaces an existing
  /// destination, even a read-only one. Returns the number of failures; their texts go to `add`.
  std::int16_t MoveFile(TextView source, TextView destination, const AddText& add = {}) const;

  /// Replaces characters in the middle of a text by "...." until `textWidth` gives at most `width`.
  /// A text that fits stays. Throws "Invalid procedure call or argument" if even the dots are too
  /// wide.
  static Text SetCaption(TextView text, const std::function<float(TextView)>& textWidth,
                         float width);

  /// Replaces "%1%" to "%6%" by the arguments, one token after the other; missing arguments are
  /// empty. Each replacement is searched again: an argument that contains its own token never ends.
  static Text FormatString(TextView pattern, const std::vector<Text>& arguments);

  /// Deletes the file, even a read-only one. Failures are ignored.
  void DeleteFile(TextView path) const;

  /// True if a listing of the path finds something (FindFirstFile): wildcards match, and folders
  /// count.
  bool FileExists(TextView path) const;

 private:
  Text INIFile(const std::optional<TextView>& file) const;

  Ports ports_;
};

}  // namespace marl
