#include "platform/memory/MemoryRegistryStore.h"

#include <algorithm>
#include <cstring>

#include "platform/memory/CodePage1252.h"
#include "platform/memory/UpperCase.h"

namespace marl {
namespace {

constexpr auto kBadNetPath = static_cast<Status>(53);
constexpr auto kBadPathName = static_cast<Status>(161);
constexpr std::size_t kLongestKeyName = 255;
constexpr std::size_t kLongestValueName = 16383;

/// For the 8-bit entry points names end at the first NUL.
NarrowText Name(const NarrowText& text) { return text.substr(0, text.find('\0')); }

/// The key by which names are compared and sorted.
Text Folded(const NarrowText& name) { return UpperCase(FromCodePage1252(name)); }

std::uint32_t Size(const NarrowText& text) { return static_cast<std::uint32_t>(text.size()); }

void CopyTerminated(const NarrowText& text, std::span<char> buffer) {
  std::memcpy(buffer.data(), text.c_str(), text.size() + 1);
}

}  // namespace

struct MemoryRegistryStore::Node {
  struct Value {
    NarrowText name;
    std::uint32_t kind;
    NarrowText data;
  };

  NarrowText name;
  std::weak_ptr<Node> parent;
  std::map<Text, std::shared_ptr<Node>> children;
  std::vector<Value> values;
  std::map<Text, std::size_t> places;  ///< indexes of the values, by folded name
  bool deleted = false;

  std::vector<Value>::iterator Find(const NarrowText& wanted) {
    const auto found = places.find(Folded(Name(wanted)));
    return found == places.end() ? values.end()
                                 : values.begin() + static_cast<std::ptrdiff_t>(found->second);
  }
  void Add(Value value) {
    places[Folded(value.name)] = values.size();
    values.push_back(std::move(value));
  }
  void Erase(std::vector<Value>::iterator value) {
    const auto at = static_cast<std::size_t>(value - values.begin());
    places.erase(Folded(value->name));
    values.erase(value);
    for (auto& entry : places) entry.second -= entry.second > at ? 1 : 0;
  }

  static std::shared_ptr<Node> Child(const std::shared_ptr<Node>& parent, const NarrowText& name) {
    auto child = std::make_shared<Node>();
    child->name = name;
    child->parent = parent;
    parent->children[Folded(name)] = child;
    return child;
  }

