#include "platform/Locale.h"

#include <array>
#include <memory>
#include <string>

#include "platform/memory/MemoryLocale.h"
#include "tests/contract/Backends.h"
#ifdef _WIN32
#include "platform/win32/LocaleWin32.h"
#endif

namespace marl {
namespace {

class LocaleContract : public testing::TestWithParam<Backend> {
 protected:
  std::unique_ptr<Locale> locales = Make();

  static std::unique_ptr<Locale> Make() {
#ifdef _WIN32
    if (GetParam() == Backend::kWin32) return std::make_unique<win32::LocaleWin32>();
#endif
    return std::make_unique<MemoryLocale>();
  }
};

TEST_P(LocaleContract, TellsTheCodePageWithItsTerminator) {
  const struct {
    std::uint32_t locale;
    std::string codePage;
  } rows[] = {{0x409, "1252"}, {0x407, "1252"}, {0x411, "932"}, {0x419, "1251"}, {0x439, "0"}};
  for (const auto& row : rows) {
    std::array<char, 16> buffer = {};
    const int size = locales->LocaleInfo(row.locale, kLocaleDefaultAnsiCodePage, buffer);
    EXPECT_EQ(size, static_cast<int>(row.codePage.size()) + 1) << row.locale;
    EXPECT_EQ(std::string(buffer.data()), row.codePage) << row.locale;
  }
}

TEST_P(LocaleContract, TellsNothingOfAnUnknownLocale) {
  std::array<char, 16> buffer = {};
  EXPECT_EQ(locales->LocaleInfo(0x3FF, kLocaleDefaultAnsiCodePage, buffer), 0);
  EXPECT_EQ(buffer, (std::array<char, 16>{}));
}

TEST_P(LocaleContract, TellsNothingWithoutRoomForAll) {
  std::array<char, 4> buffer = {};
  EXPECT_EQ(locales->LocaleInfo(0x409, kLocaleDefaultAnsiCodePage, buffer), 0);
  EXPECT_EQ(locales->LocaleInfo(0x409, kLocaleDefaultAnsiCodePage, {}), 0);
}

TEST_P(LocaleContract, TheThreadHasALocaleWithACodePage) {
  std::array<char, 16> buffer = {};
  EXPECT_GT(locales->LocaleInfo(locales->ThreadLocale(), kLocaleDefaultAnsiCodePage, buffer), 1);
}

MARL_OVER_ALL_BACKENDS(LocaleContract);

}  // namespace
}  // namespace marl
