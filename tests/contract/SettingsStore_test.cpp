#include "platform/SettingsStore.h"

#include <memory>
#include <random>
#include <string>

#include "platform/memory/MemorySettingsStore.h"
#include "tests/contract/Backends.h"
#ifdef _WIN32
#include "platform/win32/Handle.h"
#include "platform/win32/SettingsStoreWin32.h"
#endif

namespace marl {
namespace {

/// A store with a private application, which is deleted at the end.
class SettingsWorld {
 public:
  explicit SettingsWorld(Backend backend) {
#ifdef _WIN32
    if (backend == Backend::kWin32) {
      store_ = std::make_unique<win32::SettingsStoreWin32>();
      const std::string number = std::to_string(GetCurrentProcessId());
      application_ = u"Oru Test " + Text(number.begin(), number.end());
      Clear();
    }
#endif
    (void)backend;
    if (!store_) store_ = std::make_unique<MemorySettingsStore>();
  }
  ~SettingsWorld() { Clear(); }
  SettingsWorld(const SettingsWorld&) = delete;
  SettingsWorld& operator=(const SettingsWorld&) = delete;

  SettingsStore& store() { return *store_; }
  const Text& application() const { return application_; }

#ifdef _WIN32
  Text KeyPath() const { return u"Software\\VB and VBA Program Settings\\" + application_; }
  /// Stores data below a section unchanged.
  void Plant(const Text& section, const Text& key, DWORD kind, const std::string& data) {
    HKEY opened = nullptr;
    ASSERT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, win32::Wide(KeyPath() + u'\\' + section), 0,
                              nullptr, 0, KEY_SET_VALUE, nullptr, &opened, nullptr),
              ERROR_SUCCESS);
    // The platform adds no terminator if the byte after the data is not zero.
    const std::string followed = data + "XX";
    EXPECT_EQ(RegSetValueExW(opened, win32::Wide(key), 0, kind,
                             reinterpret_cast<const BYTE*>(followed.data()),
                             static_cast<DWORD>(data.size())),
              ERROR_SUCCESS);
    RegCloseKey(opened);
  }
#endif

 private:
  void Clear() {
#ifdef _WIN32
    RegDeleteTreeW(HKEY_CURRENT_USER, win32::Wide(KeyPath()));
#endif
  }

  std::unique_ptr<SettingsStore> store_;
  Text application_ = u"Oru Test";
};

class SettingsContract : public BackendTest {
 protected:
  Text Get(TextView section, TextView key, TextView otherwise = u"-") {
    return store.GetSetting(world.application(), section, key, otherwise);
  }
  Status Save(TextView section, TextView key, TextView value) {
    return store.SaveSetting(world.application(), section, key, value);
  }

  SettingsWorld world{GetParam()};
  SettingsStore& store = world.store();
};
MARL_OVER_ALL_BACKENDS(SettingsContract);

TEST_P(SettingsContract, WhatIsNotThereIsTheDefault) {
  EXPECT_EQ(Get(u"Settings", u"Left"), u"-");
  EXPECT_EQ(Get(u"Settings", u"Left", u""), u"");
  EXPECT_EQ(Save(u"Settings", u"Left", u"1"), kOk);
  EXPECT_EQ(Get(u"Settings", u"Top"), u"-");
  EXPECT_EQ(Get(u"Other", u"Left"), u"-");
  EXPECT_EQ(store.GetSetting(world.application() + u" 2", u"Settings", u"Left", u"-"), u"-");
}

TEST_P(SettingsContract, WhatIsSavedIsReadAtOnce) {
  for (const TextView value : {u"-1", u"", u" blanks ", u"second", u"%TEMP%", u"\u20AC \u4E2D",
                               u"line\r\nline", u"\uFFFF\uFFFE"}) {
    EXPECT_EQ(Save(u"Settings", u"Left", value), kOk);
    EXPECT_EQ(Get(u"Settings", u"Left"), value);
  }
  const Text half(1, char16_t{0xD83D});
  EXPECT_EQ(Save(u"Settings", u"Left", half), kOk);
  EXPECT_EQ(Get(u"Settings", u"Left"), half);
}

TEST_P(SettingsContract, TextsMayBeLong) {
  for (const std::size_t length : {255u, 256u, 257u, 511u, 512u, 513u, 100000u}) {
    Text value;
    for (std::size_t i = 0; i < length; ++i) value += static_cast<char16_t>(u'a' + i % 26);
    EXPECT_EQ(Save(u"Settings", u"Long", value), kOk);
    EXPECT_EQ(Get(u"Settings", u"Long"), value) << length;
  }
}

