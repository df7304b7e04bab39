// Writes support/LanguageTable.inc to the standard output: the locales and code pages of the
// Windows that it runs on.

#include <windows.h>
#include <fcntl.h>
#include <io.h>
#include <mlang.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

// IMultiLanguage2, which MinGW-w64's import libraries lack.
constexpr GUID kMultiLanguage = {
    0xDCCFC164, 0x2B38, 0x11D2, {0xB7, 0xEC, 0x00, 0xC0, 0x4F, 0x8F, 0x5D, 0x9A}};

// LOCALE_ALLOW_NEUTRAL_NAMES: a language without a region has an id of its own.
constexpr DWORD kAllowNeutralNames = 0x08000000;

struct Language {
  std::wstring code;
  std::wstring description;
  int codePage = 0;
  int localeId = 0;
};

struct CodePage {
  int number = 0;
  std::wstring description;
  std::wstring code;
};

std::wstring TextOf(const wchar_t* locale, LCTYPE kind) {
  wchar_t text[256];
  return GetLocaleInfoEx(locale, kind, text, 256) > 0 ? text : L"";
}

int NumberOf(const wchar_t* locale, LCTYPE kind) {
  DWORD number = 0;
  const int done =
      GetLocaleInfoEx(locale, kind | LOCALE_RETURN_NUMBER, reinterpret_cast<wchar_t*>(&number),
                      sizeof(number) / sizeof(wchar_t));
  return done > 0 ? static_cast<int>(number) : 0;
}

BOOL CALLBACK AddLanguage(wchar_t* name, DWORD, LPARAM list) {
  Language language;
  language.code = name;
  language.description = TextOf(name, LOCALE_SENGLISHDISPLAYNAME);
  language.codePage = NumberOf(name, LOCALE_IDEFAULTANSICODEPAGE);
  language.localeId = static_cast<int>(LocaleNameToLCID(name, kAllowNeutralNames));
  // Locales without their own id share one id, so they cannot be distinguished.
  const bool named = !language.code.empty() && !language.description.empty();
  if (named && language.localeId != 0 && language.localeId != LOCALE_CUSTOM_UNSPECIFIED) {
    reinterpret_cast<std::vector<Language>*>(list)->push_back(language);
  }
  return TRUE;
}

std::vector<CodePage>* g_codePages;  // the enumeration's callback has no argument

BOOL CALLBACK AddCodePage(wchar_t* number) {
  CodePage page;
  page.number = std::stoi(number);
  g_codePages->push_back(page);
  return TRUE;
}

void NameCodePages(std::vector<CodePage>& pages) {
  CoInitialize(nullptr);
  IMultiLanguage2* names = nullptr;
  if (FAILED(CoCreateInstance(CLSID_CMultiLanguage, nullptr, CLSCTX_INPROC_SERVER, kMultiLanguage,
                              reinterpret_cast<void**>(&names)))) {
    std::fputs("the names of code pages are not to be had here\n", stderr);
    std::exit(1);
  }
  for (CodePage& page : pages) {
    MIMECPINFO info = {};
    if (FAILED(names->GetCodePageInfo(static_cast<UINT>(page.number), 0x0409, &info))) continue;
    page.description = info.wszDescription;
    page.code = info.wszWebCharset;
  }
  names->Release();
  CoUninitialize();
  std::erase_if(pages,
                [](const CodePage& page) { return page.description.empty() || page.code.empty(); });
}

std::string Literal(const std::wstring& text) {
  char bytes[1024];
  const int size = WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()),
                                       bytes, sizeof(bytes), nullptr, nullptr);
  return "u\"" + std::string(bytes, static_cast<std::size_t>(size)) + "\"";
}

}  // namespace

int main() {
  _setmode(_fileno(stdout), _O_BINARY);
  std::vector<Language> languages;
  EnumSystemLocalesEx(AddLanguage, LOCALE_NEUTRALDATA | LOCALE_SPECIFICDATA,
                      reinterpret_cast<LPARAM>(&languages), nullptr);
  std::sort(languages.begin(), languages.end(),
            [](const Language& a, const Language& b) { return a.code < b.code; });

  std::vector<CodePage> pages;
  g_codePages = &pages;
  EnumSystemCodePagesW(AddCodePage, CP_SUPPORTED);
  NameCodePages(pages);
  std::sort(pages.begin(), pages.end(),
            [](const CodePage& a, const CodePage& b) { return a.number < b.number; });

  std::puts("// Written by tools/language_table.cpp. Do not edit.");
  std::puts("// LANGUAGE(code, description, ANSI code page, locale id)");
  for (const Language& row : languages) {
    std::printf("LANGUAGE(%s, %s, %d, 0x%04X)\n", Literal(row.code).c_str(),
                Literal(row.description).c_str(), row.codePage, row.localeId);
  }
  std::puts("// CODEPAGE(number, code, description)");
  for (const CodePage& row : pages) {
    std::printf("CODEPAGE(%d, %s, %s)\n", row.number, Literal(row.code).c_str(),
                Literal(row.description).c_str());
  }
}
