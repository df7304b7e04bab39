#include "appearance/SkinFile.h"

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <string>

#include "appearance/FontSpec.h"
#include "platform/RuntimeError.h"
#include "platform/memory/MemoryFileSystem.h"

namespace marl {
namespace {

constexpr TextView kSkin = u"C:\\Marl\\Skins\\Test.qsk";

/// Accepts values as the dialog's controls do: a refused value leaves the old one.
class Controls : public SkinTarget {
 public:
  SkinSettings skin;
  int seen = 0;

  void SetNumber(std::int32_t SkinSettings::*field, std::int32_t number) override {
    ++seen;
    if (field == &SkinSettings::Angle) InRange(number, 0, 359);
    if (field == &SkinSettings::BorderWidth) InRange(number, 1, 2);
    if (field == &SkinSettings::Icons) InRange(number, 0, 3);
    if (field == &SkinSettings::IconsPerRow) InRange(number, 3, 6);
    if (field == &SkinSettings::TwoStateOffset) {
      EXPECT_TRUE(number == 0 || number == 18);
    }
    skin.*field = number;
  }
  void SetText(Text SkinSettings::*field, TextView text) override {
    ++seen;
    skin.*field = field == &SkinSettings::DisplayIcons ? FormatDisplayIcons(ParseDisplayIcons(text))
                                                       : Text(text);
  }

 private:
  static void InRange(std::int32_t number, std::int32_t low, std::int32_t high) {
    if (number < low || number > high) throw RuntimeError::InvalidPropertyValue();
  }
};

class SkinFile : public testing::Test {
 protected:
  MemoryFileSystem files;
  modUTF8 writer{files};
  Controls controls;

  SkinFile() { files.PutFolder(u"C:\\Marl\\Skins"); }

