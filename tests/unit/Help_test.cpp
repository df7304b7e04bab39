// The pages of the help against the program: every text that the program shows is there, word for
// word, in every language, each message with what can be done about it.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "platform/memory/MemoryStrings.h"
#include "resources/strings/ids.h"
#include "tests/unit/SourceFolder.h"
#include "tests/unit/World.h"

namespace marl {
namespace {

namespace fs = std::filesystem;

std::string Utf8(TextView text) { return fs::path(std::u16string(text)).string(); }

std::string Content(const fs::path& path) {
  std::ifstream stream(path, std::ios::binary);
  EXPECT_TRUE(stream) << path;
  return {std::istreambuf_iterator<char>(stream), {}};
}

/// Runs of blanks and line breaks as one blank, and nothing at the ends.
std::string Squeezed(const std::string& text) {
  std::string squeezed;
  for (const char unit : text) {
    const bool blank = unit == ' ' || unit == '\n' || unit == '\r';
    if (!blank) squeezed += unit;
    if (blank && !squeezed.empty() && squeezed.back() != ' ') squeezed += ' ';
  }
  while (squeezed.ends_with(' ')) squeezed.pop_back();
  return squeezed;
}

/// What a reader sees of a page in Markdown: without emphasis, code marks and addresses of links.
std::string Read(std::string page) {
  page = std::regex_replace(page, std::regex(R"(\]\([^)]*\))"), "");
  page = std::regex_replace(page, std::regex("\n(: |> |#+ |- )"), "\n");
  std::string seen;
  for (const char unit : page) {
    if (unit != '*' && unit != '`' && unit != '[' && unit != ']') seen += unit;
  }
  return Squeezed(seen);
}

/// A text as the help quotes it: without its access key, and without the dots or the colon that
/// tell that something follows.
std::string Quoted(TextView text) {
  Text plain;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == u'&' && i + 1 < text.size() && text[++i] == u'&') plain += u'&';
    if (text[i] != u'[' && text[i] != u']' && text[i] != u'&') plain += text[i];
  }
  while (plain.ends_with(u'.') || plain.ends_with(u':') || plain.ends_with(u' ')) plain.pop_back();
  return Squeezed(Utf8(plain));
}

/// The page names of pages.txt.
std::vector<std::string> PageNames() {
  std::istringstream lines(Content(SourceFolder() / "help/pages.txt"));
  std::vector<std::string> names;
  for (std::string line; std::getline(lines, line);) {
    if (!line.empty() && line[0] != '#') names.push_back(line);
  }
  return names;
}

std::map<std::string, int> Ids() {
  std::map<std::string, int> ids;
  std::istringstream lines(Content(SourceFolder() / "resources/strings/ids.h"));
  std::string define, name;
  for (std::string line; std::getline(lines, line);) {
    int number = 0;
    std::istringstream words(line);
    if (words >> define >> name >> number && define == "#define") ids.emplace(name, number);
  }
  return ids;
}

/// Texts that no user sees as they stand.
bool Shown(int id) {
  return id != IDS_HELP_FOLDER && id != IDS_OPEN_PROJECT_FILTER && id != IDS_SKIN_FILTER;
}

/// True for captions of menus, buttons and forms; every other text is a message. A new text whose
/// name does not begin like these must therefore be among the messages.
bool IsCaption(const std::string& name, int id) {
  static const std::set<int> messages = {IDS_LAN_INCOMPLETE, IDS_SERVER_REFUSED,
                                         IDS_RUNNING_WARNING};
  static const std::set<int> captions = {IDS_OK, IDS_CANCEL, IDS_NO_SERVER, IDS_CONTEXT_MENU_ENTRY,
                                         IDS_OPEN_PROJECT_TITLE};
  if (messages.contains(id)) return false;
  if (captions.contains(id)) return true;
  for (const char* start :
       {"IDS_MENU_", "IDS_BUTTON_", "IDS_TIP_", "IDS_ABOUT_", "IDS_UI_", "IDS_FONT_",
        "IDS_OPTIONS_", "IDS_SEGMENTATION_", "IDS_WIZARD_", "IDS_LAN_", "IDS_SELECT_",
        "IDS_SERVER_", "IDS_RUNNING_", "IDS_DIALOG_", "IDS_ACTION_", "IDS_NAME_"}) {
    if (name.starts_with(start)) return true;
  }
  return false;
}