  /// Returns the data by the size protocol.
  static Status Give(const Value& value, std::span<char> buffer, std::uint32_t& size) {
    size = Size(value.data);
    if (!buffer.data()) return kOk;
    if (buffer.size() < value.data.size()) return kMoreData;
    std::copy(value.data.begin(), value.data.end(), buffer.begin());
    // A missing terminator is added if there is room, but not counted.
    if (IsTextKind(value.kind) && buffer.size() > value.data.size() && !value.data.empty() &&
        value.data.back() != '\0') {
      buffer[value.data.size()] = '\0';
    }
    return kOk;
  }
};

MemoryRegistryStore::MemoryRegistryStore() {
  for (const RootKey root : {kCurrentUser, kLocalMachine}) roots_[root] = std::make_shared<Node>();
  const auto software = Node::Child(roots_[kLocalMachine], "SOFTWARE");
  roots_[kClassesRoot] = Node::Child(software, "Classes");
  Node::Child(roots_[kCurrentUser], "Software");
}

MemoryRegistryStore::~MemoryRegistryStore() = default;

void MemoryRegistryStore::SetEnvironment(const NarrowText& name, const NarrowText& value) {
  environment_[Folded(name)] = value;
}

MemoryRegistryStore& MemoryRegistryStore::AddMachine(const NarrowText& name) {
  auto& machine = machines_[Folded(name)];
  machine = std::make_unique<MemoryRegistryStore>();
  return *machine;
}

void MemoryRegistryStore::Plant(KeyHandle root, const NarrowText& path, const NarrowText& name,
                                std::uint32_t kind, const NarrowText& data) {
  std::shared_ptr<Node> node;
  if (Walk(root, path, true, node) != kOk) return;
  const auto value = node->Find(name);
  if (value != node->values.end()) node->Erase(value);
  node->Add({Name(name), kind, data});
}

Status MemoryRegistryStore::Find(KeyHandle key, Opened& out) const {
  if (const auto root = roots_.find(key); root != roots_.end()) {
    out = {root->second, kKeyAllAccess};
  } else if (const auto opened = open_.find(key); opened != open_.end()) {
    out = opened->second;
  } else {
    return kInvalidHandle;
  }
  return out.node->deleted ? kKeyDeleted : kOk;
}

Status MemoryRegistryStore::Find(KeyHandle key, std::uint32_t needed,
                                 std::shared_ptr<Node>& out) const {
  Opened found;
  if (const Status status = Find(key, found); status != kOk) return status;
  if ((found.access & needed) != needed) return kAccessDenied;
  out = found.node;
  return kOk;
}

Status MemoryRegistryStore::Walk(KeyHandle key, const NarrowText& path, bool make,
                                 std::shared_ptr<Node>& out) {
  Opened start;
  if (const Status status = Find(key, start); status != kOk) return status;
  const NarrowText whole = Name(path);
  if (whole.starts_with('\\')) return kBadPathName;
  std::vector<NarrowText> steps;
  for (std::size_t at = 0; at < whole.size();) {
    const std::size_t end = std::min(whole.find('\\', at), whole.size());
    if (end > at) steps.push_back(whole.substr(at, end - at));
    at = end + 1;
  }
  // If a later part of the path is invalid, nothing is created.
  for (const NarrowText& step : steps) {
    if (step.size() > kLongestKeyName) return make ? kInvalidParameter : kFileNotFound;
  }
  std::shared_ptr<Node> node = start.node;
  for (const NarrowText& step : steps) {
    const auto child = node->children.find(Folded(step));
    if (child != node->children.end()) {
      node = child->second;
    } else if (make) {
      node = Node::Child(node, step);
    } else {
      return kFileNotFound;
    }
  }
  out = node;
  return kOk;
}

Status MemoryRegistryStore::Open(std::shared_ptr<Node> node, std::uint32_t access, Place place,
                                 OpenKeyHandle& out) {
  const KeyHandle key = next_;
  next_ += 4;
  open_[key] = {std::move(node), access, std::move(place)};
  out = OpenKeyHandle(*this, key);
  return kOk;
}

MemoryRegistryStore::Place MemoryRegistryStore::PlaceOf(KeyHandle key,
                                                        const NarrowText& path) const {
  const auto opened = open_.find(key);
  if (opened == open_.end()) return {key, Name(path), {}};
  Place place = opened->second.place;
  if (!path.empty()) place.path += '\\' + Name(path);
  return place;
}

Status MemoryRegistryStore::OpenKey(KeyHandle key, const NarrowText& path, std::uint32_t access,
                                    OpenKeyHandle& out) {
  openedPaths_.insert(PlaceOf(key, path));
  std::shared_ptr<Node> node;
  const Status status = Walk(key, path, false, node);
  out.Reset();
  return status == kOk ? Open(std::move(node), access, PlaceOf(key, path), out) : status;
}

Status MemoryRegistryStore::CreateKey(KeyHandle key, const NarrowText& path, std::uint32_t access,
                                      OpenKeyHandle& out) {
  std::shared_ptr<Node> node;
  const Status status = Walk(key, path, true, node);
  out.Reset();
  return status == kOk ? Open(std::move(node), access, PlaceOf(key, path), out) : status;
}

void MemoryRegistryStore::CloseKey(KeyHandle key) { open_.erase(key); }

Status MemoryRegistryStore::DeleteKey(KeyHandle key, const NarrowText& path) {
  std::shared_ptr<Node> node;
  if (const Status status = Walk(key, path, false, node); status != kOk) return status;
  const auto parent = node->parent.lock();
  if (!parent || node == roots_[kClassesRoot] || !node->children.empty()) return kAccessDenied;
  parent->children.erase(Folded(node->name));
  node->values.clear();
  node->places.clear();
  node->deleted = true;
  return kOk;
}

Status MemoryRegistryStore::QueryValue(KeyHandle key, const NarrowText& name, std::uint32_t& kind,
                                       std::span<char> buffer, std::uint32_t& size) {
  std::shared_ptr<Node> node;
  if (const Status status = Find(key, kKeyQueryValue, node); status != kOk) return status;
  Place asked = PlaceOf(key, {});
  asked.name = Name(name);
  askedValues_.insert(std::move(asked));
  const auto value = node->Find(name);
  if (value == node->values.end()) return kFileNotFound;
  kind = value->kind;
  return Node::Give(*value, buffer, size);
}

Status MemoryRegistryStore::SetValue(KeyHandle key, const NarrowText& name, std::uint32_t kind,
                                     const NarrowText& data) {
  std::shared_ptr<Node> node;
  if (const Status status = Find(key, kKeySetValue, node); status != kOk) return status;
  const NarrowText cut = Name(name);
  if (cut.size() > kLongestValueName) return kInvalidParameter;
  NarrowText stored = data;
  if (IsTextKind(kind) && !stored.empty() && stored.back() != '\0') stored += '\0';
  const auto value = node->Find(cut);
  if (value == node->values.end()) {
    node->Add({cut, kind, std::move(stored)});
  } else {
    value->kind = kind;
    value->data = std::move(stored);
  }
  return kOk;
}

Status MemoryRegistryStore::DeleteValue(KeyHandle key, const NarrowText& name) {
  std::shared_ptr<Node> node;
  if (const Status status = Find(key, kKeySetValue, node); status != kOk) return status;
  const auto value = node->Find(name);
  if (value == node->values.end()) return kFileNotFound;
  node->Erase(value);
  return kOk;
}

Status MemoryRegistryStore::EnumKey(KeyHandle key, std::uint32_t index, std::span<char> name) {
  std::shared_ptr<Node> node;
  if (const Status status = Find(key, kKeyEnumerateSubKeys, node); status != kOk) return status;
  if (index >= node->children.size()) return kNoMoreItems;
  const NarrowText& found = std::next(node->children.begin(), index)->second->name;
  if (found.size() + 1 > name.size()) return kMoreData;
  CopyTerminated(found, name);
  return kOk;
}

Status MemoryRegistryStore::EnumValue(KeyHandle key, std::uint32_t index, std::span<char> name,
                                      std::uint32_t& nameLength, std::uint32_t& kind,
                                      std::span<char> data, std::uint32_t& size) {
  std::shared_ptr<Node> node;
  if (const Status status = Find(key, kKeyQueryValue, node); status != kOk) return status;
  if (index >= node->values.size()) return kNoMoreItems;
  const Node::Value& value = node->values[index];
  const Status given = Node::Give(value, data, size);
  if (given != kOk || value.name.size() + 1 > name.size()) return kMoreData;
  CopyTerminated(value.name, name);
  nameLength = Size(value.name);
  kind = value.kind;
  return kOk;
}

Status MemoryRegistryStore::QueryInfo(KeyHandle key, KeyInfo& out) {
  std::shared_ptr<Node> node;
  if (const Status status = Find(key, kKeyQueryValue, node); status != kOk) return status;
  out = {};
  for (const auto& [folded, child] : node->children) {
    ++out.subKeys;
    out.longestSubKey = std::max(out.longestSubKey, Size(child->name));
  }
  for (const Node::Value& value : node->values) {
    ++out.values;
    out.longestValueName = std::max(out.longestValueName, Size(value.name));
  }
  return kOk;
}

Status MemoryRegistryStore::ConnectRegistry(const NarrowText& machine, KeyHandle root,
                                            OpenKeyHandle& out) {
  out.Reset();
  MemoryRegistryStore* store = this;
  if (const NarrowText name = Name(machine); !name.empty()) {
    const auto found = machines_.find(Folded(name));
    if (found == machines_.end()) return kBadNetPath;
    store = found->second.get();
  }
  const auto node = store->roots_.find(root);
  if (node == store->roots_.end()) return kInvalidHandle;
  return Open(node->second, kKeyAllAccess, {root, {}, {}}, out);
}

std::uint32_t MemoryRegistryStore::ExpandEnvironment(const NarrowText& source,
                                                     std::span<char> buffer) {
  const auto whole = SourceToExpand(source);
  if (!whole) return 0;
  const NarrowText& text = *whole;
  NarrowText expanded;
  for (std::size_t at = 0; at < text.size();) {
    if (text[at] != '%') {
      expanded += text[at++];
      continue;
    }
    const std::size_t end = text.find('%', at + 1);
    if (end == NarrowText::npos) {
      expanded += text.substr(at);
      break;
    }
    const auto found = environment_.find(Folded(text.substr(at + 1, end - at - 1)));
    expanded += found == environment_.end() ? text.substr(at, end + 1 - at) : found->second;
    at = end + 1;
  }
  return Deliver(expanded, buffer);
}

NarrowText MemoryRegistryStore::ToNarrow(TextView text) const { return ToCodePage1252(text); }
Text MemoryRegistryStore::FromNarrow(std::string_view text) const { return FromCodePage1252(text); }

}  // namespace marl
