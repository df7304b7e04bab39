#pragma once

#include <string_view>

#include "platform/Text.h"
#include "platform/win32/Handle.h"

namespace marl::win32 {

/// The whole text in the system's code page (WideCharToMultiByte).
inline NarrowText ToCodePage(TextView text) {
  if (text.empty()) return {};
  // No unit needs more bytes than this in any system code page.
  NarrowText narrow(text.size() * 4, '\0');
  const int length = WideCharToMultiByte(CP_ACP, 0, reinterpret_cast<const wchar_t*>(text.data()),
                                         static_cast<int>(text.size()), narrow.data(),
                                         static_cast<int>(narrow.size()), nullptr, nullptr);
  narrow.resize(static_cast<std::size_t>(length));
  return narrow;
}

/// The same up to the first NUL.
inline NarrowText ToSystemCodePage(TextView text) {
  return ToCodePage(text.substr(0, text.find(u'\0')));
}

/// Text from the system's code page (MultiByteToWideChar).
inline Text FromSystemCodePage(std::string_view text) {
  if (text.empty()) return {};
  Text wide(text.size(), u'\0');
  const int length =
      MultiByteToWideChar(CP_ACP, 0, text.data(), static_cast<int>(text.size()),
                          reinterpret_cast<wchar_t*>(wide.data()), static_cast<int>(wide.size()));
  wide.resize(static_cast<std::size_t>(length));
  return wide;
}

}  // namespace marl::win32
