#include "documents/modUTF8.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <string_view>

#include "platform/RuntimeError.h"
#include "platform/memory/MemoryFileSystem.h"
#include "tests/unit/XMLReference.h"

namespace marl {
namespace {

using reference::Documents;

constexpr TextView kSkinFile = u"C:\\Out\\a.qsk";

class Utf8Writer : public testing::Test {
 protected:
  Utf8Writer() { files.PutFolder(u"C:\\Out"); }

  std::string Written(TextView path = kSkinFile) {
    const auto bytes = files.Content(path);
    return bytes ? std::string(bytes->begin(), bytes->end()) : "no file";
  }

  /// Number of the runtime error that `call` throws, 0 if none.
  template <typename Call>
  static int ErrorOf(Call&& call) {
    try {
      call();
    } catch (const RuntimeError& error) {
      return error.number();
    }
    return 0;
  }

  MemoryFileSystem files;
  modUTF8 utf8{files};
};

const struct {
  const char* what;
  Text text;
  Bytes bytes;
} kForms[] = {
    {"zero", Text(1, u'\0'), {0x00}},
    {"ASCII", u"Az~", {0x41, 0x7A, 0x7E}},
    {"last of one byte", u"\x7F", {0x7F}},
    {"first of two bytes", u"\x80", {0xC2, 0x80}},
    {"e acute", u"\xE9", {0xC3, 0xA9}},
    {"last of two bytes", u"\x7FF", {0xDF, 0xBF}},
    {"first of three bytes", u"\x800", {0xE0, 0xA0, 0x80}},
    {"euro", u"\x20AC", {0xE2, 0x82, 0xAC}},
    {"byte order mark", u"\xFEFF", {0xEF, 0xBB, 0xBF}},
    {"last unit", u"\xFFFF", {0xEF, 0xBF, 0xBF}},
    {"surrogate pair, six bytes", u"\xD83D\xDE00", {0xED, 0xA0, 0xBD, 0xED, 0xB8, 0x80}},
    {"high surrogate alone", u"\xD83D", {0xED, 0xA0, 0xBD}},
    {"low surrogate alone", u"\xDE00", {0xED, 0xB8, 0x80}},
    {"surrogates the wrong way round", u"\xDE00\xD83D", {0xED, 0xB8, 0x80, 0xED, 0xA0, 0xBD}},
};

TEST_F(Utf8Writer, FormsOfUnits) {
  for (const auto& form : kForms) {
    EXPECT_EQ(utf8.ToUTF8Bytes(form.text), static_cast<int>(form.bytes.size())) << form.what;
    EXPECT_EQ(utf8.OutputBytes(), form.bytes) << form.what;
    EXPECT_EQ(DecodeUTF8(form.bytes), form.text) << form.what;
  }
}

TEST_F(Utf8Writer, EmptyTextReturnsZeroAndLeavesNoOutput) {
  EXPECT_EQ(utf8.ToUTF8Bytes(u"old"), 3);
  EXPECT_EQ(utf8.ToUTF8Bytes(u""), 0);
  EXPECT_EQ(utf8.OutputBytes(), Bytes());
}

TEST_F(Utf8Writer, LineOfEmptyTextIsTwoBytes) {
  utf8.OpenUTF8File(kSkinFile, false);
  utf8.WriteUTF8Line(0, u"");
  utf8.CloseUTF8File();
  EXPECT_EQ(Written(), "\r\n");
}

TEST_F(Utf8Writer, FileWithoutLinesIsEmptyAndHasNoByteOrderMark) {
  utf8.OpenUTF8File(kSkinFile, false);
  utf8.CloseUTF8File();
  EXPECT_EQ(Written(), "");
}

TEST_F(Utf8Writer, BothFlagsIndentOneLine) {
  utf8.OpenUTF8File(kSkinFile, false);
  utf8.WriteUTF8Line(3, u"x");
  EXPECT_EQ(utf8.Indent(), 0);
  utf8.CloseUTF8File();
  EXPECT_EQ(Written(), " x\r\n");
}

TEST_F(Utf8Writer, FlagsIndentByOneBlankALevel) {
  utf8.OpenUTF8File(kSkinFile, false);
  utf8.WriteUTF8Line(0, u"a");
  utf8.WriteUTF8Line(modUTF8::kIndentBefore, u"b");
  utf8.WriteUTF8Line(modUTF8::kIndentBefore, u"c");
  utf8.WriteUTF8Line(0, u"d");
  utf8.WriteUTF8Line(modUTF8::kUnindentAfter, u"e");
  utf8.WriteUTF8Line(0, u"é");
  utf8.CloseUTF8File();
  EXPECT_EQ(Written(), "a\r\n b\r\n  c\r\n  d\r\n  e\r\n \xC3\xA9\r\n");
}

TEST_F(Utf8Writer, OtherFlagsAreIgnored) {
  utf8.OpenUTF8File(kSkinFile, false);
  utf8.WriteUTF8Line(0xFC, u"a");
  EXPECT_EQ(utf8.Indent(), 0);
  utf8.CloseUTF8File();
  EXPECT_EQ(Written(), "a\r\n");
}

TEST_F(Utf8Writer, IndentDoesNotCarryOver) {
  utf8.OpenUTF8File(kSkinFile, false);
  utf8.WriteUTF8Line(1, u"a");
  EXPECT_EQ(utf8.Indent(), 1);
  utf8.CloseUTF8File();
  EXPECT_EQ(utf8.Indent(), 0);
  utf8.OpenUTF8File(u"C:\\Out\\b.qsk", false);
  utf8.WriteUTF8Line(1, u"b");
  utf8.OpenUTF8File(u"C:\\Out\\c.qsk", false);
  EXPECT_EQ(utf8.Indent(), 0);
}

TEST_F(Utf8Writer, ReplacesAnExistingFile) {
  files.Put(kSkinFile, "a long old content");
  utf8.OpenUTF8File(kSkinFile, false);
  utf8.WriteUTF8Line(0, u"n");
  utf8.CloseUTF8File();
  EXPECT_EQ(Written(), "n\r\n");
}

TEST_F(Utf8Writer, ReplacesAReadOnlyFile) {
  files.Put(kSkinFile, "old", kReadOnly);
  utf8.OpenUTF8File(kSkinFile, false);
  utf8.WriteUTF8Line(0, u"n");
  utf8.CloseUTF8File();
  EXPECT_EQ(Written(), "n\r\n");
  std::uint32_t attributes = 0;
  EXPECT_EQ(files.Attributes(kSkinFile, attributes), kOk);
  EXPECT_EQ(attributes & kReadOnly, 0u);
}

TEST_F(Utf8Writer, EchoCollectsTheTextsAlone) {
  utf8.OpenUTF8File(kSkinFile, true);
  utf8.WriteUTF8Line(3, u"one");
  utf8.WriteUTF8Line(0, u"two");
  utf8.CloseUTF8File();
  EXPECT_EQ(utf8.EchoText(), u"onetwo");
  utf8.OpenUTF8File(kSkinFile, false);
  utf8.WriteUTF8Line(0, u"three");
  utf8.CloseUTF8File();
  EXPECT_EQ(utf8.EchoText(), u"onetwo");
  utf8.OpenUTF8File(kSkinFile, true);
  EXPECT_EQ(utf8.EchoText(), u"");
}

TEST_F(Utf8Writer, WritingWithNoFileOpenFails) {
  EXPECT_EQ(ErrorOf([&] { utf8.WriteUTF8Line(0, u"a"); }), 52);
  utf8.OpenUTF8File(kSkinFile, false);
  utf8.CloseUTF8File();
  EXPECT_EQ(ErrorOf([&] { utf8.WriteUTF8Line(0, u"a"); }), 52);
  EXPECT_EQ(Written(), "");
}

TEST_F(Utf8Writer, ClosingWithNoFileOpenDoesNothing) {
  utf8.CloseUTF8File();
  utf8.CloseUTF8File();
  EXPECT_EQ(utf8.Indent(), 0);
}

TEST_F(Utf8Writer, AnIndentBelowZeroIsRefused) {
  utf8.OpenUTF8File(kSkinFile, false);
  utf8.WriteUTF8Line(modUTF8::kUnindentAfter, u"a");
  EXPECT_EQ(ErrorOf([&] { utf8.WriteUTF8Line(0, u"b"); }), 5);
}

TEST_F(Utf8Writer, FailuresGoToTheCaller) {
  files.Put(kSkinFile, "old");
  files.FailNext(FileAction::kRemove, kAccessDenied);
  EXPECT_EQ(ErrorOf([&] { utf8.OpenUTF8File(kSkinFile, false); }), 70);
  EXPECT_EQ(Written(), "old");
  // Once deleted, the old file does not come back, even if creating the new one fails.
  files.FailNext(FileAction::kCreate, kGeneralFailure);
  EXPECT_EQ(ErrorOf([&] { utf8.OpenUTF8File(kSkinFile, false); }), 57);
  EXPECT_EQ(Written(), "no file");
  EXPECT_EQ(ErrorOf([&] { utf8.OpenUTF8File(u"C:\\None\\a.qsk", false); }), 76);
}

TEST_F(Utf8Writer, AFailureInTheMiddleLeavesAPartialFile) {
  utf8.OpenUTF8File(kSkinFile, false);
  utf8.WriteUTF8Line(0, u"a");
  files.FailNext(FileAction::kWrite, kGeneralFailure);
  EXPECT_EQ(ErrorOf([&] { utf8.WriteUTF8Line(3, u"b"); }), 57);
  EXPECT_EQ(utf8.Indent(), 1);
  utf8.CloseUTF8File();
  EXPECT_EQ(Written(), "a\r\n");
  EXPECT_EQ(files.OpenFiles(), 0);
}

TEST_F(Utf8Writer, OpeningTheNextFileClosesTheFirst) {
  utf8.OpenUTF8File(kSkinFile, false);
  utf8.WriteUTF8Line(0, u"a");
  utf8.OpenUTF8File(u"C:\\Out\\b.qsk", false);
  utf8.WriteUTF8Line(0, u"b");
  utf8.CloseUTF8File();
  EXPECT_EQ(Written(), "a\r\n");
  EXPECT_EQ(Written(u"C:\\Out\\b.qsk"), "b\r\n");
  EXPECT_EQ(files.OpenFiles(), 0);
}

TEST_F(Utf8Writer, EncodesEveryUnit) {
  Text all(0x10000, u'\0');
  for (std::size_t i = 0; i < all.size(); ++i) all[i] = static_cast<char16_t>(i);
  EXPECT_EQ(utf8.ToUTF8Bytes(all), 0x80 + 0x780 * 2 + 0xF800 * 3);
  EXPECT_EQ(utf8.OutputBytes(), reference::Encode(all));
  EXPECT_EQ(DecodeUTF8(utf8.OutputBytes()), all);
}

TEST_F(Utf8Writer, UnitsOfOneAndTwoBytesInEveryOrder) {
  // Units are encoded four at a time; no byte may be lost or written past the end.
  for (std::size_t size = 0; size <= 9; ++size) {
    for (unsigned order = 0; order < 1u << size; ++order) {
      Text text(size, u'x');
      for (std::size_t i = 0; i < size; ++i) {
        if (order >> i & 1) text[i] = static_cast<char16_t>(0x430 + i);
      }
      for (const Text& source : {text, Text(u"\u20AC" + text)}) {
        modUTF8 fresh(files);
        fresh.ToUTF8Bytes(source);
        ASSERT_EQ(fresh.OutputBytes(), reference::Encode(source)) << size << " " << order;
      }
    }
  }
}

TEST_F(Utf8Writer, DecodingUndoesEncodingForAnyUnits) {
  Documents documents(4);
  for (int round = reference::Rounds(20000); round > 0; --round) {
    const Text text = documents.MakeUnits(80);
    ASSERT_EQ(utf8.ToUTF8Bytes(text), static_cast<int>(reference::Encode(text).size()));
    ASSERT_EQ(utf8.OutputBytes(), reference::Encode(text));
    ASSERT_EQ(DecodeUTF8(utf8.OutputBytes()), text);
  }
}

TEST_F(Utf8Writer, EncodedScriptsAgreeWithTheReference) {
  Documents documents(7);
  for (int round = reference::Rounds(2000); round > 0; --round) {
    const Text text = documents.MakeScripts(400);
    utf8.ToUTF8Bytes(text);
    ASSERT_EQ(utf8.OutputBytes(), reference::Encode(text));
  }
}

TEST_F(Utf8Writer, RunsOfEveryLengthAtEveryPlaceOfABlock) {
  // A run of each kind inside another one, up to the longest that is encoded in one step.
  constexpr char16_t kUnits[] = {u'a', 0x451, 0x4E2D};
  for (std::size_t before = 0; before <= 70; ++before) {
    for (std::size_t length = 0; length <= 70; ++length) {
      const std::size_t kind = (before + length) % 3;
      const Text text = Text(before, kUnits[kind]) + Text(length, kUnits[(kind + 1) % 3]) +
                        Text(90, kUnits[(kind + 2) % 3]);
      utf8.ToUTF8Bytes(text);
      ASSERT_EQ(utf8.OutputBytes(), reference::Encode(text)) << before << ' ' << length;
      ASSERT_EQ(DecodeUTF8(utf8.OutputBytes()), text) << before << ' ' << length;
    }
  }
}

TEST_F(Utf8Writer, LongTextsInPiecesOfAnySize) {
  // Around the size of the buffer in which the bytes are collected.
  for (std::size_t size = 800; size <= 2600; size += 7) {
    for (const char16_t unit : {u'a', u'\u0451', u'\u4E2D'}) {
      const Text text = u"\u20AC" + Text(size, unit) + u"\u00E9";
      utf8.ToUTF8Bytes(text);
      ASSERT_EQ(utf8.OutputBytes(), reference::Encode(text)) << size;
    }
  }
}

TEST(Utf8Decoder, LeadBytesAndTruncatedFiles) {
  const struct {
    const char* what;
    Bytes bytes;
    Text text;
  } rows[] = {
      {"nothing", {}, u""},
      {"stray continuation is the lead of two", {0x80, 0x41}, {1}},
      {"last stray continuation", {0xBF, 0x41}, {31 * 64 + 1}},
      {"overlong two", {0xC1, 0xBF}, {0x7F}},
      {"overlong three", {0xE0, 0x80, 0x80}, {0}},
      {"second byte is no continuation", {0xC3, 0x41, 0x42}, {3 * 64 + 1, 0x42}},
      {"four-byte form: three and a stray lead", {0xF0, 0x9F, 0x98, 0x80, 0x41}, {31 * 64 + 24, 1}},
      {"the highest lead", {0xFF, 0xFF, 0xFF}, {0xFFFF}},
      {"two, cut: 195 stands for itself", {0xC3}, {195}},
      {"two, cut: 128", {0x80}, {0}},
      {"three, cut behind the lead", {0xE2}, {2 * 4096 + 34 * 64 + 34}},
      {"three, cut behind the second", {0xE2, 0x82}, {2 * 4096 + 2 * 64 + 2}},
      {"cut behind text", {0x41, 0xE2, 0x82}, {0x41, 2 * 4096 + 2 * 64 + 2}},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(DecodeUTF8(row.bytes), row.text) << row.what;
    EXPECT_EQ(reference::Decode(row.bytes), row.text) << row.what;
  }
}

TEST(Utf8Decoder, AgreesWithTheReferenceOnAnyBytes) {
  Documents documents(5);
  for (int round = reference::Rounds(40000); round > 0; --round) {
    Bytes bytes(documents.Below(100));
    // From all ASCII to all high bytes, so that runs of every length occur.
    const std::size_t high = documents.Below(17);
    for (unsigned char& byte : bytes) {
      byte =
          static_cast<unsigned char>(documents.Below(128) + (documents.Below(16) < high ? 128 : 0));
    }
    ASSERT_EQ(DecodeUTF8(bytes), reference::Decode(bytes)) << testing::PrintToString(bytes);
  }
}

TEST(Utf8Decoder, AgreesWithTheReferenceOnDamagedScripts) {
  Documents documents(8);
  for (int round = reference::Rounds(4000); round > 0; --round) {
    Bytes bytes = reference::Encode(documents.MakeScripts(300));
    for (std::size_t count = documents.Below(4); count > 0 && !bytes.empty(); --count) {
      const std::size_t at = documents.Below(bytes.size());
      const auto byte = static_cast<unsigned char>(documents.Below(256));
      switch (documents.Below(3)) {
        case 0: bytes[at] = byte; break;
        case 1: bytes.erase(bytes.begin() + static_cast<std::ptrdiff_t>(at)); break;
        default: bytes.resize(at); break;
      }
    }
    ASSERT_EQ(DecodeUTF8(bytes), reference::Decode(bytes)) << testing::PrintToString(bytes);
  }
}

TEST(Utf8Decoder, OneStrangeByteAtEveryPlace) {
  for (const char* const word : {"abc", "\xC3\xA9", "a\xC3\xA9",
                                 "\xC3\xA9 \xC3\xA0"
                                 "bc"}) {
    Bytes whole;
    while (whole.size() < 200) whole.insert(whole.end(), word, word + std::strlen(word));
    for (std::size_t at = 0; at < 150; ++at) {
      for (const int byte : {0x00, 0x41, 0x7F, 0x80, 0xBF, 0xC0, 0xDF, 0xE0, 0xFF}) {
        Bytes bytes = whole;
        bytes[at] = static_cast<unsigned char>(byte);
        ASSERT_EQ(DecodeUTF8(bytes), reference::Decode(bytes)) << word << ' ' << at << ' ' << byte;
      }
    }
  }
}

TEST(Utf8Decoder, WritesNothingBehindTheRoomItHas) {
  for (const char* const word : {"abc", "\xC3\xA9", "ab\xC3\xA9", "\xE4\xB8\xAD"}) {
    Bytes bytes;
    while (bytes.size() < 300) bytes.insert(bytes.end(), word, word + std::strlen(word));
    const Text text = reference::Decode(bytes);
    for (std::size_t room = 0; room <= text.size(); ++room) {
      Text out(room + 100, u'!');
      const DecodedUTF8 done = DecodeUTF8(bytes.data(), bytes.size(), out.data(), room);
      ASSERT_EQ(done.units, room);
      ASSERT_EQ(out, text.substr(0, room) + Text(100, u'!')) << word << ' ' << room;
    }
  }
}

TEST(Utf8Decoder, StopsWhenTheBufferIsFullAndGoesOnFromThere) {
  Documents documents(6);
  for (int round = reference::Rounds(5000); round > 0; --round) {
    const Bytes bytes = documents.MakeBytes(20);
    Text text;
    for (std::size_t next = 0; next != bytes.size();) {
      Text part(1 + documents.Below(40), u'\0');
      const DecodedUTF8 done =
          DecodeUTF8(bytes.data() + next, bytes.size() - next, part.data(), part.size());
      ASSERT_GT(done.bytes, 0u);
      text.append(part, 0, done.units);
      next += done.bytes;
    }
    ASSERT_EQ(text, reference::Decode(bytes));
  }
}

TEST(XmlEscape, RowsInBothDirections) {
  const struct {
    TextView plain, escaped;
  } rows[] = {
      {u"", u""},
      {u"abc", u"abc"},
      {u"<a b=\"c\">&", u"&lt;a b=&quot;c&quot;&gt;&amp;"},
      {u"&lt;", u"&amp;lt;"},
      {u"&amp;", u"&amp;amp;"},
      {u"'", u"'"},
      {u"&apos;&#65;", u"&amp;apos;&amp;#65;"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(XMLEscape(row.plain), row.escaped);
    EXPECT_EQ(XMLUnescape(row.escaped), row.plain);
  }
}

TEST(XmlEscape, UnescapeLeavesWhatIsNoEntity) {
  const struct {
    TextView text, plain;
  } rows[] = {
      {u"&", u"&"},
      {u"&&", u"&&"},
      {u"&lt", u"&lt"},
      {u"&LT;", u"&LT;"},
      {u"&apos;&#65;&#x41;", u"&apos;&#65;&#x41;"},
      {u"&amp;lt;", u"&lt;"},
      {u"&amp;amp;lt;", u"&amp;lt;"},
      {u"&amp;quot;", u"&quot;"},
      {u"&&lt;;", u"&<;"},
      {u"&a&amp;mp;", u"&a&mp;"},
  };
  for (const auto& row : rows) EXPECT_EQ(XMLUnescape(row.text), row.plain);
}

TEST(XmlEscape, AgreesWithReplacementInTurnAndUndoesItself) {
  Documents documents(8);
  for (int round = reference::Rounds(20000); round > 0; --round) {
    const Text text = documents.Make(12);
    ASSERT_EQ(XMLEscape(text), reference::Escape(text)) << testing::PrintToString(text);
    ASSERT_EQ(XMLUnescape(text), reference::Unescape(text)) << testing::PrintToString(text);
    ASSERT_EQ(XMLUnescape(XMLEscape(text)), text) << testing::PrintToString(text);
  }
}

}  // namespace
}  // namespace marl