/// The texts of failures of the runtime that a message can show, from the sources.
std::set<std::string> FailureTexts() {
  std::set<std::string> texts;
  const std::regex failure(R"re((?:\{|RuntimeError\()(\d+), u"([^"]+)"[})])re");
  const std::vector<std::string> folders = {"platform", "support",    "settings", "documents",
                                            "network",  "appearance", "shell"};
  for (const std::string& folder : folders) {
    for (const auto& entry : fs::recursive_directory_iterator(SourceFolder() / folder)) {
      if (entry.path().extension() != ".h" && entry.path().extension() != ".cpp") continue;
      const std::string source = Content(entry.path());
      if (source.find("RuntimeError") == std::string::npos) continue;
      for (std::sregex_iterator at(source.begin(), source.end(), failure), end; at != end; ++at) {
        // 91 is thrown in the message hook alone, which drops it.
        if ((*at)[1] != "91") texts.insert((*at)[2]);
      }
    }
  }
  return texts;
}

class Help : public testing::TestWithParam<std::string> {
 protected:
  std::string Source(const std::string& name) const {
    return Content(SourceFolder() / "help" / GetParam() / (name + ".md"));
  }
  std::string Page(const std::string& name) const { return Read(Source(name)); }
  std::string All() const {
    std::string all;
    for (const std::string& name : PageNames()) all += Page(name) + "\n";
    return all;
  }
  const MemoryStrings strings{GetParam()};
};

TEST_P(Help, HasThePagesOfTheList) {
  std::set<std::string> files;
  for (const auto& entry : fs::directory_iterator(SourceFolder() / "help" / GetParam())) {
    if (entry.path().extension() == ".md") files.insert(entry.path().stem().string());
  }
  const std::vector<std::string> names = PageNames();
  EXPECT_EQ(files, (std::set<std::string>{names.begin(), names.end()}));
}

TEST_P(Help, LiesInTheFolderThatTheProgramOpens) {
  EXPECT_EQ(Utf8(strings.texts.at(IDS_HELP_FOLDER)), GetParam());
}

TEST_P(Help, QuotesEveryTextOfTheProgramWordForWord) {
  const std::string all = All();
  for (const auto& [id, text] : strings.texts) {
    if (!Shown(id)) continue;
    EXPECT_NE(all.find(Quoted(text)), std::string::npos) << id << ": " << Quoted(text);
  }
}

TEST_P(Help, ExplainsEveryMessageUnderTroubleshooting) {
  const std::string page = Page("troubleshooting");
  int messages = 0;
  for (const auto& [name, id] : Ids()) {
    if (!Shown(id) || IsCaption(name, id)) continue;
    ++messages;
    // Word for word, with the colon that something follows.
    const std::string text = Squeezed(Utf8(strings.texts.at(id)));
    EXPECT_NE(page.find(text), std::string::npos) << name << ": " << text;
  }
  EXPECT_GE(messages, 20);
}

TEST_P(Help, ExplainsEveryFailureThatEndsTheProgram) {
  const std::string page = Page("troubleshooting");
  const std::set<std::string> texts = FailureTexts();
  EXPECT_GE(texts.size(), 13u);
  for (const std::string& text : texts) {
    EXPECT_NE(page.find(text), std::string::npos) << text;
  }
}

