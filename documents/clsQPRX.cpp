#include "documents/clsQPRX.h"

#include "documents/clsXMLEngine.h"
#include "platform/FoldCase.h"
#include "platform/RuntimeError.h"

namespace marl {

namespace {

/// The record at `index`, if there is one: callers can set the counts, so the list may be shorter.
template <typename Record>
const Record& At(const std::vector<Record>& records, std::int32_t index) {
  if (static_cast<std::size_t>(index) >= records.size()) throw RuntimeError::SubscriptOutOfRange();
  return records[static_cast<std::size_t>(index)];
}

}  // namespace

bool clsQPRX::ParseProjectFile(TextView path) {
  ClearProject();
  clsXMLEngine engine(files_);
  if (!engine.OpenDocument(path)) return false;

  clsXMLTag tag;
  XMLToken token;
  for (;;) {
    switch (engine.GetToken(token)) {
      case xtEndOfDocument: StripSourceFolder(); return true;
      case xtDeclaration: return false;  // the only thing that makes a file invalid
      case xtOpenTag:
      case xtEmptyTag:
        tag.ParseTag(token);
        ReadTag(tag);
        break;
      default: break;
    }
  }
}

bool clsQPRX::GetLanguage(std::int32_t index, Text& lc, Text& description) const {
  if (index < 0 || index >= LangCount) return false;
  const ProjectLanguage& language = At(languages_, index);
  lc = language.lc;
  description = language.description;
  return true;
}

bool clsQPRX::GetDocument(std::int32_t index, Text& path) const {
  if (index < 0 || index >= DocCount) return false;
  path = At(documents_, index).path;
  return true;
}

void clsQPRX::ReadTag(const clsXMLTag& tag) {
  const TextView name = tag.name();
  if (name == u"language") {
    AddLanguage(tag.AttributeValue(u"lc"), tag.AttributeValue(u"description"));
  } else if (name == u"document") {
    AddDocument(tag.AttributeValue(u"path"));
  } else if (name == u"target-files") {
    ShortLang = SameText(tag.AttributeValue(u"shortlang"), u"yes");
  }
}

void clsQPRX::AddLanguage(TextView lc, TextView description) {
  languages_.push_back({Text(lc), Text(description)});
  ++LangCount;
}

void clsQPRX::AddDocument(TextView path) {
  // The documents are the same for all languages, so only those of the first are read.
  if (LangCount > 1) return;
  documents_.push_back({LangCount, Text(path)});
  ++DocCount;
}

void clsQPRX::StripSourceFolder() {
  if (LangCount == 0 || DocCount == 0) return;
  const ProjectLanguage& first = At(languages_, 0);
  const Text prefix = (ShortLang ? first.lc : first.description) + u"\\";
  for (ProjectDocument& document : documents_) {
    if (StartsWithText(document.path, prefix)) document.path.erase(0, prefix.size());
  }
}

void clsQPRX::ClearProject() {
  languages_.clear();
  documents_.clear();
  LangCount = 0;
  DocCount = 0;
}

}  // namespace marl
