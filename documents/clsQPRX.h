#pragma once

#include <cstdint>
#include <vector>

#include "documents/clsXMLTag.h"
#include "platform/FileSystem.h"
#include "platform/Text.h"

namespace marl {

/// One target language of a project.
struct ProjectLanguage {
  Text lc;  ///< language code
  Text description;
};

/// One document of a project.
struct ProjectDocument {
  std::int32_t ordinal = 0;  ///< languages read before it, 0 or 1; unused
  Text path;  ///< relative to the language folder; complete once the whole file is read
};

/// Reads XML project files (".qprx") and holds their languages and documents. Only the order of the
/// tags counts, not their nesting; every element but "language", "document" and "target-files" is
/// skipped.
class clsQPRX {
 public:
  explicit clsQPRX(const FileSystem& files) : files_(files) { ClearProject(); }

  std::int32_t LangCount = 0;
  std::int32_t DocCount = 0;
  /// True if language folders are named by code, not by description. A file without "target-files"
  /// leaves it unchanged.
  bool ShortLang = false;

  /// Reads the file. False if it is missing or unreadable (the lists are then empty) or contains a
  /// declaration (what comes before it is kept, with full paths). A duplicate attribute throws
  /// error 457.
  bool ParseProjectFile(TextView path);

  /// The language at `index` from 0. False, with the outputs unchanged, if there is none.
  bool GetLanguage(std::int32_t index, Text& lc, Text& description) const;
  /// The path of the document at `index` from 0. False, with `path` unchanged, if there is none.
  bool GetDocument(std::int32_t index, Text& path) const;

 private:
  void ReadTag(const clsXMLTag& tag);
  void AddLanguage(TextView lc, TextView description);
  void AddDocument(TextView path);
  void StripSourceFolder();
  void ClearProject();

  const FileSystem& files_;
  std::vector<ProjectLanguage> languages_;
  std::vector<ProjectDocument> documents_;
};

}  // namespace marl
