#pragma once

#include <windows.h>

#include <initializer_list>
#include <string>
#include <vector>

// Mouse and keys, as a user has them. Each input is sent once: what could make it go astray is
// waited for before. Where the display reports late where the mouse was, or that it came to a
// window, the report takes the mouse back or lets go keys; so whoever may have such reports to deal
// with is asked to answer first.

namespace marl::desktop {

/// Waits until the windows that take part in input (in front, under the mouse, the desktop) have
/// dealt with all that the display reported.
void SettleInput();
/// Makes it the window that takes the keys, and waits until it does. Leaves one alone that does.
bool BringForward(HWND window);

/// Moves the mouse and waits until it is there and stays.
void MoveMouse(int x, int y);
void MoveMouse(POINT to);
/// Presses and lets go the left button of the mouse there, in pixels of the screen.
void Click(int x, int y);
void Click(POINT at);
/// The same while keys are held down, by their virtual codes.
void Click(POINT at, const std::vector<WORD>& held);
void RightClick(POINT at);
void DoubleClick(POINT at);
/// Halves of a click, for what is dragged between them.
void PressMouse(POINT at);
void ReleaseMouse(POINT at);
/// Presses or lets go buttons of the mouse where it is: MOUSEEVENTF_LEFTDOWN and its like, in turn.
void MouseButtons(std::initializer_list<DWORD> changes);
/// Types the characters.
void Keys(const std::wstring& text);
/// Presses and lets go a key while others are held down; all by their virtual codes.
void Chord(const std::vector<WORD>& held, WORD key);

}  // namespace marl::desktop
