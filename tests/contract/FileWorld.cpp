#include "tests/contract/FileWorld.h"

#include <string>
#include <vector>

#include "platform/memory/MemoryFileSystem.h"
#ifdef _WIN32
#include "platform/win32/FileSystemWin32.h"
#include "platform/win32/Handle.h"
#endif

namespace marl {

FileWorld::FileWorld(Backend backend) : backend_(backend) {
#ifdef _WIN32
  if (backend == Backend::kWin32) files_ = std::make_unique<win32::FileSystemWin32>();
#endif
  if (!files_) files_ = std::make_unique<MemoryFileSystem>();
  folder_ = files_->TempPath() + u"oru-" + files_->TempName();
  EXPECT_EQ(files_->MakeFolder(folder_), kOk);
}

FileWorld::~FileWorld() {
  Empty(folder_);
#ifdef _WIN32
  if (backend_ != Backend::kWin32) return;
  // A program that a test started may not have left the folder yet.
  bool removed = false;
  for (int i = 0; i < 1000 && !removed; ++i) {
    if (i > 0) Sleep(20);
    removed = RemoveDirectoryW(win32::Wide(folder_)) != FALSE;
  }
  EXPECT_TRUE(removed) << "a file is still open";
#endif
}

void FileWorld::Empty(const Text& folder) {
  std::vector<FoundEntry> entries;
  if (const auto listing = files_->Find(folder + u"\\*")) {
    for (FoundEntry entry; listing->Next(entry) == kOk;) entries.push_back(entry);
  }
  for (const FoundEntry& entry : entries) {
    if (entry.name == u"." || entry.name == u"..") continue;
    const Text path =
        (folder.starts_with(u"\\\\?\\") ? Text() : Text(u"\\\\?\\")) + folder + u'\\' + entry.name;
    if (!(entry.attributes & kDirectory)) {
      files_->Remove(path, true);
      continue;
    }
    Empty(path);
#ifdef _WIN32
    if (backend_ == Backend::kWin32) RemoveDirectoryW(win32::Wide(path));
#endif
  }
}

void FileWorld::Put(TextView name, std::string_view content, std::uint32_t attributes) {
  Status status = kGeneralFailure;
  {
    const auto file = files_->Create(At(name), status);
    ASSERT_TRUE(file) << testing::PrintToString(Text(name)) << " " << status;
    ASSERT_EQ(file->Write(content.data(), content.size()), kOk);
  }
  if (attributes != 0) {
    ASSERT_EQ(files_->SetAttributes(At(name), attributes), kOk);
  }
}

std::string FileWorld::Content(TextView name) const {
  Bytes bytes;
  if (files_->ReadAll(At(name), bytes) != kOk) return "-";
  return {bytes.begin(), bytes.end()};
}

}  // namespace marl
