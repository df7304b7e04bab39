#include "tests/forms/FormTexts.h"

#include <algorithm>
#include <set>

#include "platform/ApplicationTitle.h"
#include "platform/forms/CommonControls.h"
#include "platform/forms/Controls.h"
#include "support/Version.h"

namespace marl {

namespace {

constexpr TextView kMarkBegin = u"[!!! ";
constexpr TextView kMarkEnd = u" !!!]";

/// Controls whose texts are data.
const std::set<std::string>& Data() {
  static const std::set<std::string> names = {"frmChangeServer.cmbServer",
                                              "frmFont.cmbFont",
                                              "frmOptions.lstRegEx",
                                              "frmOptions.txtRegEx",
                                              "frmRunningApps.lstRunningApplications",
                                              "frmSelectFile.cmbFile",
                                              "frmSelectFile.cmbLanguage",
                                              "frmSplash.lblVersion"};
  return names;
}

bool IsLetter(char16_t unit) {
  return (unit >= u'A' && unit <= u'Z') || (unit >= u'a' && unit <= u'z') || unit >= 0xC0;
}

void Erase(Text& text, TextView part) {
  const auto at = text.find(part);
  if (at != Text::npos) text.erase(at, part.size());
}

void AddPart(std::vector<FormText>& texts, const std::string& where, const ControlPart& part) {
  texts.push_back({where, part.Caption});
  texts.push_back({where, part.ToolTipText});
}

void AddControl(std::vector<FormText>& texts, const std::string& where, const Control& control) {
  texts.push_back({where, control.Caption()});
  texts.push_back({where, control.ToolTipText()});
  switch (control.kind()) {
    case ControlKind::kTextBox:
      texts.push_back({where, static_cast<const TextBox&>(control).Text()});
      break;
    case ControlKind::kListBox:
    case ControlKind::kComboBox: {
      const auto& list = static_cast<const ItemList&>(control);
      for (int row = 0; row < list.ListCount(); ++row) texts.push_back({where, list.List(row)});
      break;
    }
    case ControlKind::kTabStrip:
    case ControlKind::kToolbar:
    case ControlKind::kListView: {
      const auto& parts = static_cast<const PartedControl&>(control);
      for (int i = 1; i <= parts.PartCount(); ++i) AddPart(texts, where, parts.Part(i));
      break;
    }
    default: break;
  }
}

}  // namespace

std::vector<FormText> TextsOf(const Form& form) {
  std::vector<FormText> texts = {{form.name(), form.Caption()}};
  for (const Control* const control : form.controls()) {
    std::string where = form.name() + "." + control->name();
    if (control->index() >= 0) where += "(" + std::to_string(control->index()) + ")";
    AddControl(texts, where, *control);
  }
  std::erase_if(texts, [](const FormText& text) { return text.text.empty(); });
  return texts;
}

bool IsMarked(TextView text) {
  Text rest(text);
  for (auto begin = rest.find(kMarkBegin); begin != Text::npos; begin = rest.find(kMarkBegin)) {
    const auto end = rest.find(kMarkEnd, begin);
    if (end == Text::npos) return false;
    rest.erase(begin, end + kMarkEnd.size() - begin);
  }
  Erase(rest, kVersion);
  Erase(rest, kApplicationTitle);
  return std::none_of(rest.begin(), rest.end(), IsLetter);
}

std::vector<std::string> Unmarked(const Form& form) {
  std::vector<std::string> unmarked;
  for (const FormText& shown : TextsOf(form)) {
    if (IsMarked(shown.text) || Data().contains(shown.where)) continue;
    std::string plain = shown.where + ": ";
    for (const char16_t unit : shown.text) plain += unit < 0x80 ? static_cast<char>(unit) : '?';
    unmarked.push_back(plain);
  }
  return unmarked;
}

}  // namespace marl