  /// Loads a file with this text.
  void Load(std::string_view text, const NumberFormat& format = {}) {
    files.Put(kSkin, text);
    EXPECT_TRUE(LoadSkinFile(files, kSkin, controls, format));
  }
  void LoadParameter(const std::string& name, const std::string& value) {
    Load("<marlskin>\r\n <parameter name=\"" + name + "\" value=\"" + value +
         "\"/>\r\n</marlskin>");
  }
  std::string Saved(const SkinSettings& skin) {
    SaveSkinFile(writer, kSkin, skin);
    const auto content = files.Content(kSkin);
    EXPECT_TRUE(content.has_value());
    EXPECT_EQ(files.OpenFiles(), 0);
    return content ? std::string(content->begin(), content->end()) : "";
  }
};

SkinSettings Odd() {
  SkinSettings skin;
  skin.Angle = 217;
  skin.Color1 = 1;
  skin.Color2 = 0xFFFFFF;
  skin.Border1 = 3;
  skin.Border2 = -2147483643;
  skin.BorderWidth = 2;
  skin.Text1 = 5;
  skin.Text2 = 6;
  skin.Icons = 3;
  skin.TwoStateOffset = 18;
  skin.IconsPerRow = 3;
  skin.Font1 = u"Tom & \"Jerry\" <3>|8.25|";
  skin.Font2 = u"\u041C\u0438\u0440 \u4E16\u754C|12|iu";
  skin.DisplayIcons = u"171|160|151|141|131|121|111|101|091|081|071|061|051|041|031|021|011|000";
  return skin;
}

TEST_F(SkinFile, LinesAreInTheirOrder) {
  EXPECT_EQ(Saved(SkinSettings()),
            "<?xml version=\"1.0\"?>\r\n"
            "<marlskin>\r\n"
            " <parameter name=\"colour1\" value=\"12962742\"/>\r\n"
            " <parameter name=\"colour2\" value=\"3755264\"/>\r\n"
            " <parameter name=\"angle\" value=\"90\"/>\r\n"
            " <parameter name=\"text1\" value=\"16777215\"/>\r\n"
            " <parameter name=\"text2\" value=\"2733534\"/>\r\n"
            " <parameter name=\"border1\" value=\"16777215\"/>\r\n"
            " <parameter name=\"border2\" value=\"0\"/>\r\n"
            " <parameter name=\"borderwidth\" value=\"1\"/>\r\n"
            " <parameter name=\"icons\" value=\"0\"/>\r\n"
            " <parameter name=\"twostate\" value=\"0\"/>\r\n"
            " <parameter name=\"iconsperrow\" value=\"5\"/>\r\n"
            " <parameter name=\"font1\" value=\"Arial|10|b\"/>\r\n"
            " <parameter name=\"font2\" value=\"Arial|10|bu\"/>\r\n"
            " <parameter name=\"displayicons\" value=\"001|011|021|031|041|051|061|071|081|091|101|"
            "111|121|131|141|151|161|171\"/>\r\n"
            "</marlskin>\r\n");
}

TEST_F(SkinFile, SaveAndLoadReturnsAllFourteenValues) {
  Saved(Odd());
  EXPECT_TRUE(LoadSkinFile(files, kSkin, controls));
  EXPECT_EQ(controls.skin, Odd());
  EXPECT_EQ(controls.seen, 14);
}

TEST_F(SkinFile, FontNameWithAnAmpersandComesBackWhole) {
  SkinSettings skin;
  skin.Font1 = u"Black & White|10|b";
  EXPECT_NE(Saved(skin).find("value=\"Black &amp; White|10|b\""), std::string::npos);
  EXPECT_TRUE(LoadSkinFile(files, kSkin, controls));
  EXPECT_EQ(controls.skin.Font1, u"Black & White|10|b");
}

TEST_F(SkinFile, SavingReplacesALongerFile) {
  files.Put(kSkin, std::string(100000, 'x'), kReadOnly);
  const std::string saved = Saved(Odd());
  EXPECT_TRUE(saved.ends_with("</marlskin>\r\n"));
  EXPECT_LT(saved.size(), 2000u);
}

TEST_F(SkinFile, FailuresOfSavingAreSilent) {
  for (const FileAction action : {FileAction::kRemove, FileAction::kCreate, FileAction::kWrite}) {
    files.Put(kSkin, "old");
    files.FailNext(action, kAccessDenied);
    SaveSkinFile(writer, kSkin, Odd());
    EXPECT_EQ(files.OpenFiles(), 0);
  }
  EXPECT_FALSE(Saved(SkinSettings()).empty());
  EXPECT_EQ(writer.Indent(), 0);
}

TEST_F(SkinFile, MissingFileChangesNothing) {
  EXPECT_FALSE(LoadSkinFile(files, u"C:\\Marl\\Skins\\None.qsk", controls));
  EXPECT_FALSE(LoadSkinFile(files, u"C:\\Marl\\Skins", controls));
  EXPECT_FALSE(LoadSkinFile(files, u"", controls));
  EXPECT_EQ(controls.seen, 0);
}

TEST_F(SkinFile, FileThatCannotBeReadChangesNothing) {
  files.Put(kSkin, "<parameter name=\"angle\" value=\"1\"/>");
  files.FailNext(FileAction::kRead, kAccessDenied);
  EXPECT_FALSE(LoadSkinFile(files, kSkin, controls));
  EXPECT_EQ(controls.seen, 0);
}

TEST_F(SkinFile, AnyRootElementWillDo) {
  Load("<?xml version=\"1.0\"?><zoo><parameter name=\"angle\" value=\"45\"/></zoo>");
  EXPECT_EQ(controls.skin.Angle, 45);
  Load("<parameter name=\"angle\" value=\"46\"/>");
  EXPECT_EQ(controls.skin.Angle, 46);
}

TEST_F(SkinFile, StartAndEndTagIsNotRead) {
  Load("<marlskin><parameter name=\"angle\" value=\"45\"></parameter></marlskin>");
  EXPECT_EQ(controls.seen, 0);
}

TEST_F(SkinFile, OtherTagsAreIgnored) {
  Load(
      "<marlskin><Parameter name=\"angle\" value=\"1\"/><param name=\"angle\" value=\"2\"/>"
      "<!-- <parameter name=\"angle\" value=\"3\"/> --><![CDATA[<parameter name=\"angle\" "
      "value=\"4\"/>]]>text</marlskin>");
  EXPECT_EQ(controls.seen, 0);
}

TEST_F(SkinFile, NamesAreComparedExactly) {
  for (const char* name : {"Colour1", "COLOUR1", "colour", "colour11", " colour1", ""}) {
    LoadParameter(name, "7");
  }
  EXPECT_EQ(controls.seen, 0);
}

TEST_F(SkinFile, AttributeNamesIgnoreCaseAndOrder) {
  Load("<parameter VALUE='45' Name='angle'/>");
  EXPECT_EQ(controls.skin.Angle, 45);
}

TEST_F(SkinFile, NumberForATextAndTextForANumberAreIgnored) {
  LoadParameter("font1", "12");
  LoadParameter("displayicons", "001");
  LoadParameter("angle", "steep");
  LoadParameter("colour1", "");
  Load("<parameter name=\"colour1\"/>");
  EXPECT_EQ(controls.seen, 0);
}

TEST_F(SkinFile, NumbersAreNormalised) {
  const struct {
    const char* name;
    const char* value;
    std::int32_t SkinSettings::*field;
    std::int32_t expected;
  } cases[] = {
      {"icons", "3", &SkinSettings::Icons, 3},
      {"icons", "-1", &SkinSettings::Icons, 1},
      {"icons", "4", &SkinSettings::Icons, 1},
      {"icons", "0", &SkinSettings::Icons, 0},
      {"borderwidth", "0", &SkinSettings::BorderWidth, 2},
      {"borderwidth", "1", &SkinSettings::BorderWidth, 1},
      {"borderwidth", "17", &SkinSettings::BorderWidth, 2},
      {"twostate", "1", &SkinSettings::TwoStateOffset, 18},
      {"twostate", "0", &SkinSettings::TwoStateOffset, 0},
      {"angle", "90.5", &SkinSettings::Angle, 90},
      {"angle", "91.5", &SkinSettings::Angle, 92},
      {"angle", " 33 ", &SkinSettings::Angle, 33},
      {"angle", "&amp;H10", &SkinSettings::Angle, 16},
      {"colour1", "-2147483648", &SkinSettings::Color1, std::numeric_limits<std::int32_t>::min()},
  };
  for (const auto& row : cases) {
    LoadParameter(row.name, row.value);
    EXPECT_EQ(controls.skin.*row.field, row.expected) << row.name << " " << row.value;
  }
}

TEST_F(SkinFile, NumbersAreReadAsTheUserWritesThem) {
  Load("<parameter name=\"angle\" value=\"44,4\"/>", {u',', u'.'});
  EXPECT_EQ(controls.skin.Angle, 44);
}

TEST_F(SkinFile, RefusedValueIsSkippedAndTheRestIsRead) {
  const std::pair<const char*, const char*> refused[] = {
      {"iconsperrow", "2"},
      {"iconsperrow", "7"},
      {"iconsperrow", "-2147483648"},
      {"angle", "360"},
      {"angle", "-1"},
      {"colour1", "2147483648"},
      {"colour1", "1e99"},
      {"angle", "9999999999999999999999999"},
      {"displayicons", "001|011"},
      {"displayicons", "x"},
      {"icons", "-2147483649"},
  };
  for (const auto& [name, value] : refused) {
    controls = Controls();
    Load("<marlskin><parameter name=\"" + std::string(name) + "\" value=\"" + value +
         "\"/><parameter name=\"text2\" value=\"77\"/></marlskin>");
    SkinSettings expected;
    expected.Text2 = 77;
    EXPECT_EQ(controls.skin, expected) << name << " " << value;
  }
}

TEST_F(SkinFile, LaterParameterOfTheSameNameWins) {
  Load(
      "<marlskin><parameter name=\"angle\" value=\"1\"/><parameter name=\"angle\" value=\"2\"/>"
      "<parameter name=\"angle\" value=\"999\"/></marlskin>");
  EXPECT_EQ(controls.skin.Angle, 2);
}

TEST_F(SkinFile, AttributesBeforeADuplicateCount) {
  Load(
      "<parameter name=\"angle\" value=\"45\" value=\"46\"/>"
      "<parameter name=\"text1\" name=\"text2\" value=\"46\"/>"
      "<parameter name=\"text2\" value=\"7\"/>");
  EXPECT_EQ(controls.skin.Angle, 45);
  EXPECT_EQ(controls.skin.Text1, SkinSettings().Text1);
  EXPECT_EQ(controls.skin.Text2, 7);
}

TEST_F(SkinFile, TruncatedFileGivesWhatComesBeforeTheEnd) {
  const std::string whole = Saved(Odd());
  int before = 0;
  for (std::size_t length = 0; length <= whole.size(); ++length) {
    controls = Controls();
    Load(whole.substr(0, length));
    EXPECT_GE(controls.seen, before) << length;
    before = controls.seen;
  }
  EXPECT_EQ(before, 14);
}

TEST_F(SkinFile, HugeFileIsRead) {
  std::string text = "<marlskin>";
  for (int i = 0; i < 20000; ++i) text += " <parameter name=\"nothing\" value=\"1\"/>\r\n";
  text += std::string(1 << 20, 'x') + "<parameter name=\"angle\" value=\"9\"/>";
  text += "<parameter name=\"font1\" value=\"" + std::string(1 << 20, 'A') + "|10|\"/>";
  Load(text);
  EXPECT_EQ(controls.skin.Angle, 9);
  EXPECT_EQ(controls.skin.Font1.size(), (1u << 20) + 4);
}

TEST_F(SkinFile, EmptyFileAndNoiseChangeNothing) {
  Load("");
  std::mt19937 random(4);
  for (int i = 0; i < 200; ++i) {
    std::string noise;
    for (int k = 0; k < 300; ++k) noise += static_cast<char>(random() & 0xFF);
    Load(noise);
  }
  EXPECT_EQ(controls.seen, 0);
}

TEST_F(SkinFile, DamagedBytesNeverDoMoreThanMisread) {
  const std::string whole = Saved(Odd());
  std::mt19937 random(6);
  for (int i = 0; i < 2000; ++i) {
    std::string damaged = whole;
    for (int k = 0; k < 4; ++k) {
      damaged[random() % damaged.size()] = "<>\"'=/&| \0\xFFz9-"[random() % 14];
    }
    Load(damaged);
  }
  EXPECT_GT(controls.seen, 0);
}

TEST_F(SkinFile, SkinFolderIsMadeWhenItIsMissing) {
  EXPECT_EQ(PrepareSkinFolder(files, u"C:\\Marl"), u"C:\\Marl\\Skins");
  EXPECT_EQ(PrepareSkinFolder(files, u"C:\\Marl\\Skins"), u"C:\\Marl\\Skins\\Skins");
  EXPECT_TRUE(files.FolderExists(u"C:\\Marl\\Skins\\Skins"));
  files.FailNext(FileAction::kMakeFolder, kAccessDenied);
  EXPECT_EQ(PrepareSkinFolder(files, u"C:\\Windows"), u"C:\\Windows\\Skins");
  EXPECT_FALSE(files.FolderExists(u"C:\\Windows\\Skins"));
}

}  // namespace
}  // namespace marl