TEST_P(Help, ListsTheShortcutOfEveryMenuEntry) {
  const std::string menus = Squeezed(Source("menus"));
  World world;
  world.resource.texts = strings.texts;
  world.Start();
  int shortcuts = 0;
  for (Control* control : world.main().controls()) {
    const auto* item = dynamic_cast<Menu*>(control);
    if (!item || item->Shortcut.key == 0) continue;
    ++shortcuts;
    std::string keys = Utf8(ShortcutText(item->Shortcut));
    if (GetParam() == "de") {
      keys = std::regex_replace(keys, std::regex("Ctrl"), "Strg");
      keys = std::regex_replace(keys, std::regex("Shift"), "Umschalt");
    }
    // The number before the five programs is not in the table.
    const std::string caption =
        std::regex_replace(Quoted(item->Caption()), std::regex("^[1-5] "), "");
    EXPECT_NE(menus.find("| **" + caption + "** | " + keys + " |"), std::string::npos)
        << caption << ' ' << keys;
  }
  EXPECT_EQ(shortcuts, 29);
}

TEST_P(Help, IsBuiltLikeThatOfTheFirstLanguage) {
  const auto shape = [](const std::string& source) {
    std::vector<std::string> parts;
    std::istringstream lines(source);
    for (std::string line; std::getline(lines, line);) {
      if (line.starts_with('#')) parts.push_back(line.substr(0, line.find(' ')));
      if (line.starts_with('|')) parts.emplace_back("row");
      if (line.starts_with(": ")) parts.emplace_back("definition");
      if (line.starts_with("![")) parts.push_back(line.substr(line.find("](")));
    }
    return parts;
  };
  for (const std::string& name : PageNames()) {
    if (name == "keys" || name == "menus") continue;  // A sentence more about the keys.
    EXPECT_EQ(shape(Source(name)), shape(Content(SourceFolder() / "help" /
                                                 MemoryStrings::Languages()[0] / (name + ".md"))))
        << name;
  }
}

INSTANTIATE_TEST_SUITE_P(Languages, Help, testing::ValuesIn(MemoryStrings::Languages()),
                         [](const auto& row) {
                           std::string name = row.param;
                           std::replace(name.begin(), name.end(), '-', '_');
                           return name;
                         });

// ---- docs/USING.md, in the first language

TEST(Using, NamesTheKeysOfEveryFunction) {
  const std::string page = Content(SourceFolder() / "docs/USING.md");
  const std::string functions = page.substr(page.find("## Functions by name"));
  World world;
  world.Start();
  int entries = 0;
  for (Control* control : world.main().controls()) {
    const auto* item = dynamic_cast<Menu*>(control);
    if (!item || !item->parent() || item->separator() || item->name() == "mnuMarl") continue;
    ++entries;
    const std::string caption =
        std::regex_replace(Quoted(item->Caption()), std::regex("^[1-5] "), "");
    const std::size_t row = functions.find("\n| " + caption + " |");
    ASSERT_NE(row, std::string::npos) << caption;
    const std::string cells = functions.substr(row + 1, functions.find('\n', row + 1) - row - 1);
    EXPECT_NE(cells.find("| " + Quoted(item->parent()->Caption()) + " |"), std::string::npos)
        << cells;
    const std::string keys = Utf8(ShortcutText(item->Shortcut));
    EXPECT_TRUE(keys.empty() || cells.ends_with("| " + keys + " |")) << cells;
  }
  EXPECT_EQ(entries, 31);
  for (const auto& label : world.main().lblRun) {
    EXPECT_NE(functions.find("| " + Quoted(label->Caption()) + " |"), std::string::npos)
        << Quoted(label->Caption());
  }
}

TEST(HelpCheck, ReadsMarkdownAndQuotesTexts) {
  EXPECT_EQ(Read("# Title\n\n**Bold** and `code`,\nsee [A page](page.md#part).\n\nTerm\n: Text\n"),
            "# Title Bold and code, see A page. Term Text");
  EXPECT_EQ(Quoted(u"Re&move temporary files..."), "Remove temporary files");
  EXPECT_EQ(Quoted(u"R&&D: "), "R&D");
  EXPECT_EQ(Quoted(u"[no server]"), "no server");
  EXPECT_FALSE(IsCaption("IDS_SOMETHING_NEW", 39999));
  EXPECT_TRUE(IsCaption("IDS_MENU_NEW", 39998));
}

}  // namespace
}  // namespace marl
