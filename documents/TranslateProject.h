#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "platform/FileSystem.h"
#include "platform/Locale.h"
#include "platform/Text.h"
#include "platform/forms/Desktop.h"
#include "support/StringTable.h"
#include "support/clsCommon.h"
#include "support/clsLanguages.h"

namespace marl {

class ProjectLists;
class frmSelectFile;

/// Opens a document of a project in the interactive editor: reads the project (XML or the older
/// format), lets the user pick a target language and a document, and starts the editor.
class TranslateProject {
 public:
  struct Ports {
    Desktop& desktop;
    FileSystem& files;
    const Locale& locale;
    const StringTable& strings;
    const clsCommon& common;
    /// The table of languages, created at first use.
    std::function<const clsLanguages&()> languages;
    /// Gives a window the program's icon.
    std::function<void(WindowHandle window)> setIcon;
    /// Starts the editor with these arguments.
    std::function<void(TextView arguments)> openEditor;
  };
  explicit TranslateProject(Ports ports) : ports_(std::move(ports)) {}

  /// Runs the command on a project file, with its dialog above `owner`. A bad number in an older
  /// project throws "Type mismatch" or "Overflow"; a duplicate attribute in an XML project throws
  /// error 457.
  void Run(TextView projectFile, Form* owner) const;

  /// Name of a language's folder in the project's folder: the code if the style is 1, otherwise the
  /// description. `index` is the one in the table of languages.
  Text GetLanguageFolder(std::int32_t index, std::int16_t style) const;

 private:
  std::unique_ptr<ProjectLists> Read(TextView projectFile) const;
  std::vector<std::int32_t> FillLanguages(const ProjectLists& project, frmSelectFile& form) const;
  void FillFiles(const ProjectLists& project, frmSelectFile& form) const;
  void Open(const Text& path) const;
  void Complain(int message, TextView detail = {}) const;

  Ports ports_;
};

}  // namespace marl
