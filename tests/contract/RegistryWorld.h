#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <ostream>
#include <string>

#include "platform/RegistryStore.h"
#include "tests/contract/Backends.h"

namespace marl {

/// A registry with direct access for tests.
class RegistryWorld {
 public:
  virtual ~RegistryWorld() = default;
  virtual RegistryStore& store() = 0;
  virtual void SetEnvironment(const NarrowText& name, const NarrowText& value) = 0;
  /// Stores data below HKEY_CURRENT_USER unchanged, even text without terminator.
  virtual void Plant(const NarrowText& path, const NarrowText& name, std::uint32_t kind,
                     const NarrowText& data) = 0;
};

std::unique_ptr<RegistryWorld> MakeRegistryWorld(Backend backend);
std::unique_ptr<RegistryWorld> MakeWin32RegistryWorld();

/// A stored value, byte for byte.
struct StoredValue {
  std::uint32_t kind = 0;
  NarrowText data;
  bool operator==(const StoredValue&) const = default;
};
void PrintTo(const StoredValue& value, std::ostream* out);

/// Each test has its own key below HKEY_CURRENT_USER, which is deleted with it.
class RegistryTest : public BackendTest {
 protected:
  RegistryTest();
  ~RegistryTest() override;

  RegistryStore& store() { return world_->store(); }
  RegistryWorld& world() { return *world_; }

  /// Path of the test's key, or of a key below it.
  const NarrowText& path() const { return path_; }
  NarrowText PathTo(const NarrowText& below) const { return path_ + '\\' + below; }
  Text wide() const { return Text(path_.begin(), path_.end()); }

  /// Opens the test's key, or one below it, with full access.
  OpenKeyHandle Open(const NarrowText& below = {}, std::uint32_t access = kKeyAllBasic);
  /// Creates a key below the test's.
  void Make(const NarrowText& below);
  bool Exists(const NarrowText& below);
  /// The stored bytes and their kind, if there are any.
  std::optional<StoredValue> Stored(const NarrowText& name, const NarrowText& below = {});
  void Store(const NarrowText& name, std::uint32_t kind, const NarrowText& data);
  void Plant(const NarrowText& name, std::uint32_t kind, const NarrowText& data) {
    world_->Plant(path_, name, kind, data);
  }

 private:
  std::unique_ptr<RegistryWorld> world_;
  NarrowText path_;
};

/// Bytes with NULs among them, from a literal.
template <std::size_t n>
NarrowText Raw(const char (&bytes)[n]) {
  return NarrowText(bytes, n - 1);
}

}  // namespace marl
