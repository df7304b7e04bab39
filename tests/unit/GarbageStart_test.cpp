// Starts with garbage in the registry and the settings. The values are those that a start really
// reads, so the list cannot become outdated.

#include <gtest/gtest.h>

#include <set>

#include "tests/unit/SuiteWorld.h"

namespace marl {

namespace {

using Place = MemoryRegistryStore::Place;
using Setting = MemorySettingsStore::Setting;

struct RegistryGarbage {
  const char* name;
  std::uint32_t kind;
  NarrowText data;
};

const std::vector<RegistryGarbage>& RegistryGarbages() {
  static const std::vector<RegistryGarbage> garbages = {
      {"text", kRegSz, "garbage"},
      {"emptyText", kRegSz, ""},
      {"nul", kRegSz, NarrowText(1, '\0')},
      {"withoutEnd", kRegSz, NarrowText("\xFF\xFE\x80<>\"&", 7)},
      {"longText", kRegSz, NarrowText(100000, '9')},
      {"percents", kRegExpandSz, "%PATH%%%1%|%"},
      {"texts", kRegMultiSz, NarrowText("a\0b\0\0", 5)},
      {"bars", kRegSz, "|||||||||||||||||||||||||||||||||||"},
      {"bigNumberText", kRegSz, "99999999999999999999"},
      {"zero", kRegDword, NarrowText(4, '\0')},
      {"allBits", kRegDword, "\xFF\xFF\xFF\xFF"},
      {"largest", kRegDword, "\xFF\xFF\xFF\x7F"},
      {"smallest", kRegDword, NarrowText("\0\0\0\x80", 4)},
      {"shortNumber", kRegDword, "\x07"},
      {"longNumber", kRegDword, NarrowText(16, '\x07')},
      {"noNumber", kRegDword, ""},
      {"bytes", kRegBinary, NarrowText("\x01\0\xFF", 3)},
      {"noBytes", kRegBinary, ""},
      {"nothing", kRegNone, ""},
      {"unknownKind", 0xFFFFFFFF, "????????"},
  };
  return garbages;
}

const std::vector<Text>& SettingGarbages() {
  static const std::vector<Text> garbages = {
      u"",      u"garbage", u"-1",         u"99999999999999999999", u"1e400",       u"&H7FFFFFFF",
      u"1,5.2", u" ",       u"\xD800\x01", Text(100000, u'9'),      u"\"%1\" & <x>"};
  return garbages;
}

std::string Printable(const Text& text) {
  std::string printable;
  for (const char16_t unit : text)
    printable += unit < 0x7F && unit >= 0x20 ? static_cast<char>(unit) : '?';
  return printable;
}

/// Outcome of a start.
struct Outcome {
  bool up = false;
  Text error;  ///< the runtime's text, if a failure ended the program
};

const std::set<Text>& RuntimeTexts() {
  static const std::set<Text> texts = {u"Type mismatch", u"Overflow", u"Division by zero",
                                       u"Subscript out of range", u"Invalid property value"};
  return texts;
}

/// Starts the program, and checks that it is running or has ended with one runtime failure: a
/// message, exit code 1, nothing left behind.
Outcome StartIn(SuiteWorld& world) {
  const int code = world.Start();
  Outcome outcome;
  if (!world.desktop.ended()) {
    outcome.up = world.main().loaded();
    EXPECT_TRUE(outcome.up);
    for (const auto& message : world.desktop.messages) EXPECT_EQ(message.flags & kCritical, 0);
  } else {
    EXPECT_EQ(code, 1);
    EXPECT_FALSE(world.desktop.messages.empty());
    if (!world.desktop.messages.empty()) {
      const auto& last = world.desktop.messages.back();
      EXPECT_EQ(last.flags, kCritical);
      EXPECT_TRUE(RuntimeTexts().contains(last.text)) << Printable(last.text);
      outcome.error = last.text;
    }
  }
  EXPECT_EQ(world.registry.OpenKeys(), 0u);
  EXPECT_EQ(world.files.OpenFiles(), 0);
  return outcome;
}

/// Every value that a start reads from the registry. Values are only read from keys that exist, so
/// the keys are created first.
std::set<Place> ValuesRead() {
  std::set<Place> keys;
  for (std::size_t before = ~std::size_t{0}; before != keys.size();) {
    before = keys.size();
    SuiteWorld world;
    for (const Place& key : keys) {
      OpenKeyHandle made;
      world.registry.CreateKey(key.root, key.path, kKeyWrite, made);
    }
    world.Start();
    keys = world.registry.OpenedPaths();
    if (before == keys.size()) return world.registry.AskedValues();
  }
  return {};
}

std::set<Setting> SettingsRead() {
  SuiteWorld world;
  world.Start();
  return world.settings.asked;
}

/// Only values of the layout, the position and the flags may end the program.
bool MayEnd(const Place& value) {
  static const std::set<NarrowText> names = {
      "Angle", "Color1", "Color2",   "Border1",     "Border2",      "BorderWidth", "Text1",
      "Text2", "Icons",  "TwoState", "IconsPerRow", "DisplayIcons", "Font1",       "Font2"};
  return value.path == "Software\\Oru\\Marl\\GUI" && names.contains(value.name);
}
bool MayEnd(const Setting& setting) {
  static const std::set<Text> keys = {u"Left", u"Top", u"WindowState", u"Tooltips", u"Tools"};
  return setting.application == u"Marl" && keys.contains(setting.key);
}

}  // namespace

TEST(GarbageStart, KnowsWhatAStartReads) {
  const std::set<Place> values = ValuesRead();
  for (const char* name : {"Angle", "IconsPerRow", "Font1", "DisplayIcons"}) {
    EXPECT_TRUE(values.contains({kCurrentUser, "Software\\Oru\\Marl\\GUI", name})) << name;
  }
  EXPECT_GE(values.size(), 16u);
  const std::set<Setting> settings = SettingsRead();
  for (const TextView key : {u"Left", u"Top", u"WindowState", u"Tooltips", u"Tools", u"FirstRun"}) {
    EXPECT_TRUE(settings.contains({u"Marl", u"Settings", Text(key)}));
  }
}

TEST(GarbageStart, EachRegistryValueAlone) {
  int ended = 0;
  int up = 0;
  for (const Place& value : ValuesRead()) {
    for (const RegistryGarbage& garbage : RegistryGarbages()) {
      SCOPED_TRACE(value.path + '\\' + value.name + ": " + garbage.name);
      SuiteWorld world;
      world.registry.Plant(value.root, value.path, value.name, garbage.kind, garbage.data);
      const Outcome outcome = StartIn(world);
      EXPECT_TRUE(outcome.up || MayEnd(value));
      ++(outcome.up ? up : ended);
    }
  }
  EXPECT_GT(up, 0);
  EXPECT_GT(ended, 0) << "a bad order of the buttons ends the program";
}

TEST(GarbageStart, EachSettingAlone) {
  for (const Setting& setting : SettingsRead()) {
    for (const Text& garbage : SettingGarbages()) {
      SCOPED_TRACE(Printable(setting.key) + ": " + Printable(garbage.substr(0, 40)));
      SuiteWorld world;
      world.settings.Put(setting.application, setting.section, setting.key, garbage);
      const Outcome outcome = StartIn(world);
      EXPECT_TRUE(outcome.up || MayEnd(setting));
    }
  }
}

TEST(GarbageStart, AllRegistryValuesAtOnce) {
  const std::set<Place> values = ValuesRead();
  for (const RegistryGarbage& garbage : RegistryGarbages()) {
    SCOPED_TRACE(garbage.name);
    SuiteWorld world;
    for (const Place& value : values) {
      world.registry.Plant(value.root, value.path, value.name, garbage.kind, garbage.data);
    }
    StartIn(world);
  }
}

TEST(GarbageStart, AllSettingsAtOnce) {
  const std::set<Setting> settings = SettingsRead();
  for (const Text& garbage : SettingGarbages()) {
    SCOPED_TRACE(Printable(garbage.substr(0, 40)));
    SuiteWorld world;
    for (const Setting& setting : settings) {
      world.settings.Put(setting.application, setting.section, setting.key, garbage);
    }
    StartIn(world);
  }
}

TEST(GarbageStart, BadOrderOrNoColumnsEndWithTheRuntimesText) {
  struct Row {
    const char* value;
    std::uint32_t kind;
    NarrowText data;
    Text error;
  };
  const std::vector<Row> rows = {
      {"IconsPerRow", kRegDword, NarrowText(4, '\0'), u"Division by zero"},
      {"DisplayIcons", kRegSz, NarrowText("001|011", 8), u"Subscript out of range"},
      {"DisplayIcons", kRegSz, NarrowText(1, '\0'), u"Subscript out of range"},
      {"DisplayIcons", kRegSz, NarrowText("xx1|011", 8), u"Type mismatch"},
      {"DisplayIcons", kRegSz, "", u""},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.value + (": " + row.data));
    SuiteWorld world;
    world.registry.Plant(kCurrentUser, "Software\\Oru\\Marl\\GUI", row.value, row.kind, row.data);
    EXPECT_EQ(StartIn(world).error, row.error);
  }
}

}  // namespace marl
