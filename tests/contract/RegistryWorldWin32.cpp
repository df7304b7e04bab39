#include <windows.h>

#include "platform/win32/RegistryStoreWin32.h"
#include "tests/contract/RegistryWorld.h"

namespace marl {
namespace {

class Win32RegistryWorld : public RegistryWorld {
 public:
  RegistryStore& store() override { return store_; }
  void SetEnvironment(const NarrowText& name, const NarrowText& value) override {
    SetEnvironmentVariableA(name.c_str(), value.c_str());
  }
  void Plant(const NarrowText& path, const NarrowText& name, std::uint32_t kind,
             const NarrowText& data) override {
    HKEY key = nullptr;
    ASSERT_EQ(RegCreateKeyExA(HKEY_CURRENT_USER, path.c_str(), 0, nullptr, 0, KEY_SET_VALUE,
                              nullptr, &key, nullptr),
              ERROR_SUCCESS);
    // The platform adds no terminator if the byte after the data is not zero.
    const NarrowText followed = data + 'X';
    EXPECT_EQ(
        RegSetValueExA(key, name.c_str(), 0, kind, reinterpret_cast<const BYTE*>(followed.data()),
                       static_cast<DWORD>(data.size())),
        ERROR_SUCCESS);
    RegCloseKey(key);
  }

 private:
  win32::RegistryStoreWin32 store_;
};

}  // namespace

std::unique_ptr<RegistryWorld> MakeWin32RegistryWorld() {
  return std::make_unique<Win32RegistryWorld>();
}

}  // namespace marl
