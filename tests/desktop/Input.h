#pragma once

#include <windows.h>

#include <initializer_list>
#include <string>
#include <vector>

// Mouse and keyboard input. Each input is sent once, after waiting for everything that could make
// it go astray. If the display reports an earlier mouse position or activation late, the report
// moves the mouse back or releases keys; so the programs that may receive such reports must respond
// first.

namespace marl::desktop {

/// Waits until the windows that take part in input (in front, under the mouse, the desktop) have
/// processed all reports of the display.
void SettleInput();
/// Activates the window and waits until it has the keyboard. Does nothing if it already has.
bool BringForward(HWND window);

/// Moves the mouse and waits until it stays there.
void MoveMouse(int x, int y);
void MoveMouse(POINT to);
/// Clicks the left mouse button there, in screen pixels.
void Click(int x, int y);
void Click(POINT at);
/// The same while keys are held down, by virtual-key code.
void Click(POINT at, const std::vector<WORD>& held);
void RightClick(POINT at);
void DoubleClick(POINT at);
/// Press and release, for dragging in between.
void PressMouse(POINT at);
void ReleaseMouse(POINT at);
/// Presses or releases mouse buttons where the mouse is: MOUSEEVENTF_LEFTDOWN and so on, in order.
void MouseButtons(std::initializer_list<DWORD> changes);
/// Types the characters.
void Keys(const std::wstring& text);
/// Presses and releases a key while others are held down; all by virtual-key code.
void Chord(const std::vector<WORD>& held, WORD key);

}  // namespace marl::desktop
