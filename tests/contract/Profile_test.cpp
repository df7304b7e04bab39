#include "platform/Profile.h"

#include <memory>
#include <random>
#include <span>
#include <string>

#include "platform/memory/MemoryFileSystem.h"
#include "platform/memory/MemoryProfile.h"
#include "tests/contract/Backends.h"
#ifdef _WIN32
#include "platform/win32/FileSystemWin32.h"
#include "platform/win32/ProfileWin32.h"
#endif

namespace marl {
namespace {

/// INI files of the test.
class ProfileContract : public BackendTest {
 protected:
  std::unique_ptr<FileSystem> files;
  std::unique_ptr<Profile> profile;
  Text file;

  void SetUp() override {
#ifdef _WIN32
    if (real()) {
      files = std::make_unique<win32::FileSystemWin32>();
      profile = std::make_unique<win32::ProfileWin32>();
    }
#endif
    if (!files) {
      files = std::make_unique<MemoryFileSystem>();
      profile = std::make_unique<MemoryProfile>(*files);
    }
    file = files->TempPath() + files->TempName() + u".ini";
  }
  void TearDown() override { files->Remove(file, true); }

  void Put(std::string_view content) {
    Status status = kOk;
    const auto output = files->Create(file, status);
    ASSERT_TRUE(output);
    ASSERT_EQ(output->Write(content.data(), content.size()), kOk);
  }
  std::string Content() {
    Bytes bytes;
    files->ReadAll(file, bytes);
    return {bytes.begin(), bytes.end()};
  }
  Text Get(TextView section, TextView key, TextView defaultText = u"-", std::size_t size = 1024) {
    return profile->GetString(section, key, defaultText, size, file);
  }
};

TEST_P(ProfileContract, ValuesAreFoundWithoutRegardToCase) {
  Put("[Project]\r\nName=First\r\n[Other]\r\nName=Second\r\n");
  EXPECT_EQ(Get(u"project", u"NAME"), u"First");
  EXPECT_EQ(Get(u"OTHER", u"name"), u"Second");
}

TEST_P(ProfileContract, PathThatIsTooLongNamesNoFile) {
  for (const std::size_t length : {260u, 1'000u, 32'000u, 32'767u, 40'000u, 70'000u}) {
    Text path = u"C:\\";
    while (path.size() < length) path += path.size() % 200 ? u'a' : u'\\';
    EXPECT_EQ(profile->GetString(u"Project", u"Name", u"none ", 100, path), u"none") << length;
    EXPECT_FALSE(profile->SetString(u"Project", u"Name", u"value", path)) << length;
  }
}

TEST_P(ProfileContract, LongestPathHas259Characters) {
  const Text folder = files->TempPath();
  const Text longest = folder + Text(259 - folder.size(), u'n');
  for (const Text& path : {longest, longest + u'n'}) {
    file = path;
    Put("[Project]\r\nName=old\r\n");
    const bool possible = path.size() == 259;
    EXPECT_EQ(Get(u"Project", u"Name"), possible ? u"old" : u"-") << path.size();
    EXPECT_EQ(profile->SetString(u"Project", u"Name", u"new", path), possible) << path.size();
    EXPECT_EQ(Content(), possible ? "[Project]\r\nName=new\r\n" : "[Project]\r\nName=old\r\n");
    files->Remove(path, true);
  }
}

// The platform puts the Windows folder in front.
TEST_P(ProfileContract, NameThatIsTooLongBehindItsFolderNamesNoFile) {
  for (const std::size_t length : {255u, 259u}) {
    const Text name(length, u'n');
    EXPECT_EQ(profile->GetString(u"Project", u"Name", u"none", 100, name), u"none") << length;
    EXPECT_FALSE(profile->SetString(u"Project", u"Name", u"value", name)) << length;
  }
}

TEST_P(ProfileContract, PathEndsAtItsFirstNul) {
  Put("[Project]\r\nName=old\r\n");
  const Text path = file;
  file += Text(1, u'\0') + Text(300, u'n');
  EXPECT_EQ(Get(u"Project", u"Name"), u"old");
  EXPECT_TRUE(profile->SetString(u"Project", u"Name", u"new", file));
  file = path;
  EXPECT_EQ(Content(), "[Project]\r\nName=new\r\n");
}

TEST_P(ProfileContract, OfTwoKeysTheFirstCounts) {
  Put("[S]\r\nK=1\r\nk=2\r\n[s]\r\nK=3\r\nL=4\r\n");
  EXPECT_EQ(Get(u"S", u"K"), u"1");
}

TEST_P(ProfileContract, BlanksAndQuotationMarksAroundAValueAreRemoved) {
  const struct {
    const char* line;
    TextView value;
  } rows[] = {
      {"K=plain", u"plain"},
      {"  K  =  in blanks  ", u"in blanks"},
      {"K=\"  kept  \"", u"  kept  "},
      {"K='single'", u"single"},
      {"K=\"open", u"\"open"},
      {"K=a=b", u"a=b"},
      {"K=a;b", u"a;b"},
      {"K=", u""},
      {"\tK\t=\tx\t", u"x"},
      {"K=\"\"", u""},
      {"K=in \"the\" middle", u"in \"the\" middle"},
  };
  for (const auto& row : rows) {
    Put(std::string("[S]\r\n") + row.line + "\r\nZ=z\r\n");
    EXPECT_EQ(Get(u"S", u"K"), row.value) << row.line;
  }
}

TEST_P(ProfileContract, CommentsAndOtherLinesAreNoValues) {
  Put("; first\r\n[S]\r\n;K=comment\r\nno value\r\n\r\nL=1\r\n");
  EXPECT_EQ(Get(u"S", u"K"), u"-");
  EXPECT_EQ(Get(u"S", u"L"), u"1");
}

TEST_P(ProfileContract, LinesMayEndInALineFeedAloneAndTheLastInNothing) {
  Put("[S]\nK=1\nL=2");
  EXPECT_EQ(Get(u"S", u"K"), u"1");
  EXPECT_EQ(Get(u"S", u"L"), u"2");
}

TEST_P(ProfileContract, TheDefaultLosesTheBlanksAtItsEnd) {
  EXPECT_EQ(Get(u"S", u"K", u"default  "), u"default");
  EXPECT_EQ(Get(u"S", u"K", u""), u"");
  Put("[S]\r\nL=1\r\n");
  EXPECT_EQ(Get(u"S", u"K", u"a b "), u"a b");
  EXPECT_EQ(Get(u"T", u"L", u"a b "), u"a b");
}

TEST_P(ProfileContract, WhatDoesNotFitTheBufferIsCutOff) {
  for (const std::size_t length : {std::size_t{1022}, std::size_t{1023}, std::size_t{1024},
                                   std::size_t{1025}, std::size_t{5000}}) {
    Text value;
    for (std::size_t i = 0; i < length; ++i) value += static_cast<char16_t>(u'a' + i % 26);
    ASSERT_TRUE(profile->SetString(u"S", u"K", value, file));
    EXPECT_EQ(Get(u"S", u"K"), value.substr(0, 1023)) << length;
  }
  EXPECT_EQ(Get(u"S", u"None", Text(1500, u'd')), Text(1023, u'd'));
  EXPECT_EQ(Get(u"S", u"K", u"", 2), u"a");
  EXPECT_EQ(Get(u"S", u"K", u"", 1), u"");
  EXPECT_EQ(Get(u"S", u"K", u"", 0), u"");
}

TEST_P(ProfileContract, AFileIsMade) {
  ASSERT_TRUE(profile->SetString(u"Section", u"Key", u"value", file));
  EXPECT_EQ(Content(), "[Section]\r\nKey=value\r\n");
}

TEST_P(ProfileContract, AValueIsReplacedInItsPlace) {
  Put("; note\r\n[One]\r\nA=1\r\nB=2\r\n[Two]\r\nA=3\r\n");
  ASSERT_TRUE(profile->SetString(u"ONE", u"A", u"new", file));
  EXPECT_EQ(Get(u"One", u"A"), u"new");
  EXPECT_EQ(Get(u"One", u"B"), u"2");
  EXPECT_EQ(Get(u"Two", u"A"), u"3");
  EXPECT_NE(Content().find("; note"), std::string::npos);
}

TEST_P(ProfileContract, KeysAndSectionsAreAdded) {
  Put("[One]\r\nA=1\r\n[Two]\r\nA=3\r\n");
  ASSERT_TRUE(profile->SetString(u"One", u"B", u"2", file));
  ASSERT_TRUE(profile->SetString(u"Three", u"C", u"4", file));
  EXPECT_EQ(Get(u"One", u"A"), u"1");
  EXPECT_EQ(Get(u"One", u"B"), u"2");
  EXPECT_EQ(Get(u"Two", u"A"), u"3");
  EXPECT_EQ(Get(u"Two", u"B"), u"-");
  EXPECT_EQ(Get(u"Three", u"C"), u"4");
}

TEST_P(ProfileContract, TextsEndAtTheirFirstNul) {
  ASSERT_TRUE(
      profile->SetString(TextView(u"S\0x", 3), TextView(u"K\0x", 3), TextView(u"v\0x", 3), file));
  EXPECT_EQ(Content(), "[S]\r\nK=v\r\n");
  EXPECT_EQ(Get(u"S", u"None", TextView(u"d\0x", 3)), u"d");
}

TEST_P(ProfileContract, TextIsInTheSystemsCodePage) {
  ASSERT_TRUE(profile->SetString(u"S", u"K", u"\u20AC \u00FC \u4E2D", file));
  EXPECT_EQ(Content(), "[S]\r\nK=\x80 \xFC ?\r\n");
  EXPECT_EQ(Get(u"S", u"K"), u"\u20AC \u00FC ?");
}

TEST_P(ProfileContract, AFileThatCannotBeWrittenIsAFailure) {
  EXPECT_FALSE(profile->SetString(u"S", u"K", u"v", files->TempPath() + u"none\\at\\all.ini"));
}

MARL_OVER_ALL_BACKENDS(ProfileContract);

#ifdef _WIN32

/// A file in each backend, used in the same way.
class TwoProfiles {
 public:
  TwoProfiles() {
    path_ = real_.TempPath() + real_.TempName() + u".ini";
    memory_.SetTempPath(real_.TempPath());
  }
  ~TwoProfiles() { real_.Remove(path_, true); }

  void Put(std::string_view content) {
    for (FileSystem* const files :
         {static_cast<FileSystem*>(&real_), static_cast<FileSystem*>(&memory_)}) {
      Status status = kOk;
      const auto output = files->Create(path_, status);
      ASSERT_TRUE(output);
      ASSERT_EQ(output->Write(content.data(), content.size()), kOk);
    }
  }
  void Set(TextView section, TextView key, TextView value) {
    ASSERT_EQ(realProfile_.SetString(section, key, value, path_),
              memoryProfile_.SetString(section, key, value, path_));
  }
  void Get(TextView section, TextView key, std::size_t size) {
    ASSERT_EQ(realProfile_.GetString(section, key, u"none ", size, path_),
              memoryProfile_.GetString(section, key, u"none ", size, path_))
        << Content(memory_);
  }
  /// Each backend reads the other's file like its own. Blanks and the spelling of names may differ.
  void CompareFiles(std::span<const TextView> names) {
    const std::string content = Content(memory_);
    MemoryFileSystem files;
    files.Put(u"C:\\x.ini", Content(real_));
    const MemoryProfile reader(files);
    const Text path = path_ + u"2";
    {
      Status status = kOk;
      const auto output = real_.Create(path, status);
      ASSERT_TRUE(output);
      ASSERT_EQ(output->Write(content.data(), content.size()), kOk);
    }
    for (const TextView section : names) {
      for (const TextView key : names) {
        const Text value = realProfile_.GetString(section, key, u"-", 1024, path_);
        EXPECT_EQ(memoryProfile_.GetString(section, key, u"-", 1024, path_), value) << content;
        EXPECT_EQ(reader.GetString(section, key, u"-", 1024, u"C:\\x.ini"), value)
            << Content(real_);
        EXPECT_EQ(realProfile_.GetString(section, key, u"-", 1024, path), value) << content;
      }
    }
    real_.Remove(path, true);
  }

 private:
  std::string Content(const FileSystem& files) const {
    Bytes bytes;
    if (files.ReadAll(path_, bytes) != kOk) return "-";
    return {bytes.begin(), bytes.end()};
  }

  win32::FileSystemWin32 real_;
  win32::ProfileWin32 realProfile_;
  MemoryFileSystem memory_;
  MemoryProfile memoryProfile_{memory_};
  Text path_;
};

// Whole files of every kind, then 20,000 random reads and writes.
TEST(Profiles, RandomUseGivesTheSameAnswersAndLeavesFilesThatReadAlike) {
  constexpr int kFiles = 200;
  constexpr int kSteps = 100;
  std::mt19937 random(20071130);
  const auto draw = [&](std::size_t below) { return random() % below; };
  const TextView names[] = {u"Languages", u"LANGUAGES", u"Count",        u"count",
                            u"Target0",   u"a b",       u"Source Files", u"\u00E4"};
  const TextView values[] = {
      u"",    u"1",      u"de",          u"sub\\report.doc", u"a=b",           u" a ", u"\"q\"",
      u"'q'", u"\"open", u";no comment", u"[no section]",    u"\u20AC \u4E2D", u"x\ty"};
  const std::string_view lines[] = {
      "[Languages]",    "[Source Files]", "  [a b]  ", "[languages]", "Count=2",
      " count = 3 ",    "Target0=\"de\"", "a b='x'",   "; note",      "",
      "no value",       "[open",          "=no key",   ";Count=9",    "\xE4=\xC4\x80",
      "\tCount\t=\t4\t"};
  for (int file = 0; file < kFiles; ++file) {
    TwoProfiles profiles;
    if (file % 4 != 0) {
      std::string content;
      for (std::size_t line = draw(12); line > 0; --line) {
        content += lines[draw(std::size(lines))];
        content += draw(5) == 0 ? "\n" : "\r\n";
      }
      if (draw(4) == 0) content += "Target0=last";
      profiles.Put(content);
    }
    SCOPED_TRACE(file);
    for (int step = 0; step < kSteps; ++step) {
      const TextView section = names[draw(std::size(names))];
      const TextView key = names[draw(std::size(names))];
      if (draw(3) == 0) {
        ASSERT_NO_FATAL_FAILURE(profiles.Set(section, key, values[draw(std::size(values))]))
            << step;
      } else {
        ASSERT_NO_FATAL_FAILURE(profiles.Get(section, key, draw(10) == 0 ? draw(2) : 1024)) << step;
      }
    }
    if (file % 10 == 0) {
      ASSERT_NO_FATAL_FAILURE(profiles.CompareFiles(names));
    }
  }
}

#endif

}  // namespace
}  // namespace marl
