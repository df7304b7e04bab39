#include "documents/TranslateProject.h"

#include <map>

#include "documents/OlderProject.h"
#include "documents/clsQPRX.h"
#include "documents/frmSelectFile.h"
#include "platform/ApplicationTitle.h"
#include "platform/FoldCase.h"

namespace marl {

namespace {

constexpr TextView kXmlExtension = u".qprx";
constexpr std::int16_t kByCode = 1;

bool IsXmlName(TextView path) {
  return path.size() >= kXmlExtension.size() &&
         SameText(path.substr(path.size() - kXmlExtension.size()), kXmlExtension);
}

/// The document's path with the extension of its translation.
Text TranslationOf(TextView path) {
  return clsCommon::strParseFileName(path, 0) + clsCommon::strParseFileName(path, 1) + u".qtd";
}

}  // namespace

/// What the command needs from a project. Numbers are read in the order of the command's steps, so
/// that a bad number fails only at the step that needs it.
class ProjectLists {
 public:
  virtual ~ProjectLists() = default;
  virtual std::int16_t Style() const = 0;
  virtual std::int32_t LangCount() const = 0;
  virtual std::int32_t DocCount() const = 0;
  /// Codes and paths that are not empty.
  virtual std::vector<Text> Languages() const = 0;
  virtual std::vector<Text> Documents() const = 0;
};

namespace {

class XmlLists : public ProjectLists {
 public:
  explicit XmlLists(const FileSystem& files) : project_(files) {}
  bool Parse(TextView path) { return project_.ParseProjectFile(path); }
  std::int16_t Style() const override { return project_.ShortLang ? kByCode : 0; }
  std::int32_t LangCount() const override { return project_.LangCount; }
  std::int32_t DocCount() const override { return project_.DocCount; }
  std::vector<Text> Languages() const override {
    std::vector<Text> codes;
    Text code, description;  // the table's description is shown, not the project's own
    for (std::int32_t i = 0; project_.GetLanguage(i, code, description); ++i) {
      if (!code.empty()) codes.push_back(code);
    }
    return codes;
  }
  std::vector<Text> Documents() const override {
    std::vector<Text> paths;
    Text path;
    for (std::int32_t i = 0; project_.GetDocument(i, path); ++i) {
      if (!path.empty()) paths.push_back(path);
    }
    return paths;
  }

 private:
  clsQPRX project_;
};

class OlderLists : public ProjectLists {
 public:
  OlderLists(const FileSystem& files, const clsCommon& common, TextView path)
      : project_(files, common, path) {}
  std::int16_t Style() const override { return project_.ShortLang(); }
  std::int32_t LangCount() const override { return project_.LangCount(); }
  std::int32_t DocCount() const override { return project_.DocCount(); }
  std::vector<Text> Languages() const override { return project_.Languages(LangCount()); }
  std::vector<Text> Documents() const override { return project_.Documents(DocCount()); }

 private:
  OlderProject project_;
};

}  // namespace

Text TranslateProject::GetLanguageFolder(std::int32_t index, std::int16_t style) const {
  const clsLanguages& languages = ports_.languages();
  return style == kByCode ? languages.LanguageCode(index) : languages.LanguageDescription(index);
}

void TranslateProject::Run(TextView projectFile, Form* owner) const {
  const std::unique_ptr<ProjectLists> project = Read(projectFile);
  const Text folder = clsCommon::strParseFileName(projectFile, 0);
  const std::int16_t style = project->Style();
  if (folder.empty()) return Complain(IDS_NO_PROJECT);
  if (project->LangCount() == 0) return Complain(IDS_NO_LANGUAGES);
  if (project->DocCount() == 0) return Complain(IDS_NO_FILES);

  frmSelectFile form({ports_.desktop, ports_.locale, ports_.strings, ports_.setIcon});
  form.Load();
  const std::vector<std::int32_t> mapping = FillLanguages(*project, form);
  if (mapping.empty()) {
    form.Unload();
    return Complain(IDS_NO_LANGUAGES);
  }
  form.cmbLanguage.SetListIndex(0);
  FillFiles(*project, form);
  if (form.cmbFile.ListCount() == 0) {
    form.Unload();
    return Complain(IDS_NO_FILES);
  }
  form.cmbFile.SetListIndex(0);

  form.ShowModal(owner);
  if (form.Accepted) {
    const auto row = static_cast<std::size_t>(form.cmbLanguage.ListIndex());
    Open(folder + GetLanguageFolder(mapping[row], style) + u'\\' + form.cmbFile.Text());
  }
  form.Unload();
}

// An XML project that cannot be read is treated as an older one, in which nothing is found.
std::unique_ptr<ProjectLists> TranslateProject::Read(TextView projectFile) const {
  if (IsXmlName(projectFile)) {
    auto xml = std::make_unique<XmlLists>(ports_.files);
    if (xml->Parse(projectFile)) return xml;
  }
  return std::make_unique<OlderLists>(ports_.files, ports_.common, projectFile);
}

/// Lists the languages whose codes are in the table, case included. Returns the table index for
/// each row.
std::vector<std::int32_t> TranslateProject::FillLanguages(const ProjectLists& project,
                                                          frmSelectFile& form) const {
  const clsLanguages& languages = ports_.languages();
  std::map<Text, std::int32_t> table;  // the first of two languages with the same code counts
  for (std::int32_t i = 0; i <= languages.LanguageCount(); ++i) {
    table.emplace(languages.LanguageCode(i), i);
  }
  std::vector<std::int32_t> mapping;
  for (const Text& code : project.Languages()) {
    const auto found = table.find(code);
    if (found == table.end()) continue;
    form.cmbLanguage.AddItem(languages.LanguageDescription(found->second));
    mapping.push_back(found->second);
  }
  return mapping;
}

void TranslateProject::FillFiles(const ProjectLists& project, frmSelectFile& form) const {
  for (const Text& path : project.Documents()) form.cmbFile.AddItem(TranslationOf(path));
}

void TranslateProject::Open(const Text& path) const {
  if (!ports_.files.NormalFileExists(path)) return Complain(IDS_FILE_NOT_FOUND, path);
  ports_.openEditor(u'"' + path + u'"');
}

void TranslateProject::Complain(int message, TextView detail) const {
  ports_.desktop.MsgBox(ports_.strings.Get(message).append(detail), kExclamation,
                        kApplicationTitle);
}

}  // namespace marl
