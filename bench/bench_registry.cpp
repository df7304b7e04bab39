// The registry classes, compared with the bare platform calls: the same keys opened, values queried
// and written, and keys closed.

#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>

#include "bench/Race.h"
#include "platform/win32/RegistryStoreWin32.h"
#include "settings/cRegistry.h"
#include "settings/clsRegistry.h"

namespace marl {
namespace {

constexpr const char* kPath = "Software\\Oru Test\\bench";
// More than a thousand calls of each, in turns short enough to hit a quiet moment of a busy
// machine.
constexpr int kCalls = 10;
constexpr int kRounds = 400;

void Check(LONG status, const char* call) {
  if (status == ERROR_SUCCESS) return;
  std::printf("%s failed with %ld\n", call, status);
  std::exit(2);
}

HKEY Open(REGSAM access) {
  HKEY key = nullptr;
  Check(RegOpenKeyExA(HKEY_CURRENT_USER, kPath, 0, access, &key), "RegOpenKeyExA");
  return key;
}

/// The calls of reading through cRegistry: first the size, then the data.
void ReadTwice(const char* name, char* buffer, DWORD room) {
  const HKEY key = Open(KEY_QUERY_VALUE);
  DWORD kind = 0;
  DWORD size = 0;
  Check(RegQueryValueExA(key, name, nullptr, &kind, nullptr, &size), "RegQueryValueExA");
  size = room;
  Check(RegQueryValueExA(key, name, nullptr, &kind, reinterpret_cast<BYTE*>(buffer), &size),
        "RegQueryValueExA");
  RegCloseKey(key);
  bench::Keep(buffer);
}

/// The calls of reading through clsRegistry.
void ReadOnce(const char* name, char* buffer, DWORD room) {
  const HKEY key = Open(KEY_READ);
  DWORD kind = 0;
  DWORD size = room;
  Check(RegQueryValueExA(key, name, nullptr, &kind, reinterpret_cast<BYTE*>(buffer), &size),
        "RegQueryValueExA");
  RegCloseKey(key);
  bench::Keep(buffer);
}

void Write(HKEY key, const char* name, DWORD kind, const void* data, std::size_t size) {
  Check(
      RegSetValueExA(key, name, 0, kind, static_cast<const BYTE*>(data), static_cast<DWORD>(size)),
      "RegSetValueExA");
  RegCloseKey(key);
}

HKEY Create() {
  HKEY key = nullptr;
  char noClass[] = "";
  Check(RegCreateKeyExA(HKEY_CURRENT_USER, kPath, 0, noClass, 0, 0x3F, nullptr, &key, nullptr),
        "RegCreateKeyExA");
  return key;
}

/// Deletes the test's key at the end.
struct OwnKey {
  OwnKey() { RegCloseKey(Create()); }
  ~OwnKey() {
    RegDeleteKeyA(HKEY_CURRENT_USER, kPath);
    RegDeleteKeyA(HKEY_CURRENT_USER, "Software\\Oru Test");
  }
};

template <typename Work>
std::function<void()> Repeated(Work work) {
  return [work] {
    for (int i = 0; i < kCalls; ++i) work();
  };
}

/// Reads and writes through one class, compared with the platform's calls.
class Total {
 public:
  template <typename Ours, typename Bare>
  void Add(const char* name, std::size_t bytes, Ours ours, Bare bare) {
    bench::Race race(name);
    race.Add("marl", Repeated(ours));
    race.Add("platform", Repeated(bare));
    race.Run(kRounds, 1, static_cast<double>(bytes) * kCalls);
    ours_ += race.Seconds("marl");
    bare_ += race.Seconds("platform");
  }
  double Ratio() const { return ours_ / bare_; }

 private:
  double ours_ = 0;
  double bare_ = 0;
};

int Main() {
  const OwnKey ownKey;
  win32::RegistryStoreWin32 store;
  const Text text = u"http://tracking.example.org:8080/project";
  const std::string narrow = store.ToNarrow(text);
  char buffer[1024] = {};

  cRegistry cursor(store);
  cursor.ClassKey = kCurrentUser;
  cursor.SectionKey = store.FromNarrow(kPath);
  clsRegistry accessor(store);
  accessor.hkey = kCurrentUser;
  accessor.KeyRoot = u"Software\\Oru Test";
  accessor.Subkey = u"bench";

  Total ofCursor;
  Total ofAccessor;
  const RegistryValue value = text;
  ofCursor.Add(
      "cReg. text out", narrow.size(),
      [&] {
        cursor.ValueKey = u"text";
        cursor.valueType = kRegSz;
        if (!cursor.SetValue(value)) std::exit(2);
      },
      [&] { Write(Create(), "text", REG_SZ, narrow.c_str(), narrow.size() + 1); });
  ofCursor.Add(
      "cReg. text in", narrow.size(),
      [&] {
        cursor.ValueKey = u"text";
        if (cursor.Value() != value) std::exit(2);
      },
      [&] { ReadTwice("text", buffer, sizeof(buffer)); });
  const std::int32_t number = 4711;
  ofCursor.Add(
      "cReg. number out", 4,
      [&] {
        cursor.ValueKey = u"number";
        cursor.valueType = kRegDword;
        if (!cursor.SetValue(number)) std::exit(2);
      },
      [&] { Write(Create(), "number", REG_DWORD, &number, 4); });
  ofCursor.Add(
      "cReg. number in", 4,
      [&] {
        cursor.ValueKey = u"number";
        if (cursor.Value() != RegistryValue(number)) std::exit(2);
      },
      [&] { ReadTwice("number", buffer, 4); });
  ofAccessor.Add(
      "clsReg. text out", narrow.size(),
      [&] {
        if (!accessor.SetRegistryValue(u"text", value, kRegSz)) std::exit(2);
      },
      [&] { Write(Open(KEY_WRITE), "text", REG_SZ, narrow.c_str(), narrow.size()); });
  ofAccessor.Add(
      "clsReg. text in", narrow.size(),
      [&] {
        if (accessor.GetRegistryValue(u"text") != value) std::exit(2);
      },
      [&] { ReadOnce("text", buffer, sizeof(buffer)); });
  ofAccessor.Add(
      "clsReg. num. out", 4,
      [&] {
        if (!accessor.SetRegistryValue(u"number", number, kRegDword)) std::exit(2);
      },
      [&] { Write(Open(KEY_WRITE), "number", REG_DWORD, &number, 4); });
  ofAccessor.Add(
      "clsReg. num. in", 4,
      [&] {
        if (accessor.GetRegistryValue(u"number") != RegistryValue(number)) std::exit(2);
      },
      [&] { ReadOnce("number", buffer, sizeof(buffer)); });

  std::printf("cRegistry %.3f, clsRegistry %.3f of the platform's time\n", ofCursor.Ratio(),
              ofAccessor.Ratio());
  // The slower class counts.
  bench::Goals goals;
  goals.AtMost("registry", std::max(ofCursor.Ratio(), ofAccessor.Ratio()), 1.1);
  goals.Tell();
  return 0;
}

}  // namespace
}  // namespace marl

int main() { return marl::Main(); }
