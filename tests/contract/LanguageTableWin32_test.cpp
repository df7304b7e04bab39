// Compares the built-in table with the platform.

#include <windows.h>
#include <gtest/gtest.h>

#include <set>
#include <string>

#include "support/LanguageTable.h"

namespace marl {
namespace {

constexpr DWORD kAllowNeutralNames = 0x08000000;  // LOCALE_ALLOW_NEUTRAL_NAMES

std::wstring WideText(TextView text) { return std::wstring(text.begin(), text.end()); }

std::wstring LocaleText(const std::wstring& name, LCTYPE kind) {
  wchar_t text[256];
  return GetLocaleInfoEx(name.c_str(), kind, text, 256) > 0 ? text : L"unknown";
}

/// True for the few languages that newer platforms do not know any more, or know by another name,
/// if this is such a platform. Projects keep their codes.
bool IsOfOlderPlatforms(const std::wstring& name) {
  static const std::set<std::wstring> gone = {L"bin", L"bin-NG", L"kr", L"kr-Latn-NG"};
  if (gone.contains(name)) return LocaleNameToLCID(name.c_str(), kAllowNeutralNames) == 0;
  return name == L"kok-IN" && LocaleText(name, LOCALE_SNAME) == L"kok-Deva-IN";
}

TEST(LanguageTablePlatform, EveryLanguageIsAsThePlatformSays) {
  for (const LanguageRow& row : LanguageTable()) {
    const std::wstring name = WideText(row.code);
    const std::string where(row.code.begin(), row.code.end());
    if (IsOfOlderPlatforms(name)) continue;
    EXPECT_EQ(LocaleNameToLCID(name.c_str(), kAllowNeutralNames), static_cast<LCID>(row.localeId))
        << where;
    EXPECT_EQ(LocaleText(name, LOCALE_SNAME), name) << where;
    EXPECT_EQ(LocaleText(name, LOCALE_SENGLISHDISPLAYNAME), WideText(row.description)) << where;
    EXPECT_EQ(LocaleText(name, LOCALE_IDEFAULTANSICODEPAGE), std::to_wstring(row.codePage))
        << where;
  }
}

BOOL CALLBACK Collect(wchar_t* name, DWORD, LPARAM names) {
  const LCID id = LocaleNameToLCID(name, kAllowNeutralNames);
  if (*name != 0 && id != 0 && id != LOCALE_CUSTOM_UNSPECIFIED) {
    reinterpret_cast<std::set<std::wstring>*>(names)->insert(name);
  }
  return TRUE;
}

TEST(LanguageTablePlatform, MostLanguagesOfThePlatformAreThere) {
  std::set<std::wstring> names;
  ASSERT_TRUE(EnumSystemLocalesEx(Collect, LOCALE_NEUTRALDATA | LOCALE_SPECIFICDATA,
                                  reinterpret_cast<LPARAM>(&names), nullptr));
  std::set<std::wstring> table;
  for (const LanguageRow& row : LanguageTable()) table.insert(WideText(row.code));
  // Newer systems have some more.
  std::size_t missing = 0;
  for (const std::wstring& name : names) missing += !table.contains(name);
  EXPECT_LT(missing * 20, names.size());
}

TEST(LanguageTablePlatform, EveryCodePageOfALanguageIsSupported) {
  std::set<std::int32_t> pages;
  for (const LanguageRow& row : LanguageTable()) {
    if (row.codePage != 0) pages.insert(row.codePage);
  }
  for (const std::int32_t page : pages) {
    CPINFO info;
    EXPECT_TRUE(GetCPInfo(static_cast<UINT>(page), &info)) << page;
  }
}

}  // namespace
}  // namespace marl
