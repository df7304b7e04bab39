#include "platform/FileSystem.h"

#include <algorithm>
#include <map>
#include <random>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "tests/contract/FileWorld.h"

namespace marl {
namespace {

class FileSystemContract : public BackendTest {
 protected:
  FileWorld world{GetParam()};
  FileSystem& files = world.files();

  Text At(TextView name) const { return world.At(name); }
  std::uint32_t Attributes(TextView name) const {
    std::uint32_t attributes = 0;
    EXPECT_EQ(files.Attributes(At(name), attributes), kOk);
    return attributes & kKeptAttributes;
  }
  Status Create(TextView path) {
    Status status = kGeneralFailure;
    const bool made = files.Create(path, status) != nullptr;
    EXPECT_EQ(made, status == kOk);
    return status;
  }
  Status Read(TextView path) {
    Bytes bytes = {'u'};
    const Status status = files.ReadAll(path, bytes);
    if (status != kOk) {
      EXPECT_EQ(bytes, Bytes{'u'}) << "touched";
    }
    return status;
  }
  Status Attributes(TextView path, int) {
    std::uint32_t attributes = 77;
    const Status status = files.Attributes(path, attributes);
    if (status != kOk) {
      EXPECT_EQ(attributes, 77u) << "touched";
    }
    return status;
  }
  std::set<Text> Names(TextView pattern) {
    std::set<Text> names;
    const auto listing = files.Find(At(pattern));
    if (!listing) return names;
    FoundEntry entry;
    while (listing->Next(entry) == kOk) EXPECT_TRUE(names.insert(entry.name).second);
    entry.name = u"untouched";
    EXPECT_EQ(listing->Next(entry), kNoMoreFiles);
    EXPECT_EQ(entry.name, u"untouched");
    return names;
  }
};
MARL_OVER_ALL_BACKENDS(FileSystemContract);

using Names_ = std::set<Text>;

TEST_P(FileSystemContract, NormalFilesAreNeitherHiddenNorSystemNorFolders) {
  world.Put(u"plain");
  world.Put(u"read-only", "", kReadOnly);
  world.Put(u"hidden", "", kHidden);
  world.Put(u"system", "", kSystem);
  world.Put(u"all", "", kReadOnly | kHidden | kSystem);
  ASSERT_EQ(files.MakeFolder(At(u"folder")), kOk);
  const struct {
    TextView name;
    bool normal;
    bool file;
    bool folder;
  } rows[] = {{u"plain", true, true, false},     {u"read-only", true, true, false},
              {u"hidden", false, true, false},   {u"system", false, true, false},
              {u"all", false, true, false},      {u"folder", false, false, true},
              {u"folder\\", false, false, true}, {u"plain\\", false, false, false},
              {u"none", false, false, false},    {u"none\\at all", false, false, false},
              {u"plain\\x", false, false, false}};
  for (const auto& row : rows) {
    EXPECT_EQ(files.NormalFileExists(At(row.name)), row.normal) << testing::PrintToString(row.name);
    EXPECT_EQ(files.FileExists(At(row.name)), row.file) << testing::PrintToString(row.name);
    EXPECT_EQ(files.FolderExists(At(row.name)), row.folder) << testing::PrintToString(row.name);
  }
}

TEST_P(FileSystemContract, WildcardsQuotesAndAngleBracketsAreNoNames) {
  world.Put(u"a.txt", "content");
  for (const TextView name : {u"*", u"a.*", u"?.txt", u"a.tx?", u"\"a.txt\"", u"a\"txt", u"a<",
                              u"<", u"a.tx>", u">.txt"}) {
    EXPECT_FALSE(files.NormalFileExists(At(name))) << testing::PrintToString(name);
    EXPECT_FALSE(files.FileExists(At(name))) << testing::PrintToString(name);
    EXPECT_FALSE(files.FolderExists(At(name))) << testing::PrintToString(name);
    EXPECT_EQ(Read(At(name)), kInvalidName) << testing::PrintToString(name);
    EXPECT_EQ(Create(At(name)), kInvalidName) << testing::PrintToString(name);
    EXPECT_EQ(files.Remove(At(name), true), kInvalidName) << testing::PrintToString(name);
    EXPECT_EQ(files.MakeFolder(At(name)), kInvalidName) << testing::PrintToString(name);
    EXPECT_EQ(files.Copy(At(u"a.txt"), At(name)), kInvalidName) << testing::PrintToString(name);
    EXPECT_EQ(Attributes(At(name), 0), kInvalidName) << testing::PrintToString(name);
  }
  EXPECT_EQ(world.Content(u"a.txt"), "content");
}

TEST_P(FileSystemContract, TheLongFormOfAPathNamesTheSameThings) {
  world.Put(u"a.txt", "content");
  ASSERT_EQ(files.MakeFolder(At(u"folder")), kOk);
  const Text prefix = u"\\\\?\\";
  EXPECT_TRUE(files.NormalFileExists(prefix + At(u"A.TXT")));
  EXPECT_TRUE(files.FileExists(prefix + At(u"a.txt")));
  EXPECT_TRUE(files.FolderExists(prefix + At(u"folder")));
  EXPECT_FALSE(files.NormalFileExists(prefix + At(u"folder")));
  EXPECT_FALSE(files.NormalFileExists(prefix + At(u"none")));
  EXPECT_FALSE(files.NormalFileExists(prefix + At(u"?.txt")));
  EXPECT_FALSE(files.NormalFileExists(prefix + At(u"folder\\..\\a.txt"))) << "it is used unchanged";
  Bytes bytes;
  EXPECT_EQ(files.ReadAll(prefix + At(u"a.txt"), bytes), kOk);
  EXPECT_EQ(bytes.size(), 7u);
  EXPECT_EQ(Create(prefix + At(u"new")), kOk);
  EXPECT_TRUE(files.FileExists(At(u"new")));
  EXPECT_TRUE(files.Find(prefix + At(u"*.txt")));
}

TEST_P(FileSystemContract, PathsMayBeLong) {
  Text folder = world.folder();
  while (folder.size() < 400) {
    folder += u"\\a folder with a name of some length";
    ASSERT_EQ(files.MakeFolder(folder), kOk) << folder.size();
  }
  const Text file = folder + u"\\file.txt";
  EXPECT_EQ(Create(file), kOk);
  EXPECT_TRUE(files.NormalFileExists(file));
  EXPECT_TRUE(files.FolderExists(folder));
  EXPECT_TRUE(files.Find(folder + u"\\*.txt"));
  EXPECT_EQ(files.SetAttributes(file, kReadOnly), kOk);
  EXPECT_EQ(files.Remove(file, true), kOk);
  EXPECT_FALSE(files.FileExists(file));
}

TEST_P(FileSystemContract, NamesAreFoundWithoutRegardToCaseAndKeepTheirs) {
  world.Put(u"Read Me.TXT");
  world.Put(u"\u0219\u01B0\u00E4");
  EXPECT_TRUE(files.NormalFileExists(At(u"READ ME.txt")));
  EXPECT_TRUE(files.FileExists(At(u"\u0218\u01AF\u00C4")));
  EXPECT_EQ(Names(u"read*"), Names_{u"Read Me.TXT"});
  world.Put(u"READ ME.TXT", "new");
  EXPECT_EQ(Names(u"read*"), Names_{u"Read Me.TXT"});
  // Signs and variants of letters make different names.
  world.Put(u"k");
  world.Put(u"s");
  world.Put(u"\u03BC");
  for (const TextView name : {u"\u212A", u"\u017F", u"\u00B5"}) {
    EXPECT_FALSE(files.FileExists(At(name))) << testing::PrintToString(name);
  }
}

TEST_P(FileSystemContract, WritingsOfAPath) {
  world.Put(u"a.txt", "content");
  ASSERT_EQ(files.MakeFolder(At(u"folder")), kOk);
  for (const TextView name : {u"folder\\..\\a.txt", u".\\a.txt", u"folder/../a.txt", u"\\a.txt",
                              u"a.txt.", u"a.txt ", u"a.txt. .", u"none\\..\\a.txt"}) {
    EXPECT_EQ(world.Content(name), "content") << testing::PrintToString(name);
    EXPECT_TRUE(files.FileExists(At(name))) << testing::PrintToString(name);
  }
  std::string slashes(world.folder().begin(), world.folder().end());
  std::replace(slashes.begin(), slashes.end(), '\\', '/');
  EXPECT_TRUE(files.NormalFileExists(Text(slashes.begin(), slashes.end()) + u"/a.txt"));
}

TEST_P(FileSystemContract, PathThatIsTooLongIsNone) {
  Text path = u"C:\\";
  while (path.size() < 40'000) path += path.size() % 200 ? u'a' : u'\\';
  Bytes bytes;
  Status status = kOk;
  EXPECT_EQ(files.ReadAll(path, bytes), kPathNotFound);
  EXPECT_FALSE(files.Create(path, status));
  EXPECT_EQ(status, kPathNotFound);
  EXPECT_FALSE(files.FileExists(path));
  EXPECT_FALSE(files.NormalFileExists(path));
  EXPECT_EQ(files.MakeFolder(path), kPathNotFound);
}

TEST_P(FileSystemContract, ANulOrNothingIsNoPath) {
  world.Put(u"a");
  const Text cut = At(TextView(u"a\0b", 3));
  for (const Text& path : {Text(), cut}) {
    EXPECT_FALSE(files.NormalFileExists(path));
    EXPECT_FALSE(files.FileExists(path));
    EXPECT_FALSE(files.FolderExists(path));
    EXPECT_EQ(Read(path), kPathNotFound);
    EXPECT_EQ(Create(path), kPathNotFound);
    EXPECT_EQ(files.Remove(path, true), kPathNotFound);
    EXPECT_EQ(files.MakeFolder(path), kPathNotFound);
    EXPECT_EQ(files.Copy(path, At(u"b")), kPathNotFound);
    EXPECT_EQ(files.Copy(At(u"a"), path), kPathNotFound);
    EXPECT_EQ(Attributes(path, 0), kPathNotFound);
    EXPECT_EQ(files.SetAttributes(path, 0), kPathNotFound);
    EXPECT_FALSE(files.Find(path));
  }
}

TEST_P(FileSystemContract, WhatIsMissingSaysWhich) {
  world.Put(u"file");
  const struct {
    TextView name;
    Status status;
  } rows[] = {{u"none\\x", kPathNotFound}, {u"file\\x", kPathNotFound}, {u"none", kFileNotFound}};
  for (const auto& row : rows) {
    const Text path = At(row.name);
    EXPECT_EQ(Read(path), row.status) << testing::PrintToString(path);
    EXPECT_EQ(files.Remove(path, true), row.status) << testing::PrintToString(path);
    EXPECT_EQ(files.Copy(path, At(u"to")), row.status) << testing::PrintToString(path);
    EXPECT_EQ(Attributes(path, 0), row.status) << testing::PrintToString(path);
    EXPECT_EQ(files.SetAttributes(path, 0), row.status) << testing::PrintToString(path);
    const Status made = row.status == kFileNotFound ? kOk : kPathNotFound;
    EXPECT_EQ(files.Copy(At(u"file"), path), made) << testing::PrintToString(path);
    files.Remove(path, true);
    EXPECT_EQ(Create(path), made) << testing::PrintToString(path);
    files.Remove(path, true);
    EXPECT_EQ(files.MakeFolder(path), made) << testing::PrintToString(path);
  }
  EXPECT_FALSE(files.FileExists(At(u"to")));
}

TEST_P(FileSystemContract, AnEmptyFileOpens) {
  world.Put(u"empty");
  Bytes bytes = {'u'};
  EXPECT_EQ(files.ReadAll(At(u"empty"), bytes), kOk);
  EXPECT_EQ(bytes, Bytes());
  EXPECT_TRUE(files.NormalFileExists(At(u"empty")));
}

TEST_P(FileSystemContract, FilesAreWrittenPieceByPieceAndReadWhole) {
  Status status = kGeneralFailure;
  std::string all;
  {
    const auto file = files.Create(At(u"x"), status);
    ASSERT_TRUE(file);
    EXPECT_EQ(status, kOk);
    for (const std::size_t size : {std::size_t{1}, std::size_t{0}, std::size_t{70000}}) {
      const std::string piece(size, static_cast<char>('a' + size % 26));
      EXPECT_EQ(file->Write(piece.data(), piece.size()), kOk);
      all += piece;
    }
    EXPECT_EQ(world.Content(u"x"), all) << "it can be read while it is written";
  }
  EXPECT_EQ(world.Content(u"x"), all);
  world.Put(u"x", "new");
  EXPECT_EQ(world.Content(u"x"), "new");
}

TEST_P(FileSystemContract, ReadOnlyHiddenAndSystemFilesAreNotOverwritten) {
  for (const std::uint32_t attribute : {kReadOnly, kHidden, kSystem}) {
    world.Put(u"x", "kept", attribute);
    EXPECT_EQ(Create(At(u"x")), kAccessDenied) << attribute;
    EXPECT_EQ(world.Content(u"x"), "kept") << attribute;
    EXPECT_EQ(Attributes(u"x"), attribute);
    // If it is deleted first, a plain file replaces it.
    EXPECT_EQ(files.Remove(At(u"x"), true), kOk) << attribute;
    world.Put(u"x", "new");
    EXPECT_EQ(world.Content(u"x"), "new") << attribute;
    EXPECT_EQ(Attributes(u"x"), 0u) << attribute;
  }
  ASSERT_EQ(files.MakeFolder(At(u"folder")), kOk);
  EXPECT_EQ(Create(At(u"folder")), kAccessDenied);
  EXPECT_EQ(Read(At(u"folder")), kAccessDenied);
}

TEST_P(FileSystemContract, ReadOnlyFilesAreRemovedByForceAlone) {
  world.Put(u"r", "kept", kReadOnly | kHidden);
  EXPECT_EQ(files.Remove(At(u"r"), false), kAccessDenied);
  EXPECT_EQ(Attributes(u"r"), kReadOnly | kHidden);
  EXPECT_EQ(world.Content(u"r"), "kept");
  EXPECT_EQ(files.Remove(At(u"r"), true), kOk);
  EXPECT_FALSE(files.FileExists(At(u"r")));
  world.Put(u"h", "", kHidden | kSystem);
  EXPECT_EQ(files.Remove(At(u"h"), false), kOk);
  ASSERT_EQ(files.MakeFolder(At(u"folder")), kOk);
  EXPECT_EQ(files.Remove(At(u"folder"), true), kAccessDenied);
  EXPECT_TRUE(files.FolderExists(At(u"folder")));
}

TEST_P(FileSystemContract, AFileThatIsWrittenStays) {
  world.Put(u"other", "other");
  Status status = kGeneralFailure;
  {
    const auto file = files.Create(At(u"x"), status);
    ASSERT_TRUE(file);
    EXPECT_EQ(Create(At(u"x")), kSharingViolation);
    EXPECT_EQ(files.Remove(At(u"x"), false), kSharingViolation);
    EXPECT_EQ(files.Copy(At(u"other"), At(u"x")), kSharingViolation);
    EXPECT_EQ(files.SetAttributes(At(u"x"), kReadOnly), kOk);
    EXPECT_EQ(files.Remove(At(u"x"), true), kSharingViolation);
    EXPECT_EQ(Attributes(u"x"), kReadOnly) << "a failed removal leaves it as it was";
    EXPECT_EQ(file->Write("text", 4), kOk);
    EXPECT_EQ(files.Copy(At(u"x"), At(u"copy")), kOk);
  }
  EXPECT_EQ(world.Content(u"x"), "text");
  EXPECT_EQ(world.Content(u"copy"), "text");
  EXPECT_EQ(files.Remove(At(u"x"), true), kOk);
}

TEST_P(FileSystemContract, CopiesTakeContentAndAttributes) {
  world.Put(u"from", "from", kReadOnly | kHidden);
  world.Put(u"to", "a longer text", kSystem);
  EXPECT_EQ(files.Copy(At(u"from"), At(u"to")), kOk);
  EXPECT_EQ(world.Content(u"to"), "from");
  EXPECT_EQ(Attributes(u"to"), kReadOnly | kHidden);
  EXPECT_EQ(Names(u"*o"), Names_{u"to"});
  for (const std::uint32_t attribute : {kReadOnly, kHidden}) {
    ASSERT_EQ(files.SetAttributes(At(u"to"), attribute), kOk);
    EXPECT_EQ(files.Copy(At(u"from"), At(u"to")), kAccessDenied) << attribute;
  }
  ASSERT_EQ(files.SetAttributes(At(u"from"), 0), kOk);
  EXPECT_EQ(files.Copy(At(u"from"), At(u"FROM")), kSharingViolation);
  ASSERT_EQ(files.MakeFolder(At(u"folder")), kOk);
  EXPECT_EQ(files.Copy(At(u"from"), At(u"folder")), kAccessDenied);
  EXPECT_EQ(files.Copy(At(u"folder"), At(u"x")), kAccessDenied);
  EXPECT_EQ(world.Content(u"from"), "from");
}

TEST_P(FileSystemContract, FoldersAreMadeOneByOne) {
  world.Put(u"file");
  EXPECT_EQ(files.MakeFolder(At(u"a")), kOk);
  EXPECT_EQ(files.MakeFolder(At(u"A")), kAlreadyExists);
  EXPECT_EQ(files.MakeFolder(At(u"file")), kAlreadyExists);
  EXPECT_EQ(files.MakeFolder(At(u"a\\b\\")), kOk);
  EXPECT_TRUE(files.FolderExists(At(u"a\\b")));
  EXPECT_EQ(Attributes(u"a\\b"), kDirectory);
}

TEST_P(FileSystemContract, AttributesAreKept) {
  world.Put(u"x");
  ASSERT_EQ(files.MakeFolder(At(u"folder")), kOk);
  for (std::uint32_t attributes = 0; attributes < 8; ++attributes) {
    EXPECT_EQ(files.SetAttributes(At(u"x"), attributes), kOk);
    EXPECT_EQ(Attributes(u"x"), attributes);
  }
  EXPECT_EQ(files.SetAttributes(At(u"x"), kDirectory), kOk);
  EXPECT_EQ(Attributes(u"x"), 0u) << "a file becomes no folder";
  EXPECT_EQ(files.SetAttributes(At(u"folder"), kHidden), kOk);
  EXPECT_EQ(Attributes(u"folder"), kDirectory | kHidden);
}

TEST_P(FileSystemContract, ListingsGiveEveryEntryOnce) {
  EXPECT_EQ(Names(u"*"), (Names_{u".", u".."}));
  Names_ all = {u".", u".."};
  for (int i = 0; i < 300; ++i) {
    const std::string number = std::to_string(i);
    const Text name = u"file " + Text(number.begin(), number.end());
    world.Put(name);
    all.insert(name);
  }
  EXPECT_EQ(Names(u"*"), all);
}

TEST_P(FileSystemContract, PatternsAreThoseOfThePlatform) {
  for (const TextView name : {u"a", u"A.txt", u"ab.txt", u"b.TXT.old", u"\u0218.x"})
    world.Put(name);
  ASSERT_EQ(files.MakeFolder(At(u"folder")), kOk);
  world.Put(u"hidden.h", "", kHidden | kSystem);
  const struct {
    TextView pattern;
    Names_ names;
  } rows[] = {
      {u"*",
       {u".", u"..", u"a", u"A.txt", u"ab.txt", u"b.TXT.old", u"\u0218.x", u"folder", u"hidden.h"}},
      {u"*.*",
       {u".", u"..", u"a", u"A.txt", u"ab.txt", u"b.TXT.old", u"\u0218.x", u"folder", u"hidden.h"}},
      {u"*.txt", {u"A.txt", u"ab.txt"}},
      {u"*.t*", {u"A.txt", u"ab.txt", u"b.TXT.old"}},
      {u"?.txt", {u"A.txt"}},
      {u"?b.txt", {u"ab.txt"}},
      {u"a*", {u"a", u"A.txt", u"ab.txt"}},
      {u"a.*", {u"a", u"A.txt"}},
      {u"A", {u"a"}},
      {u"A.", {u"a"}},
      {u"*b*", {u"ab.txt", u"b.TXT.old"}},
      {u"\u0219.X", {u"\u0218.x"}},
      {u"folder", {u"folder"}},
      {u"folder\\", {}},
      {u"folder\\*", {u".", u".."}},
      {u"folder\\..\\a", {u"a"}},
      {u"hidden.*", {u"hidden.h"}},
      {u"none", {}},
      {u"none*", {}},
      {u"none\\*", {}},
      {u"a\\*", {}},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(Names(row.pattern), row.names) << testing::PrintToString(row.pattern);
  }
  // In front of a dot and at the end, "?" also stands for nothing, but not in all versions of Wine.
  Names_ names = Names(u"??.txt");
  names.erase(u"A.txt");
  EXPECT_EQ(names, Names_{u"ab.txt"});
}

TEST_P(FileSystemContract, EntriesCarryTheirAttributes) {
  world.Put(u"x", "", kReadOnly | kSystem);
  ASSERT_EQ(files.MakeFolder(At(u"y")), kOk);
  std::map<Text, std::uint32_t> found;
  const auto listing = files.Find(At(u"?"));
  ASSERT_TRUE(listing);
  for (FoundEntry entry; listing->Next(entry) == kOk;) {
    found[entry.name] = entry.attributes & kKeptAttributes;
  }
  found.erase(u".");
  found.erase(u"..");
  EXPECT_EQ(found,
            (std::map<Text, std::uint32_t>{{u"x", kReadOnly | kSystem}, {u"y", kDirectory}}));
}

TEST_P(FileSystemContract, ListingsMayBeLeftEarlyAndFilesGoMeanwhile) {
  world.Put(u"a");
  world.Put(u"b");
  FoundEntry entry;
  {
    const auto listing = files.Find(At(u"*"));
    ASSERT_TRUE(listing);
    EXPECT_EQ(listing->Next(entry), kOk);
    EXPECT_EQ(files.Remove(At(u"a"), false), kOk);
    EXPECT_EQ(files.Remove(At(u"b"), false), kOk);
  }
  EXPECT_EQ(Names(u"*"), (Names_{u".", u".."}));
}

TEST_P(FileSystemContract, TemporaryNamesAreNewEachTime) {
  EXPECT_TRUE(files.TempPath().ends_with(u'\\'));
  EXPECT_TRUE(files.FolderExists(files.TempPath()));
  std::set<Text> names;
  for (int i = 0; i < 1000; ++i) {
    const Text name = files.TempName();
    EXPECT_EQ(name.find_first_of(u"\\/:*?\"<>|"), Text::npos) << testing::PrintToString(name);
    EXPECT_TRUE(names.insert(name).second) << testing::PrintToString(name);
  }
}

#ifdef _WIN32

// ---- Long random use

/// Random operations on a world, each with its result as text.
class FileUse {
 public:
  FileUse(FileWorld& world, unsigned seed) : world_(world), files_(world.files()), random_(seed) {}

  std::string Step() {
    answer_.str({});
    plain_ = true;
    const int operation = Draw(24);
    const Text path = Path();
    answer_ << operation << ' ' << testing::PrintToString(path.substr(world_.folder().size()))
            << ": ";
    switch (operation) {
      case 0: answer_ << files_.NormalFileExists(path); break;
      case 1: answer_ << files_.FileExists(path); break;
      case 2: answer_ << files_.FolderExists(path); break;
      case 3:
      case 4:
      case 5: Read(path); break;
      case 6:
      case 7:
      case 8:
      case 9: Write(path); break;
      case 10:
      case 11: Keep(path); break;
      case 12: kept_.clear(); break;
      case 13: Tell(files_.Remove(path, false)); break;
      case 14:
      case 15: Tell(files_.Remove(path, true)); break;
      case 16:
      case 17: Tell(files_.Copy(path, Path())); break;
      case 18: Tell(files_.MakeFolder(path)); break;
      case 19: {
        std::uint32_t attributes = 0;
        Tell(files_.Attributes(path, attributes));
        answer_ << ' ' << (attributes & kKeptAttributes);
        break;
      }
      case 20:
      case 21: Attribute(path); break;
      case 22:
        List(world_.At(Pick({u"*", u"*.*", u"a\\*", u"a\\b\\*", u"*.txt", u"x*", u"a\\*.*"})));
        break;
      default: List(path); break;
    }
    return answer_.str();
  }

  /// The whole content: paths, attributes and data.
  std::string State() {
    kept_.clear();
    answer_.str({});
    plain_ = true;
    TellFolder(world_.folder());
    return answer_.str();
  }

 private:
  int Draw(int below) { return static_cast<int>(random_() % static_cast<unsigned>(below)); }
  Text Pick(std::initializer_list<TextView> texts) {
    return Text(texts.begin()[Draw(static_cast<int>(texts.size()))]);
  }
  /// Without the final sigma: versions of Wine differ about whether it is a sigma.
  Text Path() {
    Text folder = Pick({u"", u"", u"a\\", u"A\\", u"a\\b\\", u"x\\", u"none\\", u"a\\..\\"});
    const Text name =
        Pick({u"x", u"X", u"y", u"a", u"a\\b", u"x.txt", u"X.TXT", u"name with blanks.txt",
              u"\u0219\u01B0", u"\u0218\u01AF", u"k", u"\u212A", u"\u03C3", u"\u03A3", u"x."});
    Text path = world_.At(folder + name);
    if (Draw(12) == 0 && path.find(u"..") == Text::npos && !path.ends_with(u'.')) {
      path.insert(0, u"\\\\?\\");
    }
    if (Draw(60) == 0) {
      path += Pick({u"*", u"\"", u"<", u">", u"|", u"\\"});
      plain_ = false;
    }
    return path;
  }
  /// The reason for the failure of an invalid path differs between backends.
  void Tell(Status status) { answer_ << (plain_ || status == kOk ? status : kInvalidName); }
  void Read(const Text& path) {
    Bytes bytes;
    Tell(files_.ReadAll(path, bytes));
    answer_ << ' ' << testing::PrintToString(bytes);
  }
  void Write(const Text& path) {
    Status status = kGeneralFailure;
    const auto file = files_.Create(path, status);
    Tell(status);
    if (file) Append(*file);
  }
  void Append(OutputFile& file) {
    const std::string bytes(static_cast<std::size_t>(Draw(40)), static_cast<char>('a' + Draw(26)));
    answer_ << ' ' << file.Write(bytes.data(), bytes.size());
  }
  /// Opens a file for writing and keeps it open for several steps.
  void Keep(const Text& path) {
    if (kept_.size() == 3) kept_.erase(kept_.begin());
    Status status = kGeneralFailure;
    if (auto file = files_.Create(path, status)) {
      Append(*file);
      kept_.push_back(std::move(file));
    }
    Tell(status);
  }
  void Attribute(const Text& path) {
    // Not every system keeps the attributes of a folder.
    if (files_.FolderExists(path)) return;
    Tell(files_.SetAttributes(path, static_cast<std::uint32_t>(Draw(4) == 0 ? Draw(8) : 0)));
  }
  void List(const Text& pattern) {
    // These are wildcards of Windows too, which older versions of Wine take for letters. The
    // program lists no such pattern.
    if (pattern.find_first_of(u"\"<>") != Text::npos) return;
    std::map<Text, std::uint32_t> entries;
    if (const auto listing = files_.Find(pattern)) {
      for (FoundEntry entry; listing->Next(entry) == kOk;) {
        entries[entry.name] = entry.attributes & kKeptAttributes;
      }
    }
    answer_ << testing::PrintToString(entries);
  }
  void TellFolder(const Text& folder) {
    std::map<Text, std::uint32_t> entries;
    if (const auto listing = files_.Find(folder + u"\\*")) {
      for (FoundEntry entry; listing->Next(entry) == kOk;) {
        entries[entry.name] = entry.attributes & kKeptAttributes;
      }
    }
    for (const auto& [name, attributes] : entries) {
      if (name == u"." || name == u"..") continue;
      const Text path = folder + u'\\' + name;
      answer_ << testing::PrintToString(path.substr(world_.folder().size())) << ' ' << attributes;
      if (attributes & kDirectory) {
        TellFolder(path);
      } else {
        Read(path);
      }
      answer_ << '\n';
    }
  }

  FileWorld& world_;
  FileSystem& files_;
  std::mt19937 random_;
  std::ostringstream answer_;
  bool plain_ = true;
  std::vector<std::unique_ptr<OutputFile>> kept_;
};

TEST(FileSystems, RandomUseGivesTheSameAnswersAndLeavesTheSame) {
  constexpr int kSteps = 20000;
  for (const unsigned seed : {20071130u, 4u}) {
    FileWorld memory(Backend::kMemory);
    FileWorld real(Backend::kWin32);
    FileUse here(real, seed);
    FileUse there(memory, seed);
    for (int step = 0; step < kSteps / 2; ++step) {
      ASSERT_EQ(here.Step(), there.Step()) << "seed " << seed << ", step " << step;
      if (step % 500 == 499) {
        ASSERT_EQ(here.State(), there.State()) << "seed " << seed << ", step " << step;
      }
    }
  }
}

#endif

}  // namespace
}  // namespace marl
