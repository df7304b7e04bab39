// Writes the skins that ship with the program into a folder, by the program's own writer:
//   skins FOLDER

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

#include "appearance/SkinFile.h"
#include "appearance/SkinSettings.h"
#include "documents/modUTF8.h"
#include "platform/FileSystem.h"

namespace marl {
namespace {

namespace fs = std::filesystem;

/// The machine's files, with what a writer needs.
class HostFiles : public FileSystem {
 public:
  bool NormalFileExists(TextView path) const override { return FileExists(path); }
  bool FileExists(TextView path) const override { return fs::is_regular_file(fs::path(path)); }
  bool FolderExists(TextView path) const override { return fs::is_directory(fs::path(path)); }
  Status ReadAll(TextView, Bytes&) const override { return kAccessDenied; }
  std::unique_ptr<OutputFile> Create(TextView path, Status& status) override {
    class Output : public OutputFile {
     public:
      explicit Output(const fs::path& path) : stream(path, std::ios::binary | std::ios::trunc) {}
      Status Write(const void* data, std::size_t size) override {
        stream.write(static_cast<const char*>(data), static_cast<std::streamsize>(size));
        return stream ? kOk : kAccessDenied;
      }
      std::ofstream stream;
    };
    auto output = std::make_unique<Output>(fs::path(path));
    status = output->stream ? kOk : kAccessDenied;
    if (status != kOk) return nullptr;
    return output;
  }
  Status Remove(TextView path, bool) override {
    std::error_code error;
    return fs::remove(fs::path(path), error) ? kOk : kAccessDenied;
  }
  Status Copy(TextView, TextView) override { return kAccessDenied; }
  Status MakeFolder(TextView) override { return kAccessDenied; }
  Status Attributes(TextView, std::uint32_t&) const override { return kAccessDenied; }
  Status SetAttributes(TextView, std::uint32_t) override { return kAccessDenied; }
  std::unique_ptr<FileSearch> Find(TextView) const override { return nullptr; }
  Text TempPath() const override { return {}; }
  Text TempName() override { return {}; }
};

/// A colour from 0xRRGGBB.
constexpr Color Web(int rgb) { return Rgb(rgb >> 16 & 255, rgb >> 8 & 255, rgb & 255); }

struct Look {
  const char16_t* name;
  std::int32_t angle;
  int color1, color2;
  int border1, border2;
  std::int32_t borderWidth;
  int text1, text2;
  std::int32_t icons;
  bool twoState;
  std::int32_t iconsPerRow;
  const char16_t* font1;
  const char16_t* font2;
};

constexpr Look kLooks[] = {
    // Light: paper and dark green ink.
    {u"Porcelain", 60, 0xF7F5EF, 0xD8E4DE, 0xFFFFFF, 0x7F968C, 1, 0x1C3A31, 0x8A4B00, 2, true, 5,
     u"Tahoma|9|", u"Tahoma|9|b"},
    // Dark: night blue with the colourful tiles.
    {u"Midnight", 120, 0x0B1220, 0x25344F, 0x5A76A8, 0x04070D, 1, 0xC9D5E8, 0xFFD46B, 3, true, 6,
     u"Tahoma|9|", u"Tahoma|9|b"},
    // Only black, white and yellow; large type, wide frame, pictures always bright.
    {u"High Contrast", 0, 0x000000, 0x000000, 0xFFFF00, 0xFFFF00, 2, 0xFFFFFF, 0xFFFF00, 0, false,
     5, u"Arial|11|b", u"Arial|11|bu"},
    // Deep green, like the default, but darker.
    {u"Deep Green", 45, 0x00382A, 0x0B6650, 0xDEB529, 0x00241A, 2, 0xF6EED6, 0xFFD24D, 0, true, 5,
     u"Arial|10|b", u"Arial|10|b"},
    {u"Harvest", 30, 0x4F2410, 0x9A4E1C, 0xF2C879, 0x2A1207, 1, 0xFFF3E0, 0xFFE08A, 1, true, 5,
     u"Georgia|10|", u"Georgia|10|b"},
    // Neutral greys; pictures always bright, only frame and type react to the mouse.
    {u"Slate", 315, 0x2C3740, 0x52616C, 0x90A3B0, 0x161C21, 1, 0xF2F6F8, 0xFFDA80, 2, false, 5,
     u"Verdana|8.25|", u"Verdana|8.25|u"},
    {u"Lagoon", 200, 0x06343F, 0x0F6C7C, 0x7FD4E0, 0x021A20, 1, 0xE9FBFF, 0xFFE27A, 3, true, 4,
     u"Trebuchet MS|10|", u"Trebuchet MS|10|b"},
};

SkinSettings SkinOf(const Look& look) {
  SkinSettings skin;
  skin.Angle = look.angle;
  skin.Color1 = Web(look.color1);
  skin.Color2 = Web(look.color2);
  skin.Border1 = Web(look.border1);
  skin.Border2 = Web(look.border2);
  skin.BorderWidth = look.borderWidth;
  skin.Text1 = Web(look.text1);
  skin.Text2 = Web(look.text2);
  skin.Icons = look.icons;
  skin.TwoStateOffset = look.twoState ? 0 : kTwoStateOff;
  skin.IconsPerRow = look.iconsPerRow;
  skin.Font1 = look.font1;
  skin.Font2 = look.font2;
  return skin;
}

int Main(const fs::path& folder) {
  HostFiles files;
  modUTF8 writer(files);
  const auto save = [&](const Text& name, const SkinSettings& skin) {
    SaveSkinFile(writer, (folder / (name + u".qsk")).u16string(), skin);
  };
  save(u"Marl", SkinSettings());
  for (const Look& look : kLooks) save(look.name, SkinOf(look));
  return 0;
}

}  // namespace
}  // namespace marl

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fputs("skins FOLDER\n", stderr);
    return 2;
  }
  return marl::Main(argv[1]);
}
