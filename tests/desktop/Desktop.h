#pragma once

#include <windows.h>

#include <chrono>
#include <functional>
#include <optional>
#include <string>

// The desktop that the tests use: waiting, texts, units, and queries of windows.

namespace marl::desktop {

constexpr std::chrono::milliseconds kDeadline{60000};

/// Polls until `holds` is true or the deadline has passed. Returns the last result.
bool WaitUntil(const std::function<bool()>& holds, std::chrono::milliseconds deadline = kDeadline);

std::wstring FromUtf8(const std::string& text);
std::string ToUtf8(const std::wstring& text);
std::wstring Environment(const wchar_t* name);

/// A length in pixels on this screen, in twips.
int Twips(int pixels);
int PixelsOf(int twips);

std::wstring TextOf(HWND window);
std::wstring ClassOf(HWND window);
/// The topmost window of a process that `matches`; null if there is none.
HWND FindWindowOf(DWORD process, std::function<bool(HWND)> matches);
/// The middle of the close box in a window's title bar.
std::optional<POINT> CloseBoxOf(HWND window);

}  // namespace marl::desktop
