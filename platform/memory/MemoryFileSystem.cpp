#include "platform/memory/MemoryFileSystem.h"

#include <algorithm>

#include "platform/FileNames.h"
#include "platform/memory/UpperCase.h"

namespace marl {

struct MemoryFileSystem::Node {
  Text path;  // as created; without a trailing backslash, except for a drive's root
  Bytes bytes;
  std::uint32_t attributes = 0;
  int writers = 0;

  bool folder() const { return (attributes & kDirectory) != 0; }
  Text name() const { return path.substr(path.rfind(u'\\') + 1); }
};

namespace {

bool HasWildcard(TextView path) { return path.find_first_of(u"*?") != TextView::npos; }

/// True for a path with an invalid character, including wildcards.
bool HasForbidden(TextView path) {
  if (path.starts_with(kLongPathPrefix)) path.remove_prefix(kLongPathPrefix.size());
  return std::any_of(path.begin(), path.end(), [](char16_t unit) {
    return unit < u' ' || TextView(u"*?\"<>|").find(unit) != TextView::npos;
  });
}

bool NamesAFolder(TextView path) { return path.ends_with(u'\\') || path.ends_with(u'/'); }

TextView ParentOf(TextView path) {
  const std::size_t slash = path.rfind(u'\\');
  return slash == TextView::npos ? TextView() : path.substr(0, slash);
}

// The platform's rules: "*" is any number of units, "?" one unit (or none at the end), and a final
// ".*" also matches a name without a dot. Both texts are in capitals.
bool Matches(TextView name, TextView pattern) {
  if (pattern.ends_with(u".*") && name.find(u'.') == TextView::npos) pattern.remove_suffix(2);
  std::size_t n = 0, p = 0, star = TextView::npos, mark = 0;
  while (n < name.size()) {
    if (p < pattern.size() && pattern[p] == u'*') {
      star = p++;
      mark = n;
    } else if (p < pattern.size() && (pattern[p] == u'?' || pattern[p] == name[n])) {
      ++p;
      ++n;
    } else if (star != TextView::npos) {
      p = star + 1;
      n = ++mark;
    } else {
      return false;
    }
  }
  while (p < pattern.size() && (pattern[p] == u'*' || pattern[p] == u'?')) ++p;
  return p == pattern.size();
}

class Listing : public FileSearch {
 public:
  explicit Listing(std::vector<FoundEntry> entries) : entries_(std::move(entries)) {}
  Status Next(FoundEntry& out) override {
    if (next_ == entries_.size()) return kNoMoreFiles;
    out = entries_[next_++];
    return kOk;
  }

 private:
  std::vector<FoundEntry> entries_;
  std::size_t next_ = 0;
};

}  // namespace

class MemoryFileSystem::Writer : public OutputFile {
 public:
  Writer(const MemoryFileSystem& owner, NodePointer node) : owner_(owner), node_(std::move(node)) {
    ++node_->writers;
  }
  ~Writer() override { --node_->writers; }
  Status Write(const void* data, std::size_t size) override {
    if (const auto failure = owner_.Begin(FileAction::kWrite, node_->path)) return *failure;
    const auto* bytes = static_cast<const unsigned char*>(data);
    node_->bytes.insert(node_->bytes.end(), bytes, bytes + size);
    return kOk;
  }

