#include "tests/contract/RegistryWorld.h"

#include <random>

#include "platform/memory/MemoryRegistryStore.h"

namespace marl {
namespace {

constexpr const char* kOwnKey = "Software\\Oru Test";

class MemoryRegistryWorld : public RegistryWorld {
 public:
  RegistryStore& store() override { return store_; }
  void SetEnvironment(const NarrowText& name, const NarrowText& value) override {
    store_.SetEnvironment(name, value);
  }
  void Plant(const NarrowText& path, const NarrowText& name, std::uint32_t kind,
             const NarrowText& data) override {
    store_.Plant(kCurrentUser, path, name, kind, data);
  }
  ~MemoryRegistryWorld() override { EXPECT_EQ(store_.OpenKeys(), 0u) << "keys left open"; }

 private:
  MemoryRegistryStore store_;
};

void DeleteTree(RegistryStore& store, KeyHandle root, const NarrowText& path) {
  OpenKeyHandle key;
  if (store.OpenKey(root, path, kKeyAllBasic, key) != kOk) return;
  NarrowText name(1024, '\0');
  while (store.EnumKey(key.get(), 0, name) == kOk) DeleteTree(store, key.get(), name.c_str());
  key.Reset();
  store.DeleteKey(root, path);
}

NarrowText RandomName() {
  static std::random_device source;
  return std::to_string(source()) + std::to_string(source());
}

}  // namespace

std::unique_ptr<RegistryWorld> MakeRegistryWorld(Backend backend) {
#ifdef _WIN32
  if (backend == Backend::kWin32) return MakeWin32RegistryWorld();
#endif
  (void)backend;
  return std::make_unique<MemoryRegistryWorld>();
}

void PrintTo(const StoredValue& value, std::ostream* out) {
  *out << "kind " << value.kind << ", " << value.data.size() << " bytes "
       << testing::PrintToString(value.data);
}

RegistryTest::RegistryTest()
    : world_(MakeRegistryWorld(GetParam())), path_(kOwnKey + ('\\' + RandomName())) {
  OpenKeyHandle key;
  EXPECT_EQ(store().CreateKey(kCurrentUser, path_, kKeyAllBasic, key), kOk);
}

RegistryTest::~RegistryTest() {
  DeleteTree(store(), kCurrentUser, path_);
  // Deleted with the last test; while another test's key exists, this fails.
  store().DeleteKey(kCurrentUser, kOwnKey);
}

OpenKeyHandle RegistryTest::Open(const NarrowText& below, std::uint32_t access) {
  OpenKeyHandle key;
  EXPECT_EQ(store().OpenKey(kCurrentUser, below.empty() ? path_ : PathTo(below), access, key), kOk);
  return key;
}

void RegistryTest::Make(const NarrowText& below) {
  OpenKeyHandle key;
  EXPECT_EQ(store().CreateKey(kCurrentUser, PathTo(below), kKeyAllBasic, key), kOk);
}

bool RegistryTest::Exists(const NarrowText& below) {
  OpenKeyHandle key;
  return store().OpenKey(kCurrentUser, PathTo(below), kKeyQueryValue, key) == kOk;
}

std::optional<StoredValue> RegistryTest::Stored(const NarrowText& name, const NarrowText& below) {
  OpenKeyHandle key;
  if (store().OpenKey(kCurrentUser, below.empty() ? path_ : PathTo(below), kKeyQueryValue, key) !=
      kOk) {
    return {};
  }
  StoredValue value;
  std::uint32_t size = 0;
  if (store().QueryValue(key.get(), name, value.kind, {}, size) != kOk) return {};
  value.data.resize(size);
  if (size != 0) {
    EXPECT_EQ(store().QueryValue(key.get(), name, value.kind, value.data, size), kOk);
  }
  return value;
}

void RegistryTest::Store(const NarrowText& name, std::uint32_t kind, const NarrowText& data) {
  EXPECT_EQ(store().SetValue(Open().get(), name, kind, data), kOk);
}

}  // namespace marl
