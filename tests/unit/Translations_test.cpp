// Checks what every language's file of texts has to keep.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "platform/FoldCase.h"
#include "platform/RuntimeError.h"
#include "platform/memory/MemoryStrings.h"
#include "resources/strings/ids.h"
#include "support/StringTable.h"
#include "tests/unit/SourceFolder.h"

namespace marl {
namespace {

std::string Plain(TextView text) {
  std::string plain;
  for (const char16_t unit : text) plain += unit < 0x80 ? static_cast<char>(unit) : '?';
  return plain;
}

std::vector<Text> Fields(TextView text) {
  std::vector<Text> fields(1);
  for (const char16_t unit : text) {
    if (unit == u'|') {
      fields.emplace_back();
    } else {
      fields.back() += unit;
    }
  }
  return fields;
}

/// The access key of a text, in capitals; 0 when it has none. "&&" is a plain "&".
char16_t AccessKey(TextView text) {
  for (std::size_t i = 0; i + 1 < text.size(); ++i) {
    if (text[i] != u'&') continue;
    if (text[i + 1] != u'&') return FoldCase(text[i + 1]);
    ++i;
  }
  return 0;
}

int CountAccessKeys(TextView text) {
  int count = 0;
  for (std::size_t i = 0; i + 1 < text.size(); ++i) {
    if (text[i] != u'&') continue;
    if (text[i + 1] != u'&') ++count;
    ++i;
  }
  return count;
}

/// Texts that are seen together, in one level of a menu or on one form, so that no two of them may
/// have one access key. `others` are keys that stand there whatever the language.
struct Neighbours {
  const char* where;
  std::vector<int> ids;
  TextView others = {};
};

const std::vector<Neighbours>& AllNeighbours() {
  static const std::vector<Neighbours> all = {
      {"menu bar",
       {IDS_MENU_PROJECT, IDS_MENU_TM, IDS_MENU_TRANSLATE, IDS_MENU_ALIGN, IDS_MENU_GLOSSARY,
        IDS_MENU_TOOLS, IDS_MENU_HELP}},
      {"project menu",
       {IDS_MENU_PROJECT_NEW, IDS_MENU_PROJECT_OPEN, IDS_MENU_PROJECT_SAVE, IDS_MENU_PROJECT_CLEAN,
        IDS_MENU_PROJECT_ANALYSE, IDS_MENU_PROJECT_EXIT, IDS_MENU_PROJECT_TM,
        IDS_MENU_PROJECT_CHANGE_SERVER, IDS_MENU_PROJECT_TRACK_PROJECTS}},
      {"TM menu", {IDS_MENU_TM_IMPORT, IDS_MENU_TM_EXPORT}},
      {"translate menu",
       {IDS_MENU_TRANSLATE_BATCH, IDS_MENU_TRANSLATE_PROJECT, IDS_MENU_TRANSLATE_SINGLE,
        IDS_MENU_TRANSLATE_CLIPBOARD, IDS_MENU_TRANSLATE_REPLACE}},
      {"align menu", {IDS_MENU_ALIGN_NEW, IDS_MENU_ALIGN_OPEN}},
      {"glossary menu", {IDS_MENU_GLOSSARY_MAINTAIN, IDS_MENU_GLOSSARY_QA_CHECK}},
      {"tools menu",
       {IDS_MENU_TOOLS_QA_CHECK, IDS_MENU_TOOLS_COMMENT_REPORT, IDS_MENU_TOOLS_OPTIONS},
       u"12345"},
      {"help menu", {IDS_MENU_HELP_CONTENTS, IDS_MENU_HELP_ABOUT, IDS_MENU_HELP_TUTORIAL}},
      {"change server",
       {IDS_SERVER_NAME, IDS_SERVER_SSL, IDS_SERVER_PORT, IDS_SERVER_DEFAULT_PORT}},
      {"display settings",
       {IDS_UI_COLOUR_1, IDS_UI_COLOUR_2, IDS_UI_BORDER_COLOUR_1, IDS_UI_BORDER_COLOUR_2,
        IDS_UI_WIDE_BORDER, IDS_UI_COLOURED_ICONS, IDS_UI_OK, IDS_UI_CANCEL, IDS_UI_DEFAULT,
        IDS_UI_TWO_STATE, IDS_UI_LOAD, IDS_UI_SAVE, IDS_UI_UP, IDS_UI_DOWN, IDS_UI_ICONS_PER_ROW}},
      {"font",
       {IDS_FONT_SIZE, IDS_FONT_BOLD, IDS_FONT_ITALIC, IDS_FONT_UNDERLINE, IDS_FONT_COLOUR,
        IDS_FONT_OK, IDS_FONT_CANCEL}},
      {"options, switchboard",
       {IDS_OPTIONS_TAB_SWITCHBOARD, IDS_OPTIONS_TAB_GENERAL, IDS_OPTIONS_TAB_LAN,
        IDS_OPTIONS_TAB_HIDDEN_SEGMENTS, IDS_OPTIONS_DISPLAY, IDS_OPTIONS_TOOLTIPS,
        IDS_OPTIONS_TOOLS_MENU, IDS_OPTIONS_WIZARD, IDS_DIALOG_OK, IDS_DIALOG_CANCEL}},
      {"options, general",
       {IDS_OPTIONS_TAB_SWITCHBOARD, IDS_OPTIONS_TAB_GENERAL, IDS_OPTIONS_TAB_LAN,
        IDS_OPTIONS_TAB_HIDDEN_SEGMENTS, IDS_OPTIONS_WORD_COUNTS, IDS_OPTIONS_SEGMENTATION,
        IDS_OPTIONS_CONTEXT_MENUS, IDS_OPTIONS_NUMBER_SEGMENTS, IDS_OPTIONS_RED_BARS,
        IDS_OPTIONS_LIST_NUMBERS, IDS_OPTIONS_BULLETS, IDS_DIALOG_OK, IDS_DIALOG_CANCEL}},
      {"options, LAN",
       {IDS_OPTIONS_TAB_SWITCHBOARD, IDS_OPTIONS_TAB_GENERAL, IDS_OPTIONS_TAB_LAN,
        IDS_OPTIONS_TAB_HIDDEN_SEGMENTS, IDS_OPTIONS_LAN, IDS_DIALOG_OK, IDS_DIALOG_CANCEL}},
      {"options, hidden segments",
       {IDS_OPTIONS_TAB_SWITCHBOARD, IDS_OPTIONS_TAB_GENERAL, IDS_OPTIONS_TAB_LAN,
        IDS_OPTIONS_TAB_HIDDEN_SEGMENTS, IDS_OPTIONS_EXPRESSIONS, IDS_OPTIONS_EXPRESSIONS_ADD,
        IDS_OPTIONS_EXPRESSIONS_REMOVE, IDS_OPTIONS_EXPRESSIONS_CLEAR, IDS_DIALOG_OK,
        IDS_DIALOG_CANCEL}},
      {"segmentation rules",
       {IDS_SEGMENTATION_ADD_DONT_SPLIT, IDS_SEGMENTATION_REMOVE_DONT_SPLIT,
        IDS_SEGMENTATION_ADD_FORCE_SPLIT, IDS_SEGMENTATION_REMOVE_FORCE_SPLIT, IDS_DIALOG_OK,
        IDS_DIALOG_CANCEL}},
      {"wizard mode", {IDS_WIZARD_IMPORT, IDS_WIZARD_EXPORT}},
      {"LAN settings",
       {IDS_LAN_DEFAULT, IDS_LAN_OVERRIDE, IDS_LAN_USE_PROXY, IDS_LAN_ADDRESS, IDS_LAN_PORT,
        IDS_LAN_OK, IDS_LAN_CANCEL}},
      {"about", {IDS_ABOUT_SITE, IDS_ABOUT_SUPPORT}},
  };
  return all;
}

std::vector<std::string> Clashes(const MemoryStrings& strings) {
  std::vector<std::string> clashes;
  for (const Neighbours& group : AllNeighbours()) {
    std::map<char16_t, std::string> taken;
    for (const char16_t key : group.others) taken[key] = "fixed";
    for (const int id : group.ids) {
      const char16_t key = AccessKey(strings.texts.at(id));
      if (key == 0) continue;
      const auto [at, free] = taken.emplace(key, std::to_string(id));
      if (!free) {
        clashes.push_back(std::string(group.where) + ": " + Plain(Text(1, key)) + " of " +
                          at->second + " and " + std::to_string(id));
      }
    }
  }
  return clashes;
}

/// Every English text, written down apart from the file that the program is built from: the words
/// are the suite's, and a change of one is a change of what sister programs and manuals show.
const std::map<int, Text>& EnglishTexts() {
  static const std::map<int, Text> texts = {
      {501, u"OK"},
      {502, u"Cancel"},
      {1000, u"&Project"},
      {1001, u"&Import files in to a new project..."},
      {1002, u"&Open an existing project..."},
      {1003, u"&Export files from a project..."},
      {1004, u"&Remove temporary files..."},
      {1005, u"&Analyse leverage statistics..."},
      {1006, u"E&xit"},
      {1007, u"&Project TM..."},
      {1008, u"Change &server..."},
      {1009, u"&Track projects"},
      {1075, u"[no server]"},
      {1081, u"Change server"},
      {1082, u"&Server:"},
      {1083, u"The server &requires a secure connection (SSL)"},
      {1084, u"P&ort number:"},
      {1085, u"Use &default port number"},
      {1100, u"T&M"},
      {1101, u"&Import a Translation Memory..."},
      {1102, u"&Export a Translation Memory..."},
      {1200, u"&Translate"},
      {1201, u"Apply TMs in &batch mode..."},
      {1202, u"Translate a specific &project file..."},
      {1203, u"Translate a single &file..."},
      {1204, u"Translate &clipboard contents..."},
      {1205, u"&Global search and replace..."},
      {1300, u"&Align"},
      {1301, u"&Create a new alignment from existing files..."},
      {1302, u"&Open an existing alignment..."},
      {1400, u"Term&Vault"},
      {1401, u"&Maintain a terminology database..."},
      {1402, u"Terminology &QA Check..."},
      {1500, u"T&ools"},
      {1501, u"Font Mapper"},
      {1502, u"Convert Files"},
      {1503, u"DOC to RTF"},
      {1504, u"HTML Utilities"},
      {1505, u"MIF Utilities"},
      {1506, u"&Options..."},
      {1508, u"&QA Check..."},
      {1509, u"&Comment Report..."},
      {1600, u"&Help"},
      {1601, u"&Contents"},
      {1602, u"&About..."},
      {1603, u"&Translating in Marl..."},
      {2000, u"Analyse"},
      {2001, u"Align"},
      {2002, u"TermVault"},
      {2003, u"Project Wizard"},
      {2004, u"Apply"},
      {2005, u"Edit"},
      {2006, u"Change Server"},
      {2007, u"Track Projects"},
      {2008, u"Administrator"},
      {2009, u"Utilities"},
      {2010, u"QA Check"},
      {2011, u"Maintain"},
      {2012, u"Update"},
      {2013, u"Compare"},
      {2014, u"Exchange"},
      {2015, u"Split"},
      {2016, u"XLIFF"},
      {2017, u"Exit"},
      {2020, u"Analyse files for leverage statistics"},
      {2021, u"Create a Translation Memory from a previous translation"},
      {2022, u"Maintain a database of terminology"},
      {2023, u"Create a new project or export an existing project"},
      {2024, u"Apply one or more Translation Memories to multiple files"},
      {2025, u"Interactively translate a file"},
      {2026, u"Change the current project tracking server"},
      {2027, u"Track existing projects"},
      {2028, u"Administer Marl servers"},
      {2029, u"Various utilities to manipulate Marl documents"},
      {2030, u"Run a QA check on one or more documents"},
      {2031, u"Edit, import or export a Translation Memory"},
      {2032, u"Manage project updates"},
      {2033, u"Compare Marl documents or folders"},
      {2034, u"Transfer files between Marl and Quillon"},
      {2035, u"Split large documents in to smaller documents"},
      {2036, u"Prepare XLIFF documents for translation with Marl"},
      {2037, u"Exit the application"},
      {3003, u"The file could not be copied: "},
      {3004, u"The file could not be deleted: "},
      {3005, u"The read-only attribute was removed: "},
      {3020, u"About Marl"},
      {3021, u"Marl Translation Suite"},
      {3022, u"Copyright © 1996-2007 Oru"},
      {3025, u"&Internet: www.marl.example"},
      {3026, u"&Support: support.marl.example"},
      {3027,
       u"Warning: This program is protected by copyright law and international treaties. "
       u"Unauthorised reproduction or distribution of this program, or any portion of it, may "
       u"result in severe civil and criminal penalties."},
      {3050, u"Display settings"},
      {3051, u"Gradient"},
      {3052, u"&Set gradient colour 1"},
      {3053, u"Set g&radient colour 2"},
      {3054, u"Angle"},
      {3055, u"Text"},
      {3056, u"Normal"},
      {3057, u"Highlighted"},
      {3058, u"Border"},
      {3059, u"Set &border colour 1"},
      {3060, u"Set b&order colour 2"},
      {3061, u"Display &wide border"},
      {3062, u"Display coloured &icons"},
      {3063, u"OK"},
      {3064, u"Cancel"},
      {3065, u"Default"},
      {3066, u"White/Gold Application Icons"},
      {3067, u"Green/Gold Bevelled Icons"},
      {3068, u"Windows XP Style Icons"},
      {3069, u"&Use two-state icons"},
      {3070, u"&Load..."},
      {3071, u"&Save..."},
      {3072, u"Bonus Icons"},
      {3073, u"&Up"},
      {3074, u"&Down"},
      {3075, u"Icons per row"},
      {3100, u"Set Font"},
      {3101, u"Sample"},
      {3102, u"&Size"},
      {3103, u"&Bold"},
      {3104, u"&Italic"},
      {3105, u"&Underline"},
      {3106, u"&Color"},
      {3107, u"OK"},
      {3108, u"Cancel"},
      {4000, u"Options"},
      {4001, u"&Display tooltips for switchboard buttons"},
      {4002, u"Show all applications in &tools menu"},
      {4003, u"Use Microsoft &Word style word counting"},
      {4004, u"Segmentation &rules..."},
      {4005, u"Enable Marl items on &context menus"},
      {4006, u"Always start with translation &wizard"},
      {4007, u"Translate with Marl"},
      {4008, u"&Hide \"number only\" segments"},
      {4009, u"For &XML/SGML, hide red bars at the beginning and end of a segment"},
      {4010, u"Hide &numbers in a numbered list"},
      {4011, u"Hide &bullet point characters (\u2022 and \u00B7)"},
      {4012, u"&Change display settings..."},
      {4013, u"&Switchboard"},
      {4014, u"&General"},
      {4015, u"&LAN Settings"},
      {4016, u"L&AN settings..."},
      {4017, u"&Hidden segments"},
      {4100, u"Segmentation rules"},
      {4101, u"Don't split on these strings"},
      {4102, u"Force split on these strings"},
      {5000, u"Select wizard mode"},
      {5001, u"&Import files in to a new project"},
      {5002, u"&Export files from an existing project"},
      {5010, u"Local Area Network (LAN) Settings"},
      {5011, u"Use the system &default settings for proxy server"},
      {5012, u"&Override the system default settings with these settings:"},
      {5013, u"Use a pro&xy server for your LAN"},
      {5014, u"&Address:"},
      {5015, u"&Port:"},
      {5016, u"OK"},
      {5017, u"Cancel"},
      {5018, u"Please provide the proxy server address and port"},
      {5019, u"Proxy Server"},
      {6000, u"Select language and file name"},
      {6001, u"Translation language"},
      {6002, u"Translation file"},
      {8000, u"Running Applications"},
      {8001,
       u"The following applications are still running.  Exiting will prevent these applications "
       u"from running correctly."},
      {8002, u"Switch To"},
      {8003, u"Exit"},
      {9026, u"Would you like to start the translation wizard when you start Marl?"},
      {9027, u"Would you like to launch a demonstration which shows you how to translate in Marl?"},
      {10000, u"Marl is already running"},
      {10001, u"This does not appear to be a valid Marl project file"},
      {10002,
       u"This will remove all Marl files from the folder.  Are you sure you want to continue?"},
      {10003, u"No temporary files found"},
      {10004, u"No target languages found"},
      {10005, u"No translation files found"},
      {10006, u"File not found : "},
      {10007, u"Open Marl project file"},
      {10008, u"Marl projects|*.qpj;*.qprx|All files|*.*"},
      {10009, u"If you exit Marl, the following applications will no longer run correctly:"},
      {10010, u"Are you sure you want to exit?"},
      {10043, u"Marl skins|*.qsk|All files (*.*)|*.*"},
      {20000, u"OK"},
      {20001, u"Cancel"},
      {30001, u"This tool is not installed. Please run the setup of the suite again."},
      {30002, u"System Information Is Unavailable At This Time"},
      {30003, u"The help file was not found: "},
      {30004, u"en"},
      {30005, u"Press"},
      {30006, u"Open"},
      {30007, u"Tick"},
      {30008, u"Clear"},
      {30009, u"Select"},
      {30010, u"This is not a valid project tracking server. Please check the name of the server."},
      {30011, u"Font"},
      {30012, u"Buttons of the panel"},
      {30013, u"Icon set"},
      {30014, u"Red %1, green %2, blue %3"},
      {30015, u"The maker's web site"},
      {30016, u"Hard to read:"},
      {30020, u"&Add"},
      {30021, u"&Remove"},
      {30022, u"A&dd"},
      {30023, u"Re&move"},
      {30024, u"[New string]"},
      {30030, u"Hide segments matching these regular expressions:"},
      {30031, u"&Add"},
      {30032, u"&Remove"},
      {30033, u"&Clear"},
  };
  return texts;
}

TEST(Translations, EveryTextIsTheListedOne) {
  const std::map<int, Text> texts = MemoryStrings("en").texts;
  for (const auto& [id, text] : EnglishTexts()) {
    const auto found = texts.find(id);
    ASSERT_NE(found, texts.end()) << id;
    EXPECT_EQ(found->second, text) << id;
  }
  for (const auto& [id, text] : texts) EXPECT_TRUE(EnglishTexts().contains(id)) << id;
}

TEST(Translations, TheListsIdsAreThereAndNoOthers) {
  const struct {
    int first, last;
  } ranges[] = {
      {501, 502},   {1000, 1009},   {1075, 1075},   {1081, 1085},   {1100, 1102}, {1200, 1205},
      {1300, 1302}, {1400, 1402},   {1500, 1506},   {1508, 1509},   {1600, 1603}, {2000, 2017},
      {2020, 2037}, {3003, 3005},   {3020, 3022},   {3025, 3027},   {3050, 3075}, {3100, 3108},
      {4000, 4017}, {4100, 4102},   {5000, 5002},   {5010, 5019},   {6000, 6002}, {8000, 8003},
      {9026, 9027}, {10000, 10010}, {10043, 10043}, {20000, 20001},
  };
  std::set<int> expected;
  for (const auto& range : ranges) {
    for (int id = range.first; id <= range.last; ++id) expected.insert(id);
  }
  std::set<int> shared;
  for (const auto& [id, text] : MemoryStrings("en").texts) {
    if (id < 30000) shared.insert(id);
  }
  EXPECT_EQ(shared, expected);
}

TEST(Translations, AnUnknownLanguageHasNoTexts) { EXPECT_TRUE(MemoryStrings("xx").texts.empty()); }

/// The ids in the header, by name.
std::map<std::string, int> Ids() {
  std::ifstream file(SourceFolder() / "resources/strings/ids.h");
  EXPECT_TRUE(file);
  std::map<std::string, int> ids;
  std::string define, name;
  for (std::string line; std::getline(file, line);) {
    int number = 0;
    std::istringstream words(line);
    if (words >> define >> name >> number && define == "#define") {
      EXPECT_TRUE(ids.emplace(name, number).second) << name;
    }
  }
  return ids;
}

TEST(Translations, EachIdOfTheHeaderHasANumberOfItsOwnAndAText) {
  std::set<int> numbers;
  for (const auto& [name, number] : Ids()) {
    EXPECT_TRUE(name.starts_with("IDS_")) << name;
    EXPECT_TRUE(numbers.insert(number).second) << name;
    EXPECT_TRUE(EnglishTexts().contains(number)) << name;
  }
  EXPECT_EQ(numbers.size(), EnglishTexts().size());
}

TEST(Translations, NoIdOccursTwiceInAFile) {
  const std::map<std::string, int> ids = Ids();
  for (const std::string& language : MemoryStrings::Languages()) {
    std::ifstream file(SourceFolder() / "resources/strings" / (language + ".inc"));
    ASSERT_TRUE(file) << language;
    int last = 0;
    std::size_t lines = 0;
    for (std::string line; std::getline(file, line); ++lines) {
      const std::string start = "MARL_STRING(";
      ASSERT_EQ(line.substr(0, start.size()), start) << language << ": " << line;
      const auto id = ids.find(line.substr(start.size(), line.find(',') - start.size()));
      ASSERT_NE(id, ids.end()) << language << ": " << line;
      EXPECT_GT(id->second, last) << language << ": out of order or twice";
      EXPECT_LE(id->second, 0xFFFF);
      EXPECT_EQ(line.find("\\\""), std::string::npos) << line;
      last = id->second;
    }
    EXPECT_EQ(lines, MemoryStrings(language).texts.size()) << language;
  }
}

TEST(Translations, AreThoseOfTheListOfLanguages) {
  std::ifstream file(SourceFolder() / "resources/strings/languages.txt");
  std::vector<std::string> listed;
  for (std::string line; std::getline(file, line);) {
    if (!line.empty() && line[0] != '#') listed.push_back(line.substr(0, line.find(' ')));
  }
  EXPECT_EQ(MemoryStrings::Languages(), listed);
  ASSERT_GE(listed.size(), 2u);
  EXPECT_EQ(listed[0], "en");
  std::set<std::string> files;
  for (const auto& entry :
       std::filesystem::directory_iterator(SourceFolder() / "resources/strings")) {
    if (entry.path().extension() == ".inc") files.insert(entry.path().stem().string());
  }
  EXPECT_EQ(files, (std::set<std::string>{listed.begin(), listed.end()}));
}

TEST(Translations, TheMarkedTextsAreTheFirstOnesAThirdLongerBetweenMarks) {
  const MemoryStrings first("en"), marked(MemoryStrings::kMarked);
  for (const auto& [id, text] : marked.texts) {
    EXPECT_TRUE(text.starts_with(u"[!!! ")) << id;
    EXPECT_NE(text.find(u" !!!]"), Text::npos) << id;
    EXPECT_GE(text.size() * 3, first.texts.at(id).size() * 4) << id;
    EXPECT_LE(text.size(), first.texts.at(id).size() * 4 / 3 + 40) << id;
  }
  EXPECT_EQ(marked.texts.at(IDS_OK), u"[!!! OK !!!]");
  EXPECT_EQ(marked.texts.at(IDS_FILE_NOT_FOUND), u"[!!! File not found : !!!] ");
  EXPECT_EQ(marked.texts.at(IDS_OPTIONS_DISPLAY), u"[!!! &Change display settings !!!]...");
  EXPECT_EQ(marked.texts.at(IDS_NOTHING_TO_CLEAN), u"[!!! No temporary files found !!!]");
  EXPECT_EQ(marked.texts.at(IDS_ASK_WIZARD),
            u"[!!! Would you like to start the translation wizard when you start Marl? ~~~~ ~~~~ "
            u"~~~~ !!!]");
}

class Translation : public testing::TestWithParam<std::string> {
 protected:
  const MemoryStrings english{"en"};
  const MemoryStrings strings{GetParam()};
};

TEST_P(Translation, HasTheSameIds) {
  std::set<int> ours, theirs;
  for (const auto& [id, text] : english.texts) ours.insert(id);
  for (const auto& [id, text] : strings.texts) theirs.insert(id);
  EXPECT_EQ(theirs, ours);
}

TEST_P(Translation, HasNoEmptyTextAndNoneThatTheResourceCannotHold) {
  for (const auto& [id, text] : strings.texts) {
    EXPECT_FALSE(text.empty()) << id;
    EXPECT_LE(text.size(), 4097u) << id;
    EXPECT_EQ(text.find(u'\0'), Text::npos) << id;
  }
}

TEST_P(Translation, HasAnAccessKeyWhereTheOriginalHasOne) {
  for (const auto& [id, text] : strings.texts) {
    EXPECT_LE(CountAccessKeys(text), 1) << id;
    EXPECT_EQ(AccessKey(text) != 0, AccessKey(english.texts.at(id)) != 0) << id;
  }
}

TEST_P(Translation, HasNoNumberWhereFormsLookForOne) {
  for (const auto& [id, text] : strings.texts) {
    const bool number = std::all_of(text.begin(), text.end(),
                                    [](char16_t unit) { return unit >= u'0' && unit <= u'9'; });
    EXPECT_FALSE(number) << id;
  }
}

TEST_P(Translation, KeepsTheDotsOfWhatOpensADialog) {
  for (const auto& [id, text] : strings.texts) {
    EXPECT_EQ(text.ends_with(u"..."), english.texts.at(id).ends_with(u"...")) << id;
  }
}

TEST_P(Translation, KeepsTheBlankBeforeWhatFollows) {
  for (const auto& [id, text] : strings.texts) {
    EXPECT_EQ(text.ends_with(u' '), english.texts.at(id).ends_with(u' ')) << id;
  }
}

TEST_P(Translation, KeepsThePatternsOfFilters) {
  for (const auto& [id, text] : english.texts) {
    const std::vector<Text> expected = Fields(text);
    const std::vector<Text> fields = Fields(strings.texts.at(id));
    ASSERT_EQ(fields.size(), expected.size()) << id;
    for (std::size_t i = 1; i < fields.size(); i += 2) EXPECT_EQ(fields[i], expected[i]) << id;
  }
}

TEST_P(Translation, AccessKeysDoNotClash) {
  // The texts of the first language are the suite's: where access keys clash, Windows moves from
  // one to the other and waits for Enter.
  const std::vector<std::string> shared = {
      "display settings: S of 3052 and 3071",
      "display settings: U of 3069 and 3073",
      "options, general: H of 4017 and 4008",
  };
  const bool sharedWords = GetParam() == "en" || GetParam() == MemoryStrings::kMarked;
  EXPECT_EQ(Clashes(strings), sharedWords ? shared : std::vector<std::string>{});
}

std::vector<std::string> AllLanguages() {
  std::vector<std::string> all = MemoryStrings::Languages();
  all.emplace_back(MemoryStrings::kMarked);
  return all;
}

INSTANTIATE_TEST_SUITE_P(Languages, Translation, testing::ValuesIn(AllLanguages()),
                         [](const auto& row) {
                           std::string name = row.param;
                           std::replace(name.begin(), name.end(), '-', '_');
                           return name;
                         });

TEST(Translations, AClashIsSeen) {
  MemoryStrings strings("de");
  strings.texts[1102] = u"Auch &importieren";
  EXPECT_EQ(Clashes(strings), std::vector<std::string>{"TM menu: I of 1101 and 1102"});
}

TEST(Translations, TheTableFailsForAnIdThatItDoesNotHave) {
  const MemoryStrings resource("de");
  const StringTable table(resource);
  EXPECT_EQ(table.Get(20001), u"Abbrechen");
  Text text = u"before";
  EXPECT_FALSE(table.Find(1, text));
  EXPECT_EQ(text, u"before");
  try {
    table.Get(1);
    ADD_FAILURE() << "no failure";
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.number(), 326);
    EXPECT_EQ(error.text(), u"Resource with identifier '1' not found");
  }
}

}  // namespace
}  // namespace marl
