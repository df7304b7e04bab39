#include "appearance/SkinFile.h"
#include "fuzz/Mutators.h"
#include "platform/memory/OneFile.h"
#include "tests/unit/FuzzTarget.h"

MARL_FUZZ_WORDS("<parameter", " name=\"", " value=\"", "\"/>", "angle", "colour1", "colour2",
                "border1", "border2", "borderwidth", "text1", "text2", "icons", "twostate",
                "iconsperrow", "font1", "font2", "displayicons", "0", "1", "4", "18", "-1", "359",
                "2147483648", "&amp;HFF", "1e3", "1.5", "Arial|10|BIU", "|", "001|011|021",
                "<marlskin>", "<!--", "-->")

namespace {

using namespace marl;

/// Accepts every value, and checks what the reader has to normalise.
class Checked : public SkinTarget {
 public:
  SkinSettings skin;

  void SetNumber(std::int32_t SkinSettings::*field, std::int32_t number) override {
    if (field == &SkinSettings::BorderWidth) {
      fuzz::Expect(number == 1 || number == 2, "a bevel has one line or two");
    } else if (field == &SkinSettings::Icons) {
      fuzz::Expect(number >= 0 && number <= 3, "the icon set exists");
    } else if (field == &SkinSettings::TwoStateOffset) {
      fuzz::Expect(number == 0 || number == 18, "two-state icons are on or off");
    }
    skin.*field = number;
  }
  void SetText(Text SkinSettings::*field, TextView text) override {
    fuzz::Expect(!IsNumeric(text), "a number is no text");
    skin.*field = text;
  }
};

/// Keeps the one file that is written.
class Sink : public OneFile {
 public:
  Sink() : OneFile(nullptr, 0) {}
  Bytes bytes;

  bool FileExists(TextView) const override { return false; }
  std::unique_ptr<OutputFile> Create(TextView, Status& status) override {
    class Output : public OutputFile {
     public:
      explicit Output(Bytes& out) : out_(out) {}
      Status Write(const void* data, std::size_t size) override {
        const auto* const first = static_cast<const unsigned char*>(data);
        out_.insert(out_.end(), first, first + size);
        return kOk;
      }

     private:
      Bytes& out_;
    };
    status = kOk;
    return std::make_unique<Output>(bytes);
  }
};

}  // namespace

// Any bytes, loaded as a skin; the result, saved and loaded again.
MARL_FUZZ_TARGET(skin) {
  Checked first;
  fuzz::Expect(LoadSkinFile(OneFile(data, size), u"x.qsk", first), "the file opens");
  Sink sink;
  modUTF8 writer(sink);
  SaveSkinFile(writer, u"y.qsk", first.skin);
  Checked second;
  second.skin = SkinSettings();
  fuzz::Expect(LoadSkinFile(OneFile(sink.bytes.data(), sink.bytes.size()), u"y.qsk", second),
               "the saved file opens");
  fuzz::Expect(second.skin == first.skin, "a saved skin comes back whole");
}