TEST_P(SettingsContract, NamesAreFoundWithoutRegardToCase) {
  EXPECT_EQ(Save(u"Target Files", u"Folder", u"a"), kOk);
  EXPECT_EQ(Get(u"TARGET FILES", u"fOLDER"), u"a");
  EXPECT_EQ(Save(u"target files", u"FOLDER", u"b"), kOk);
  EXPECT_EQ(Get(u"Target Files", u"Folder"), u"b");
  EXPECT_EQ(Save(u"\u0219\u01B0", u"\u00E4\u03B1", u"c"), kOk);
  EXPECT_EQ(Get(u"\u0218\u01AF", u"\u00C4\u0391"), u"c");
  EXPECT_EQ(Save(u"Signs", u"k", u"d"), kOk);
  EXPECT_EQ(Get(u"Signs", u"\u212A"), u"-");
}

TEST_P(SettingsContract, TextsEndAtTheirFirstNul) {
  EXPECT_EQ(Save(u"Settings", u"Left", TextView(u"a\0b", 3)), kOk);
  EXPECT_EQ(Get(u"Settings", u"Left"), u"a");
  EXPECT_EQ(Save(u"Settings", u"Left", TextView(u"\0b", 2)), kOk);
  EXPECT_EQ(Get(u"Settings", u"Left"), u"");
}

TEST_P(SettingsContract, NamesOfNothingAreRefused) {
  const TextView cut(u"Left\0x", 6);
  EXPECT_EQ(store.SaveSetting(u"", u"s", u"k", u"v"), kInvalidParameter);
  EXPECT_EQ(Save(u"", u"k", u"v"), kInvalidParameter);
  EXPECT_EQ(Save(u"s", u"", u"v"), kInvalidParameter);
  EXPECT_EQ(Save(u"s", cut, u"v"), kInvalidParameter);
  EXPECT_EQ(Save(cut, u"k", u"v"), kInvalidParameter);
  EXPECT_EQ(Save(u"Settings", u"Left", u"1"), kOk);
  EXPECT_EQ(Get(u"Settings", cut), u"-");
  EXPECT_EQ(Get(u"Settings", u""), u"-");
  EXPECT_EQ(Get(u"", u"Left"), u"-");
  EXPECT_EQ(store.GetSetting(u"", u"Settings", u"Left", u"-"), u"-");
}

#ifdef _WIN32

TEST(SettingsRegistry, OnlyTextsAreTexts) {
  SettingsWorld world(Backend::kWin32);
  const auto wide = [](const Text& text) {
    return std::string(reinterpret_cast<const char*>(text.data()), text.size() * 2);
  };
  const struct {
    DWORD kind;
    std::string data;
    TextView text;
  } rows[] = {
      {REG_SZ, wide(u"text") + std::string(2, '\0'), u"text"},
      {REG_SZ, wide(u"bare"), u"bare"},
      {REG_SZ, wide(u"odd") + "x", u"odd"},
      {REG_SZ, wide(Text(TextView(u"two\0more\0\0", 10))), u"two"},
      {REG_SZ, "", u""},
      {REG_SZ, wide(Text(300, u'x')), TextView()},
      {REG_EXPAND_SZ, wide(u"%TEMP%") + std::string(2, '\0'), u"%TEMP%"},
      {REG_DWORD, std::string("\1\0\0\0", 4), u"-"},
      {REG_BINARY, wide(u"text"), u"-"},
      {REG_MULTI_SZ, wide(u"text") + std::string(4, '\0'), u"-"},
      {77, wide(u"text"), u"-"},
  };
  for (const auto& row : rows) {
    world.Plant(u"Settings", u"Left", row.kind, row.data);
    const Text expected = row.data.size() == 600 ? Text(300, u'x') : Text(row.text);
    EXPECT_EQ(world.store().GetSetting(world.application(), u"Settings", u"Left", u"-"), expected)
        << row.kind << " " << testing::PrintToString(row.data);
  }
}

TEST(SettingsRegistry, RandomUseGivesTheSameAnswers) {
  constexpr int kSteps = 20000;
  SettingsWorld real(Backend::kWin32);
  SettingsWorld memory(Backend::kMemory);
  std::mt19937 random(20071130);
  const auto draw = [&](std::size_t below) { return random() % below; };
  const TextView names[] = {u"Left",
                            u"LEFT",
                            u"Top",
                            u"Target Files",
                            u"target files",
                            u"\u0219",
                            u"\u0218",
                            u"\u03C3",
                            u"\u03C2",
                            u"k",
                            u"\u212A",
                            u"a b",
                            u"",
                            TextView(u"Left\0x", 6)};
  for (int step = 0; step < kSteps; ++step) {
    const TextView section = names[draw(std::size(names))];
    const TextView key = names[draw(std::size(names))];
    if (draw(3) == 0) {
      Text value(draw(draw(20) == 0 ? 2000 : 12), u'\0');
      for (char16_t& unit : value) unit = static_cast<char16_t>(draw(40) ? 1 + draw(0xFFFF) : 0);
      ASSERT_EQ(real.store().SaveSetting(real.application(), section, key, value),
                memory.store().SaveSetting(memory.application(), section, key, value))
          << step;
    }
    ASSERT_EQ(real.store().GetSetting(real.application(), section, key, u"none"),
              memory.store().GetSetting(memory.application(), section, key, u"none"))
        << step;
  }
}

#endif

}  // namespace
}  // namespace marl
