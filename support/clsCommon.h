#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "platform/Desktop.h"
#include "platform/FileSystem.h"
#include "platform/Process.h"
#include "platform/Profile.h"
#include "platform/RegistryStore.h"
#include "platform/Shell.h"
#include "support/StringTable.h"

namespace marl {

class Form;
class TextBox;

/// Small helpers that the forms share. The class has no state; a caller makes an instance over the
/// platform where it needs one. Positions in texts count from 1.
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
  /// Takes each text of an operation that collects its errors.
  using AddText = std::function<void(const Text&)>;

  explicit clsCommon(const Ports& ports) : ports_(ports) {}

  /// Moves the form to the middle of the screen, which may be beyond its edges.
  static void CentreForm(Form& form);

  /// Value of an INI file, at most 1023 bytes of it (GetPrivateProfileStringA); the default when
  /// section, key or file is missing. Without a file: the program's name and ".ini", no folder.
  Text GetINISetting(TextView section, TextView key, TextView defaultText,
                     std::optional<TextView> file = {}) const;
  /// Writes a value of an INI file (WritePrivateProfileStringA); a failure shows nowhere.
  void SetINISetting(TextView section, TextView key, TextView value,
                     std::optional<TextView> file = {}) const;

  /// Selects the whole text of the field.
  static void HighLight(TextBox& field);

  /// Starts the platform's system information program, or says that there is none.
  void StartSysInfo() const;

  /// Reads one value of the registry, at most 1024 bytes. REG_SZ gives its text, REG_DWORD a
  /// decimal text, any other kind leaves `out`. Without the value: false, and an empty `out`.
  ///
  /// The number is put together from the hexadecimal digits of the single bytes, and those below
  /// 16 give one digit only; what else reads these texts counts on them.
  bool GetKeyValue(KeyHandle root, TextView keyPath, TextView valueName, Text& out) const;

  /// True when a form of exactly this name is loaded.
  bool IsLoaded(std::string_view formName) const;

  /// Search and replace. Each next place is looked for in the original text, from behind the last
  /// place and the replacement's length, and replaced in the result: a plain replace-all only
  /// where both texts are equally long. An empty replacement for a text that occurs never ends.
  /// Places count in 16 bits; throws "Overflow" beyond.
  static Text SandR(TextView text, TextView search, TextView replacement);

  /// Part of a path: 0 the folder with its last backslash, 1 the name without extension, 2 the
  /// extension without its dot, each empty where there is none; empty for any other number.
  static Text strParseFileName(TextView path, std::int16_t part);

  /// Copies the file and deletes the source, which goes even when the copy failed. Replaces what
  /// stands at the destination, a read-only file too. Returns how many failures it met; their
  /// texts go to `add`.
  std::int16_t MoveFile(TextView source, TextView destination, const AddText& add = {}) const;

  /// Cuts characters out of the middle of a text, with "...." in their place, until `textWidth`
  /// finds it no wider than `width`. A text that fits stays. Throws "Invalid procedure call or
  /// argument" when even the dots are too wide.
  static Text SetCaption(TextView text, const std::function<float(TextView)>& textWidth,
                         float width);

  /// Puts the arguments in place of "%1%" to "%6%", one token after the other, nothing for those
  /// that are missing. Each replacement is searched again: an argument that holds its own token
  /// never ends.
  static Text FormatString(TextView pattern, const std::vector<Text>& arguments);

  /// Deletes the file, a read-only one too. Failures show nowhere.
  void DeleteFile(TextView path) const;

  /// True when a listing of the path finds something (FindFirstFile): wildcards match, and folders
  /// count.
  bool FileExists(TextView path) const;

 private:
  Text INIFile(const std::optional<TextView>& file) const;

  Ports ports_;
};

}  // namespace marl