 private:
  const MemoryFileSystem& owner_;
  NodePointer node_;
};

MemoryFileSystem::MemoryFileSystem() { SetTempPath(u"C:\\Users\\Translator\\Temp"); }

MemoryFileSystem::~MemoryFileSystem() = default;

/// Drive, backslash and names: without empty parts, "." and "..", a trailing backslash, and
/// trailing blanks and dots. A path without a drive counts from the root of drive C. One with the
/// prefix keeps all its names.
Text MemoryFileSystem::FullPath(TextView path) {
  const bool asItStands = path.starts_with(kLongPathPrefix);
  if (asItStands) path.remove_prefix(kLongPathPrefix.size());
  Text slashed(path);
  if (!asItStands) std::replace(slashed.begin(), slashed.end(), u'/', u'\\');
  TextView rest = slashed;
  Text full = u"C:";
  if (rest.size() >= 2 && rest[1] == u':') {
    full = rest.substr(0, 2);
    rest.remove_prefix(2);
  } else if (asItStands && rest.starts_with(u"UNC\\")) {
    full = u"\\";
    rest.remove_prefix(4);
  } else if (rest.starts_with(u"\\\\")) {
    full = u"\\";
    rest.remove_prefix(1);
  }
  const std::size_t root = full.size();
  while (!rest.empty()) {
    const std::size_t slash = rest.find(u'\\');
    TextView part = rest.substr(0, slash);
    rest = slash == TextView::npos ? TextView() : rest.substr(slash + 1);
    if (!asItStands) {
      if (part == u".") continue;
      if (part == u"..") {
        full.resize(std::max(root, std::min(full.size(), full.rfind(u'\\'))));
        continue;
      }
      while (rest.empty() && (part.ends_with(u'.') || part.ends_with(u' '))) part.remove_suffix(1);
    }
    if (part.empty()) continue;
    full += u'\\';
    full += part;
  }
  return full;
}

Text MemoryFileSystem::Key(TextView fullPath) { return UpperCase(fullPath); }

MemoryFileSystem::NodePointer MemoryFileSystem::Look(TextView path) const {
  if (!IsPath(path)) return nullptr;
  const auto found = nodes_.find(Key(FullPath(path)));
  if (found == nodes_.end() || (NamesAFolder(path) && !found->second->folder())) return nullptr;
  return found->second;
}

MemoryFileSystem::NodePointer MemoryFileSystem::Meet(TextView path) const {
  NodePointer node = Look(path);
  const auto gone = std::find(vanished_.begin(), vanished_.end(), node);
  if (node && gone != vanished_.end()) {
    vanished_.erase(gone);
    const_cast<MemoryFileSystem*>(this)->Erase(path);
  }
  return node;
}

Status MemoryFileSystem::Absence(TextView path) const {
  if (!IsPath(path)) return kPathNotFound;
  if (HasForbidden(path)) return kInvalidName;
  const NodePointer parent = Look(ParentOf(FullPath(path)));
  return parent && parent->folder() ? kFileNotFound : kPathNotFound;
}

std::optional<Status> MemoryFileSystem::Begin(FileAction action, TextView path) const {
  touched_.push_back({action, Text(path)});
  for (auto it = failures_.begin(); it != failures_.end(); ++it) {
    if (it->action != action) continue;
    if (it->skip-- > 0) return std::nullopt;
    const Status status = it->status;
    failures_.erase(it);
    return status;
  }
  return std::nullopt;
}

bool MemoryFileSystem::NormalFileExists(TextView path) const {
  if (Begin(FileAction::kTest, path) || !IsExactPath(path) || NamesAFolder(path)) return false;
  const NodePointer node = Meet(path);
  return node && !(node->attributes & (kDirectory | kHidden | kSystem));
}

bool MemoryFileSystem::FileExists(TextView path) const {
  if (Begin(FileAction::kTest, path)) return false;
  const NodePointer node = Meet(path);
  return node && !node->folder();
}

bool MemoryFileSystem::FolderExists(TextView path) const {
  if (Begin(FileAction::kTest, path)) return false;
  const NodePointer node = Meet(path);
  return node && node->folder();
}

Status MemoryFileSystem::ReadAll(TextView path, Bytes& out) const {
  if (const auto failure = Begin(FileAction::kRead, path)) return *failure;
  const NodePointer node = Meet(path);
  if (!node) return Absence(path);
  if (node->folder()) return kAccessDenied;
  out = node->bytes;
  return kOk;
}

std::unique_ptr<OutputFile> MemoryFileSystem::Create(TextView path, Status& status) {
  if (const auto failure = Begin(FileAction::kCreate, path)) {
    status = *failure;
    return nullptr;
  }
  NodePointer node = Meet(path);
  if (node && (node->attributes & (kDirectory | kReadOnly | kHidden | kSystem))) {
    status = kAccessDenied;
    return nullptr;
  }
  if (node && node->writers > 0) {
    status = kSharingViolation;
    return nullptr;
  }
  if (!node) {
    if (const Status absence = Absence(path); absence != kFileNotFound || NamesAFolder(path)) {
      status = absence == kFileNotFound ? kInvalidName : absence;
      return nullptr;
    }
    const Text full = FullPath(path);
    node = std::make_shared<Node>(Node{full, {}, kArchive});
    nodes_[Key(full)] = node;
  }
  node->bytes.clear();
  status = kOk;
  return std::make_unique<Writer>(*this, node);
}

Status MemoryFileSystem::Remove(TextView path, bool force) {
  if (const auto failure = Begin(FileAction::kRemove, path)) return *failure;
  const NodePointer node = Meet(path);
  if (!node) return Absence(path);
  if (node->folder() || ((node->attributes & kReadOnly) && !force)) return kAccessDenied;
  if (node->writers > 0) return kSharingViolation;
  nodes_.erase(Key(node->path));
  return kOk;
}

Status MemoryFileSystem::Copy(TextView from, TextView to) {
  if (const auto failure = Begin(FileAction::kCopy, from)) return *failure;
  const NodePointer source = Meet(from);
  if (!source) return Absence(from);
  const NodePointer target = Look(to);
  constexpr std::uint32_t kKept = kDirectory | kReadOnly | kHidden;
  if (source->folder() || (target && (target->attributes & kKept))) return kAccessDenied;
  if (target && (target == source || target->writers > 0)) return kSharingViolation;
  if (!target) {
    if (const Status absence = Absence(to); absence != kFileNotFound) return absence;
    if (NamesAFolder(to)) return kInvalidName;
  }
  Put(to, source->bytes, source->attributes);
  return kOk;
}

Status MemoryFileSystem::MakeFolder(TextView path) {
  if (const auto failure = Begin(FileAction::kMakeFolder, path)) return *failure;
  if (IsPath(path) && Look(FullPath(path))) return kAlreadyExists;
  if (const Status absence = Absence(path); absence != kFileNotFound) return absence;
  PutFolder(path);
  return kOk;
}

Status MemoryFileSystem::Attributes(TextView path, std::uint32_t& out) const {
  if (const auto failure = Begin(FileAction::kAttributes, path)) return *failure;
  const NodePointer node = Meet(path);
  if (!node) return Absence(path);
  out = node->attributes;
  return kOk;
}

Status MemoryFileSystem::SetAttributes(TextView path, std::uint32_t attributes) {
  if (const auto failure = Begin(FileAction::kSetAttributes, path)) return *failure;
  const NodePointer node = Meet(path);
  if (!node) return Absence(path);
  node->attributes = (attributes & ~std::uint32_t{kDirectory}) | (node->attributes & kDirectory);
  return kOk;
}

std::unique_ptr<FileSearch> MemoryFileSystem::Find(TextView pattern) const {
  if (Begin(FileAction::kFind, pattern) || !IsPath(pattern) || NamesAFolder(pattern)) {
    return nullptr;
  }
  const std::size_t slash = pattern.find_last_of(u"\\/");
  const Text folder = FullPath(slash == TextView::npos ? TextView() : pattern.substr(0, slash + 1));
  const NodePointer node = Look(folder);
  if (!node || !node->folder()) return nullptr;
  Text wanted = UpperCase(slash == TextView::npos ? pattern : pattern.substr(slash + 1));
  if (!HasWildcard(wanted)) {
    while (wanted.ends_with(u'.') || wanted.ends_with(u' ')) wanted.pop_back();
  }
  std::vector<FoundEntry> entries;
  if (HasWildcard(wanted) && folder.size() > 2) {
    for (const TextView dots : {u".", u".."}) {
      if (Matches(dots, wanted)) entries.push_back({kDirectory, Text(dots)});
    }
  }
  const Text prefix = Key(folder) + u'\\';
  for (auto it = nodes_.lower_bound(prefix); it != nodes_.end(); ++it) {
    if (!it->first.starts_with(prefix)) break;
    const TextView name = TextView(it->first).substr(prefix.size());
    if (name.find(u'\\') != TextView::npos || !Matches(name, wanted)) continue;
    entries.push_back({it->second->attributes, it->second->name()});
  }
  if (entries.empty()) return nullptr;
  // An exact path is met once: a file that has to vanish is gone after its listing.
  if (!HasWildcard(wanted)) Meet(pattern);
  return std::make_unique<Listing>(std::move(entries));
}

Text MemoryFileSystem::TempName() {
  Text digits;
  for (int n = nextTempName_++; n > 0; n /= 10) {
    digits.insert(digits.begin(), static_cast<char16_t>(u'0' + n % 10));
  }
  return u"ORU" + digits + u".tmp";
}

void MemoryFileSystem::Put(TextView path, Bytes bytes, std::uint32_t attributes) {
  const Text full = FullPath(path);
  PutFolder(ParentOf(full));
  NodePointer& node = nodes_[Key(full)];
  if (!node) node = std::make_shared<Node>(Node{full, {}, 0});
  node->bytes = std::move(bytes);
  node->attributes = attributes;
}

void MemoryFileSystem::Put(TextView path, std::string_view bytes, std::uint32_t attributes) {
  Put(path, Bytes(bytes.begin(), bytes.end()), attributes);
}

void MemoryFileSystem::PutFolder(TextView path, std::uint32_t attributes) {
  const Text full = FullPath(path);
  if (const TextView parent = ParentOf(full); !parent.empty()) {
    if (!Look(parent)) PutFolder(parent);
  }
  NodePointer& node = nodes_[Key(full)];
  if (!node) node = std::make_shared<Node>(Node{full, {}, kDirectory});
  if (attributes) node->attributes = attributes | kDirectory;
}

void MemoryFileSystem::Erase(TextView path) {
  const Text key = Key(FullPath(path));
  nodes_.erase(key);
  for (auto it = nodes_.lower_bound(key + u'\\');
       it != nodes_.end() && it->first.starts_with(key + u'\\');) {
    it = nodes_.erase(it);
  }
}

void MemoryFileSystem::Vanish(TextView path) {
  if (NodePointer node = Look(path)) vanished_.push_back(std::move(node));
}

void MemoryFileSystem::FailNext(FileAction action, Status status, int skip) {
  failures_.push_back({action, status, skip});
}

std::optional<Bytes> MemoryFileSystem::Content(TextView path) const {
  const NodePointer node = Look(path);
  if (!node || node->folder()) return std::nullopt;
  return node->bytes;
}

int MemoryFileSystem::OpenFiles() const {
  int open = 0;
  for (const auto& [key, node] : nodes_) open += node->writers;
  return open;
}

std::vector<Text> MemoryFileSystem::Files() const {
  std::vector<Text> files;
  for (const auto& [key, node] : nodes_) {
    if (!node->folder()) files.push_back(node->path);
  }
  return files;
}

void MemoryFileSystem::SetTempPath(TextView folder) {
  PutFolder(folder);
  tempPath_ = folder;
  if (!tempPath_.ends_with(u'\\')) tempPath_ += u'\\';
}

}  // namespace marl
