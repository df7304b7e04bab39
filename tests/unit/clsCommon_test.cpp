#include "support/clsCommon.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <csignal>
#include <string>

#include "platform/RuntimeError.h"
#include "platform/forms/Controls.h"
#include "platform/forms/Form.h"
#include "platform/memory/MemoryDesktop.h"
#include "platform/memory/MemoryFileSystem.h"
#include "platform/memory/MemoryProfile.h"
#include "platform/memory/MemoryRegistryStore.h"
#include "platform/memory/MemoryShell.h"
#include "platform/memory/MemoryStrings.h"
#include "tests/unit/ErrorOf.h"

namespace marl {
namespace {

class Common : public testing::Test {
 protected:
  MemoryDesktop desktop;
  MemoryFileSystem files;
  MemoryProfile profile{files};
  MemoryRegistryStore registry;
  MemoryProcess process;
  MemoryShell shell;
  MemoryStrings resource;
  StringTable strings{resource};
  clsCommon common{{desktop, files, profile, registry, process, shell, strings}};

  void PutValue(RootKey root, const NarrowText& path, const NarrowText& name, std::uint32_t kind,
                const NarrowText& data) {
    OpenKeyHandle key;
    ASSERT_EQ(registry.CreateKey(root, path, kKeyAllAccess, key), kOk);
    ASSERT_EQ(registry.SetValue(key.get(), name, kind, data), kOk);
  }
};

// CentreForm

TEST_F(Common, CentreFormHalvesWhatTheFormLeaves) {
  const struct {
    Size screen, form;
    int left, top;
  } rows[] = {
      {{15360, 11520}, {4000, 3000}, 5680, 4260},
      {{15360, 11520}, {15360, 11520}, 0, 0},
      {{15360, 11520}, {15370, 11600}, -5, -40},   // it is not kept on the screen
      {{15360, 11520}, {4001, 3003}, 5680, 4258},  // 5679.5 and 4258.5 are rounded to even
  };
  for (const auto& row : rows) {
    desktop.screen = row.screen;
    Form form(desktop, "frmAny");
    form.Move({10, 20, row.form.width, row.form.height});
    clsCommon::CentreForm(form);
    EXPECT_EQ(form.bounds(), (Box{row.left, row.top, row.form.width, row.form.height}));
  }
}

// INI files

TEST_F(Common, GetINISettingGivesTheValue) {
  files.Put(u"C:\\Work\\a.qpj", "; project\r\n[Project]\r\nName = First \r\nname=second\r\n");
  EXPECT_EQ(common.GetINISetting(u"project", u"NAME", u"-", u"C:\\Work\\a.qpj"), u"First");
}

TEST_F(Common, GetINISettingGivesTheDefaultForWhatIsMissing) {
  files.Put(u"C:\\a.ini", "[One]\r\nKey=1\r\n[Two]\r\nOther=2\r\n");
  EXPECT_EQ(common.GetINISetting(u"One", u"Other", u"no key", u"C:\\a.ini"), u"no key");
  EXPECT_EQ(common.GetINISetting(u"Three", u"Key", u"no section", u"C:\\a.ini"), u"no section");
  EXPECT_EQ(common.GetINISetting(u"One", u"Key", u"no file", u"C:\\b.ini"), u"no file");
}

TEST_F(Common, AValueThatIsThereButEmptyIsNotTheDefault) {
  files.Put(u"C:\\a.ini", "[One]\r\nKey=\r\n");
  EXPECT_EQ(common.GetINISetting(u"One", u"Key", u"default", u"C:\\a.ini"), u"");
}

TEST_F(Common, ValuesOf1023CharactersComeWholeAndLongerOnesCut) {
  for (const std::size_t length : {std::size_t{1023}, std::size_t{1024}, std::size_t{1025}}) {
    const Text value = Text(length - 1, u'x') + u'y';
    common.SetINISetting(u"S", u"K", value, u"C:\\a.ini");
    EXPECT_EQ(common.GetINISetting(u"S", u"K", u"", u"C:\\a.ini"), value.substr(0, 1023)) << length;
  }
}

TEST_F(Common, WithoutAFileTheProgramsOwnNameIsTaken) {
  process.programPath = u"D:\\Suite 7\\Marl.old.exe";
  common.SetINISetting(u"S", u"K", u"v");
  ASSERT_EQ(files.Files(), std::vector<Text>{u"C:\\Windows\\Marl.old.ini"});
  EXPECT_EQ(common.GetINISetting(u"S", u"K", u""), u"v");
}

TEST_F(Common, SetINISettingKeepsTheOtherLines) {
  files.Put(u"C:\\a.ini", "; note\r\n[One]\r\nA=1\r\n\r\n[Two]\r\nB=2\r\n");
  common.SetINISetting(u"One", u"A", u"10", u"C:\\a.ini");
  common.SetINISetting(u"One", u"C", u"3", u"C:\\a.ini");
  common.SetINISetting(u"Three", u"D", u"4", u"C:\\a.ini");
  const Bytes bytes = files.Content(u"C:\\a.ini").value();
  EXPECT_EQ(std::string(bytes.begin(), bytes.end()),
            "; note\r\n[One]\r\nA=10\r\nC=3\r\n\r\n[Two]\r\nB=2\r\n[Three]\r\nD=4\r\n");
}

TEST_F(Common, SetINISettingReportsNoFailure) {
  files.Put(u"C:\\a.ini", "[One]\r\nA=1\r\n", kReadOnly);
  common.SetINISetting(u"One", u"A", u"2", u"C:\\a.ini");
  EXPECT_EQ(common.GetINISetting(u"One", u"A", u"", u"C:\\a.ini"), u"1");
}

// HighLight

TEST_F(Common, HighLightSelectsTheWholeText) {
  Form form(desktop, "frmAny");
  TextBox field(form, "txtAny");
  field.SetText(u"Port 80");
  field.Select(2, 1);
  clsCommon::HighLight(field);
  EXPECT_EQ(field.SelStart(), 0);
  EXPECT_EQ(field.SelLength(), 7);
  field.SetText(u"");
  clsCommon::HighLight(field);
  EXPECT_EQ(field.SelLength(), 0);
}

// StartSysInfo

constexpr char kSysInfoKey[] = "SOFTWARE\\Microsoft\\Shared Tools\\MSINFO";
constexpr char kSharedToolsKey[] = "SOFTWARE\\Microsoft\\Shared Tools Location";

class SysInfo : public Common {
 protected:
  const std::vector<MemoryDesktop::Message> unavailable = {
      {u"System Information Is Unavailable At This Time", kOkOnly, u"Marl"}};
  using Ran = std::vector<std::pair<Text, int>>;
};

TEST_F(SysInfo, RunsTheRegisteredProgramAsItStands) {
  PutValue(kLocalMachine, kSysInfoKey, "PATH", kRegSz, std::string("C:\\Tools\\info.exe /x\0", 21));
  files.Put(u"C:\\Tools\\info.exe", "");
  common.StartSysInfo();
  EXPECT_EQ(shell.ran, (Ran{{u"C:\\Tools\\info.exe /x", kShowNormal}}));
  EXPECT_EQ(shell.programs, std::vector<Text>{u"C:\\Tools\\info.exe"});
  EXPECT_TRUE(desktop.messages.empty());
}

TEST_F(SysInfo, ElseRunsTheProgramOfTheSharedToolsFolder) {
  PutValue(kLocalMachine, kSharedToolsKey, "MSINFO", kRegSz, "C:\\Shared");
  files.Put(u"C:\\Shared\\MSINFO32.EXE", "");
  common.StartSysInfo();
  EXPECT_EQ(shell.ran, (Ran{{u"C:\\Shared\\MSINFO32.EXE", kShowNormal}}));
  EXPECT_TRUE(desktop.messages.empty());
}

TEST_F(SysInfo, SaysSoWhenNothingIsRegistered) {
  // Without a folder, the program's name would mean one in the root of the drive.
  files.Put(u"\\MSINFO32.EXE", "");
  files.Put(u"C:\\MSINFO32.EXE", "");
  common.StartSysInfo();
  EXPECT_TRUE(shell.ran.empty());
  EXPECT_EQ(desktop.messages, unavailable);
}

TEST_F(SysInfo, SaysSoWhenTheSharedProgramIsMissing) {
  PutValue(kLocalMachine, kSharedToolsKey, "MSINFO", kRegSz, "C:\\Shared");
  common.StartSysInfo();
  EXPECT_TRUE(shell.ran.empty());
  EXPECT_EQ(desktop.messages, unavailable);
}

TEST_F(SysInfo, SaysSoWhenTheProgramCannotBeStarted) {
  PutValue(kLocalMachine, kSysInfoKey, "PATH", kRegSz, "C:\\info.exe");
  files.Put(u"C:\\info.exe", "");
  shell.runStatus = kAccessDenied;
  common.StartSysInfo();
  EXPECT_EQ(desktop.messages, unavailable);
}

TEST_F(SysInfo, StartsNothingElseIfTheProgramIsMissing) {
  PutValue(kLocalMachine, kSysInfoKey, "PATH", kRegSz, "C:\\Program Files\\info.exe");
  common.StartSysInfo();
  EXPECT_TRUE(shell.ran.empty());
  EXPECT_EQ(desktop.messages, unavailable);
}

// GetKeyValue

TEST_F(Common, GetKeyValueByKind) {
  const struct {
    const char* what;
    std::uint32_t kind;
    std::string data;
    TextView expected;
  } rows[] = {
      {"text", kRegSz, std::string("abc\0", 4), u"abc"},
      {"text of 8 bits", kRegSz, std::string("\x80\xE4\0", 3), u"\u20AC\u00E4"},
      {"empty text", kRegSz, std::string("\0", 1), u""},
      {"text with two terminators loses one", kRegSz, std::string("a\0\0", 3), TextView(u"a\0", 2)},
      // The last byte is dropped if it is NUL; the others give their digits.
      {"number below 16", kRegDword, std::string("\x05\0\0\0", 4), u"5"},
      {"number of two digits", kRegDword, std::string("\x10\0\0\0", 4), u"16"},
      {"two bytes below 16", kRegDword, std::string("\x05\x01\0\0", 4), u"21"},
      {"a byte below 16 in the middle", kRegDword, std::string("\x12\x03\x45\x67", 4),
       u"108286738"},
      {"zero", kRegDword, std::string("\0\0\0\0", 4), u"0"},
      {"all bits", kRegDword, std::string("\xFF\xFF\xFF\xFF", 4), u"-1"},
      {"sixteen bits", kRegDword, std::string("\xFF\xFF\0\0", 4), u"-1"},
      {"no byte at all", kRegDword, std::string(), u"&h"},
      {"one byte", kRegDword, std::string("\x0A", 1), u"10"},
      {"more than a number holds", kRegDword, std::string("\x11\x22\x33\x44\x55", 5),
       u"&h5544332211"},
      {"expandable text", kRegExpandSz, std::string("%A%\0", 4), u"before"},
      {"bytes", kRegBinary, std::string("abc", 3), u"before"},
      {"several texts", kRegMultiSz, std::string("a\0b\0\0", 5), u"before"},
      {"no kind", kRegNone, std::string("abc", 3), u"before"},
      {"big-endian number", kRegDwordBigEndian, std::string("\0\0\0\x05", 4), u"before"},
  };
  for (const auto& row : rows) {
    PutValue(kCurrentUser, "Software\\Test", "Value", row.kind, row.data);
    Text out = u"before";
    EXPECT_TRUE(common.GetKeyValue(kCurrentUser, u"Software\\Test", u"Value", out)) << row.what;
    EXPECT_EQ(out, row.expected) << row.what;
  }
  EXPECT_EQ(registry.OpenKeys(), 0u);
}

TEST_F(Common, GetKeyValueWithoutKeyOrValueIsFalseAndEmpty) {
  Text out = u"before";
  EXPECT_FALSE(common.GetKeyValue(kCurrentUser, u"Software\\Nothing", u"Value", out));
  EXPECT_EQ(out, u"");
  PutValue(kCurrentUser, "Software\\Test", "Value", kRegSz, "x");
  out = u"before";
  EXPECT_FALSE(common.GetKeyValue(kCurrentUser, u"Software\\Test", u"Other", out));
  EXPECT_EQ(out, u"");
  out = u"before";
  EXPECT_FALSE(common.GetKeyValue(kNoKey, u"Software\\Test", u"Value", out));
  EXPECT_EQ(out, u"");
  EXPECT_EQ(registry.OpenKeys(), 0u);
}

TEST_F(Common, GetKeyValueReadsUpToTheBufferAndNoFurther) {
  for (const std::size_t size : {std::size_t{1023}, std::size_t{1024}, std::size_t{1025}}) {
    // The terminator counts.
    PutValue(kCurrentUser, "Software\\Test", "Value", kRegSz,
             std::string(size - 1, 'x') + std::string(1, '\0'));
    Text out = u"before";
    EXPECT_EQ(common.GetKeyValue(kCurrentUser, u"Software\\Test", u"Value", out), size <= 1024);
    EXPECT_EQ(out, size <= 1024 ? Text(size - 1, u'x') : Text()) << size;
  }
  PutValue(kCurrentUser, "Software\\Test", "Value", kRegSz, std::string(1 << 20, 'x'));
  Text out = u"before";
  EXPECT_FALSE(common.GetKeyValue(kCurrentUser, u"Software\\Test", u"Value", out));
  EXPECT_EQ(out, u"");
}

// IsLoaded

TEST_F(Common, IsLoadedKnowsLoadedFormsByTheirExactName) {
  Form first(desktop, "frmFirst"), second(desktop, "frmSecond"), third(desktop, "frmThird");
  EXPECT_FALSE(common.IsLoaded("frmFirst"));
  first.Load();
  second.Load();
  EXPECT_TRUE(common.IsLoaded("frmFirst"));
  EXPECT_TRUE(common.IsLoaded("frmSecond"));
  EXPECT_FALSE(common.IsLoaded("frmThird"));
  EXPECT_FALSE(common.IsLoaded("FRMFIRST"));
  EXPECT_FALSE(common.IsLoaded("frmFirs"));
  first.Unload();
  EXPECT_FALSE(common.IsLoaded("frmFirst"));
  EXPECT_TRUE(common.IsLoaded("frmSecond"));
}

// SandR

TEST(SandR, AReplacementOfTheSameLengthIsAReplaceAll) {
  EXPECT_EQ(clsCommon::SandR(u"a-b-c", u"-", u"+"), u"a+b+c");
  EXPECT_EQ(clsCommon::SandR(u"one two one", u"one", u"six"), u"six two six");
  EXPECT_EQ(clsCommon::SandR(u"no match", u"x", u"y"), u"no match");
  EXPECT_EQ(clsCommon::SandR(u"Case", u"c", u"k"), u"Case");
  EXPECT_EQ(clsCommon::SandR(u"", u"x", u"y"), u"");
}

TEST(SandR, AReplacementOfAnotherLengthMissesLaterPlaces) {
  const struct {
    TextView text, search, replacement, expected;
  } rows[] = {
      // Once: as expected.
      {u"a-b", u"-", u"--", u"a--b"},
      // Twice: the second position, 4, is that of the original; in "a<>b-c" there is a "b".
      {u"a-b-c", u"-", u"<>", u"a<><>-c"},
      // Shorter: the second "xx" is at 4 of the original; in "ay" + "bxxc" that is "xc".
      {u"axxbxxc", u"xx", u"y", u"aybxy"},
      // If the replacement is shorter, the search continues inside the occurrence.
      {u"aaa", u"aa", u"b", u"bb"},
      // A long replacement skips the next occurrence.
      {u"a-b-c", u"-", u"12345", u"a12345b-c"},
      // An empty search text is found at every position, up to the text's end.
      {u"abc", u"", u"x", u"xxxabc"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(clsCommon::SandR(row.text, row.search, row.replacement), row.expected);
  }
}

TEST(SandR, CountsIn16Bits) {
  const auto text = [](std::size_t before) { return Text(before, u'x') + u"-" + Text(9, u'x'); };
  EXPECT_EQ(clsCommon::SandR(text(32765), u"-", u"+").substr(32764, 3), u"x+x");
  // The position itself is 32767; the text after it does not count.
  EXPECT_EQ(ErrorOf([&] { return clsCommon::SandR(text(32766), u"-", u"+"); }), kOverflow);
  EXPECT_EQ(ErrorOf([&] { return clsCommon::SandR(text(32767), u"-", u"+"); }), kOverflow);
  EXPECT_EQ(ErrorOf([&] { return clsCommon::SandR(text(5), u"-", Text(32767, u'+')); }), kOverflow);
  EXPECT_EQ(clsCommon::SandR(Text(100000, u'x'), u"-", u"+").size(), 100000u);
}

/// Runs `call` in a separate process and expects it to be still running after a second.
template <typename Call>
void ExpectEndless(Call call) {
  EXPECT_EXIT(
      {
        std::signal(SIGALRM, SIG_DFL);
        alarm(1);
        call();
      },
      testing::KilledBySignal(SIGALRM), "");
}

TEST(SandRDeathTest, AnEmptyReplacementNeverEnds) {
  ExpectEndless([] { clsCommon::SandR(u"a-b", u"-", u""); });
}

// strParseFileName

TEST(StrParseFileName, Parts) {
  const struct {
    TextView path, folder, name, extension;
  } rows[] = {
      {u"C:\\Work\\report.doc", u"C:\\Work\\", u"report", u"doc"},
      {u"C:\\Work.old\\report", u"C:\\Work.old\\", u"report", u""},  // the only dot is in a folder
      {u"C:\\Work.old\\report.doc", u"C:\\Work.old\\", u"report", u"doc"},
      {u"report.final.doc", u"", u"report.final", u"doc"},
      {u"report", u"", u"report", u""},
      {u"report.", u"", u"report", u""},
      {u".doc", u"", u"", u"doc"},
      {u"C:\\.doc", u"C:\\", u"", u"doc"},
      {u"C:\\Work\\", u"C:\\Work\\", u"", u""},
      {u"C:\\Work.old\\", u"C:\\Work.old\\", u"", u""},
      {u"C:report.doc", u"", u"C:report", u"doc"},  // a drive without a slash is no folder
      {u"C:/Work/report.doc", u"", u"C:/Work/report", u"doc"},
      {u"\\\\server\\share\\a.b", u"\\\\server\\share\\", u"a", u"b"},
      {u".", u"", u"", u""},
      {u"\\", u"\\", u"", u""},
      {u"", u"", u"", u""},
  };
  for (const auto& row : rows) {
    const std::string shown(row.path.begin(), row.path.end());
    EXPECT_EQ(clsCommon::strParseFileName(row.path, 0), row.folder) << shown;
    EXPECT_EQ(clsCommon::strParseFileName(row.path, 1), row.name) << shown;
    EXPECT_EQ(clsCommon::strParseFileName(row.path, 2), row.extension) << shown;
    for (const int other : {-1, 3, 32767, -32768}) {
      EXPECT_EQ(clsCommon::strParseFileName(row.path, static_cast<std::int16_t>(other)), u"")
          << shown;
    }
  }
}

// MoveFile

class Move : public Common {
 protected:
  std::vector<Text> errors;
  const clsCommon::AddText add = [this](const Text& text) { errors.push_back(text); };

  Move() {
    files.Put(u"C:\\from.txt", "new");
    files.PutFolder(u"C:\\Target");
  }
  std::string At(TextView path) {
    const auto bytes = files.Content(path);
    return bytes ? std::string(bytes->begin(), bytes->end()) : "(none)";
  }
};

TEST_F(Move, CopiesAndDeletes) {
  EXPECT_EQ(common.MoveFile(u"C:\\from.txt", u"C:\\Target\\to.txt", add), 0);
  EXPECT_EQ(At(u"C:\\Target\\to.txt"), "new");
  EXPECT_EQ(At(u"C:\\from.txt"), "(none)");
  EXPECT_TRUE(errors.empty());
}

TEST_F(Move, ReplacesAnExistingFile) {
  files.Put(u"C:\\Target\\to.txt", "old");
  EXPECT_EQ(common.MoveFile(u"C:\\from.txt", u"C:\\Target\\to.txt", add), 0);
  EXPECT_EQ(At(u"C:\\Target\\to.txt"), "new");
  EXPECT_TRUE(errors.empty());
}

TEST_F(Move, ReplacesAReadOnlyFileAndSaysSo) {
  files.Put(u"C:\\Target\\to.txt", "old", kReadOnly);
  EXPECT_EQ(common.MoveFile(u"C:\\from.txt", u"C:\\Target\\to.txt", add), 0);
  EXPECT_EQ(At(u"C:\\Target\\to.txt"), "new");
  EXPECT_EQ(errors, std::vector<Text>{u"The read-only attribute was removed: C:\\Target\\to.txt\r\n"
                                      u"Path/File access error"});
}

TEST_F(Move, AReadOnlyFileThatStaysIsOneFailure) {
  files.Put(u"C:\\Target\\to.txt", "old", kReadOnly);
  files.FailNext(FileAction::kRemove, kSharingViolation, 1);
  EXPECT_EQ(common.MoveFile(u"C:\\from.txt", u"C:\\Target\\to.txt", add), 1);
  EXPECT_EQ(At(u"C:\\Target\\to.txt"), "old");
  EXPECT_EQ(At(u"C:\\from.txt"), "(none)");
  EXPECT_EQ(errors,
            (std::vector<Text>{
                u"The read-only attribute was removed: C:\\Target\\to.txt\r\n"
                u"Path/File access error",
                u"The file could not be deleted: C:\\Target\\to.txt\r\nPermission denied"}));
}

TEST_F(Move, ADestinationThatCannotBeDeletedSkipsTheCopyAndLosesTheSource) {
  files.Put(u"C:\\Target\\to.txt", "old");
  files.FailNext(FileAction::kRemove, kSharingViolation);
  EXPECT_EQ(common.MoveFile(u"C:\\from.txt", u"C:\\Target\\to.txt", add), 1);
  EXPECT_EQ(At(u"C:\\Target\\to.txt"), "old");
  EXPECT_EQ(At(u"C:\\from.txt"), "(none)");
  EXPECT_EQ(errors, std::vector<Text>{
                        u"The file could not be deleted: C:\\Target\\to.txt\r\nPermission denied"});
}

TEST_F(Move, TheSourceIsDeletedAfterAFailedCopyToo) {
  EXPECT_EQ(common.MoveFile(u"C:\\from.txt", u"C:\\Nowhere\\to.txt", add), 1);
  EXPECT_EQ(At(u"C:\\from.txt"), "(none)");
  EXPECT_EQ(errors, std::vector<Text>{
                        u"The file could not be copied: C:\\Nowhere\\to.txt\r\nPath not found"});
}

TEST_F(Move, FailureShowsTheRuntimesText) {
  constexpr auto kDiskFull = static_cast<Status>(112);
  const std::pair<Status, TextView> rows[] = {{kFileNotFound, u"File not found"},
                                              {kPathNotFound, u"Path not found"},
                                              {kSharingViolation, u"Permission denied"},
                                              {kDiskFull, u"Disk full"},
                                              {kAccessDenied, u"Path/File access error"}};
  for (const auto& [status, reason] : rows) {
    files.Put(u"C:\\from.txt", "new");
    files.FailNext(FileAction::kCopy, status);
    errors.clear();
    EXPECT_EQ(common.MoveFile(u"C:\\from.txt", u"C:\\Target\\to.txt", add), 1);
    EXPECT_EQ(errors, std::vector<Text>{u"The file could not be copied: C:\\Target\\to.txt\r\n" +
                                        Text(reason)});
  }
}

TEST_F(Move, AMissingSourceIsOneFailure) {
  EXPECT_EQ(common.MoveFile(u"C:\\missing.txt", u"C:\\Target\\to.txt", add), 1);
  EXPECT_EQ(errors, std::vector<Text>{
                        u"The file could not be copied: C:\\Target\\to.txt\r\nFile not found"});
}

TEST_F(Move, ASourceThatStaysIsNoFailure) {
  files.FailNext(FileAction::kRemove, kAccessDenied);
  EXPECT_EQ(common.MoveFile(u"C:\\from.txt", u"C:\\Target\\to.txt", add), 0);
  EXPECT_EQ(At(u"C:\\from.txt"), "new");
  EXPECT_TRUE(errors.empty());
}

TEST_F(Move, WithoutAListItOnlyCounts) {
  EXPECT_EQ(common.MoveFile(u"C:\\from.txt", u"C:\\Nowhere\\to.txt"), 1);
}

TEST_F(Move, AListThatFailsDoesNotStopTheMove) {
  const auto failing = [](const Text&) { throw RuntimeError::TypeMismatch(); };
  EXPECT_EQ(common.MoveFile(u"C:\\from.txt", u"C:\\Nowhere\\to.txt", failing), 1);
  EXPECT_EQ(At(u"C:\\from.txt"), "(none)");
}

// SetCaption

/// Ten units per character, as with a monospaced font.
float TextWidth(TextView text) { return static_cast<float>(text.size()) * 10; }

TEST(SetCaption, ATextThatFitsStays) {
  EXPECT_EQ(clsCommon::SetCaption(u"abcdef", TextWidth, 60), u"abcdef");
  EXPECT_EQ(clsCommon::SetCaption(u"", TextWidth, 0), u"");
}

TEST(SetCaption, CutsOutOfTheMiddle) {
  const struct {
    TextView text;
    float width;
    TextView expected;
  } rows[] = {
      // 5 and 5 characters; with the dots, 4 and 4 are wider than the text itself.
      {u"0123456789", 100, u"0123456789"},
      {u"0123456789", 99, u"01....89"},
      {u"0123456789", 95, u"01....89"},
      {u"0123456789", 80, u"01....89"},
      {u"0123456789", 79, u"0....9"},
      {u"0123456789", 59, u"...."},
      {u"0123456789abcdef", 120, u"0123....cdef"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(clsCommon::SetCaption(row.text, TextWidth, row.width), row.expected) << row.width;
  }
}

TEST(SetCaption, AnOddLengthIsHalvedToTheEvenNeighbour) {
  // 5 / 2 is 2: "01" and "234"; one step leaves "0" and "34". 7 / 2 is 4: "0123" and "456".
  EXPECT_EQ(clsCommon::SetCaption(
                u"01234", [](TextView text) { return text == u"01234" ? 1.0f : 0.0f; }, 0.5f),
            u"0....34");
  EXPECT_EQ(clsCommon::SetCaption(
                u"0123456", [](TextView text) { return text == u"0123456" ? 1.0f : 0.0f; }, 0.5f),
            u"012....56");
}

TEST(SetCaption, FailsWhenTheDotsAreTooWide) {
  EXPECT_EQ(clsCommon::SetCaption(u"0123456789", TextWidth, 40), u"....");
  EXPECT_EQ(ErrorOf([] { return clsCommon::SetCaption(u"0123456789", TextWidth, 39); }),
            kInvalidCall);
  EXPECT_EQ(ErrorOf([] { return clsCommon::SetCaption(u"", TextWidth, -1); }), kInvalidCall);
  // Half of one is 0: there is nothing to drop on the left.
  EXPECT_EQ(ErrorOf([] { return clsCommon::SetCaption(u"x", TextWidth, 5); }), kInvalidCall);
}

// FormatString

TEST(FormatString, PutsTheArgumentsInPlaceOfTheirTokens) {
  EXPECT_EQ(clsCommon::FormatString(u"%1% of %2%", {u"3", u"7"}), u"3 of 7");
  EXPECT_EQ(clsCommon::FormatString(u"%6%%5%%4%%3%%2%%1%", {u"a", u"b", u"c", u"d", u"e", u"f"}),
            u"fedcba");
  EXPECT_EQ(clsCommon::FormatString(u"%1%, %1% and %1%", {u"x"}), u"x, x and x");
}

TEST(FormatString, MissingArgumentsAreEmpty) {
  EXPECT_EQ(clsCommon::FormatString(u"[%1%][%2%][%3%]", {u"a", u"b"}), u"[a][b][]");
  EXPECT_EQ(clsCommon::FormatString(u"[%6%]", {}), u"[]");
}

TEST(FormatString, KnowsSixTokens) {
  EXPECT_EQ(clsCommon::FormatString(u"%0% %7% %10%", {u"a", u"b", u"c", u"d", u"e", u"f", u"g"}),
            u"%0% %7% %10%");
  EXPECT_EQ(clsCommon::FormatString(u"100% 1% %1", {u"a"}), u"100% 1% %1");
}

TEST(FormatString, SearchesWhatItHasPutThere) {
  // Later tokens are replaced in arguments too, earlier ones are not.
  EXPECT_EQ(clsCommon::FormatString(u"%1%", {u"<%2%>", u"b"}), u"<b>");
  EXPECT_EQ(clsCommon::FormatString(u"%2%", {u"a", u"<%1%>"}), u"<%1%>");
  // A token that is formed by a replacement counts too.
  EXPECT_EQ(clsCommon::FormatString(u"%%1%1%", {u""}), u"");
}

TEST(FormatStringDeathTest, AnArgumentThatHoldsItsOwnTokenNeverEnds) {
  ExpectEndless([] { clsCommon::FormatString(u"%1%", {u"%1%"}); });
}

// DeleteFile and FileExists

TEST_F(Common, DeleteFileRemovesAReadOnlyFile) {
  files.Put(u"C:\\a.txt", "", kReadOnly | kHidden);
  common.DeleteFile(u"C:\\a.txt");
  EXPECT_TRUE(files.Files().empty());
}

TEST_F(Common, DeleteFileOfAMissingFileDoesNothing) {
  files.Put(u"C:\\a.txt", "");
  common.DeleteFile(u"C:\\b.txt");
  common.DeleteFile(u"");
  EXPECT_EQ(files.Files().size(), 1u);
  EXPECT_TRUE(desktop.messages.empty());
}

TEST_F(Common, DeleteFileIgnoresItsFailure) {
  files.Put(u"C:\\a.txt", "");
  files.FailNext(FileAction::kRemove, kSharingViolation);
  common.DeleteFile(u"C:\\a.txt");
  EXPECT_EQ(files.Files().size(), 1u);
}

TEST_F(Common, FileExistsListsThePath) {
  files.Put(u"C:\\Work\\a.txt", "", kHidden);
  const struct {
    TextView path;
    bool exists;
  } rows[] = {
      {u"C:\\Work\\a.txt", true},  {u"C:\\Work\\A.TXT", true}, {u"C:\\Work\\*.txt", true},
      {u"C:\\Work\\?.txt", true},  {u"C:\\Work", true},        {u"C:\\Work\\*.doc", false},
      {u"C:\\Work\\b.txt", false}, {u"C:\\None\\*", false},    {u"", false},
      {u"C:\\Work\\", false},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(common.FileExists(row.path), row.exists)
        << std::string(row.path.begin(), row.path.end());
  }
}

}  // namespace
}  // namespace marl
