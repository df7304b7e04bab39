#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>

#include "appearance/CaptionContrast.h"
#include "appearance/FontSpec.h"
#include "appearance/SkinFile.h"
#include "platform/memory/MemoryDesktop.h"
#include "platform/memory/MemoryFileSystem.h"
#include "tests/unit/SourceFolder.h"

// The skins that come with the program.

namespace marl {
namespace {

namespace fs = std::filesystem;

class AllValues : public SkinTarget {
 public:
  SkinSettings skin;
  std::set<std::ptrdiff_t> seen;  ///< positions of the parameters in their table

  void SetNumber(std::int32_t SkinSettings::*field, std::int32_t number) override {
    Saw([&](const SkinParameter& parameter) { return parameter.number == field; });
    skin.*field = number;
  }
  void SetText(Text SkinSettings::*field, TextView text) override {
    Saw([&](const SkinParameter& parameter) { return parameter.text == field; });
    skin.*field = text;
  }

 private:
  template <typename Is>
  void Saw(Is is) {
    seen.insert(std::find_if(kSkinParameters.begin(), kSkinParameters.end(), is) -
                kSkinParameters.begin());
  }
};

/// Relative luminance of a colour, from 0 to 1.
double Lightness(Color color) {
  const auto linear = [&](int shift) {
    const double part = (color >> shift & 255) / 255.0;
    return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(0) + 0.7152 * linear(8) + 0.0722 * linear(16);
}

/// Contrast of two colours, from 1 to 21; small text needs 4.5.
double Contrast(Color a, Color b) {
  const double light = std::max(Lightness(a), Lightness(b));
  const double dark = std::min(Lightness(a), Lightness(b));
  return (light + 0.05) / (dark + 0.05);
}

class ShippedSkins : public testing::Test {
 protected:
  void SetUp() override {
    for (const auto& entry : fs::directory_iterator(SourceFolder() / "resources/skins")) {
      std::ifstream stream(entry.path(), std::ios::binary);
      const std::string bytes((std::istreambuf_iterator<char>(stream)), {});
      files.Put(u"C:\\Skins\\" + entry.path().filename().u16string(), bytes);
      names.push_back(entry.path().filename().u16string());
    }
  }
  AllValues Load(const Text& name) {
    AllValues values;
    EXPECT_TRUE(LoadSkinFile(files, u"C:\\Skins\\" + name, values));
    return values;
  }

  MemoryFileSystem files;
  std::vector<Text> names;
};

TEST_F(ShippedSkins, ThereAreSixAndTheDefault) {
  EXPECT_GE(names.size(), 7u);
  EXPECT_EQ(Load(u"Marl.qsk").skin, SkinSettings());
}

TEST_F(ShippedSkins, EachIsCompleteAndInRange) {
  for (const Text& name : names) {
    const AllValues values = Load(name);
    const SkinSettings& skin = values.skin;
    EXPECT_EQ(values.seen.size(), 14u);
    EXPECT_TRUE(skin.Angle >= 0 && skin.Angle <= 359);
    EXPECT_TRUE(skin.IconsPerRow >= 3 && skin.IconsPerRow <= 6);
    EXPECT_NO_THROW(ParseDisplayIcons(skin.DisplayIcons));
    for (const Color color :
         {skin.Color1, skin.Color2, skin.Text1, skin.Text2, skin.Border1, skin.Border2}) {
      EXPECT_TRUE(color >= 0 && color <= 0xFFFFFF);
    }
  }
}

TEST_F(ShippedSkins, EachIsAsTheProgramWritesIt) {
  modUTF8 writer(files);
  for (const Text& name : names) {
    SaveSkinFile(writer, u"C:\\copy.qsk", Load(name).skin);
    EXPECT_EQ(files.Content(u"C:\\copy.qsk"), files.Content(u"C:\\Skins\\" + name));
  }
}

TEST_F(ShippedSkins, LabelsAreReadableOnBothEndsOfTheGradient) {
  for (const Text& name : names) {
    if (name == u"Marl.qsk") continue;  // its colours are the program's defaults
    const SkinSettings skin = Load(name).skin;
    for (const Color ground : {skin.Color1, skin.Color2}) {
      EXPECT_GE(Contrast(skin.Text1, ground), 4.5) << fs::path(name);
      EXPECT_GE(Contrast(skin.Text2, ground), 4.5) << fs::path(name);
    }
  }
}

// The default skin's colours are given. If they are readable one day, the hint of the display
// settings is not what a new user sees first any more.
TEST_F(ShippedSkins, CaptionsAreReadableOnEveryPointOfTheGradientUnderThem) {
  MemoryDesktop desktop;
  for (const Text& name : names) {
    const SkinSettings skin = Load(name).skin;
    const DisplayOrder order = ParseDisplayIcons(skin.DisplayIcons);
    const auto shown = std::count_if(
        order.begin(), order.end(), [](const DisplayPosition& position) { return position.shown; });
    const CaptionContrast contrast = ContrastOfCaptions(desktop, skin, static_cast<int>(shown));
    Font normal, highlighted;
    ApplyFontSpec(normal, skin.Font1);
    ApplyFontSpec(highlighted, skin.Font2);
    const bool given = name == u"Marl.qsk";
    EXPECT_EQ(contrast.normal >= NeededContrast(normal), !given) << fs::path(name);
    EXPECT_EQ(contrast.highlighted >= NeededContrast(highlighted), !given) << fs::path(name);
  }
}

}  // namespace
}  // namespace marl
