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
  std::int32_t ordinal = 0;  ///< languages read before it, 0 or 1; nobody asks for it
  Text path;                 ///< below a language folder, once the whole file is read
};

/// Reads XML project files (".qprx") and holds what is wanted of one: its languages and
/// documents. Nesting means nothing, only the order of the tags counts, and every element but
/// "language", "document" and "target-files" is passed over.
class clsQPRX {
 public:
  explicit clsQPRX(const FileSystem& files) : files_(files) { ClearProject(); }

  std::int32_t LangCount = 0;
  std::int32_t DocCount = 0;
  /// Language folders are named by code, otherwise by description. A parse that meets no
  /// "target-files" element leaves it as it was.
  bool ShortLang = false;

  /// Reads the file. False when it is missing or unreadable (the lists are empty then) or holds a
  /// declaration (what stands before that is kept, with full paths). A tag with an attribute name
  /// twice raises error 457.
  bool ParseProjectFile(TextView path);

  /// The language at `index` from 0. False, with the outputs untouched, when there is none.
  bool GetLanguage(std::int32_t index, Text& lc, Text& description) const;
  /// The path of the document at `index` from 0. False, with `path` untouched, when there is none.
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
