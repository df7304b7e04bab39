#pragma once

#include <windows.h>

#include <memory>

#include "platform/forms/Accessible.h"

namespace marl {
class Control;
class Form;
}  // namespace marl

namespace marl::win32 {

class FormWin32;

/// What the objects of a form know of it. They may outlive its window: `form` is null then.
struct AccessibleLink {
  FormWin32* form = nullptr;
};

/// Answers a client that asks a window for its accessible object (WM_GETOBJECT with OBJID_CLIENT,
/// LresultFromObject). `control` is the control of the window, or null for the form itself. 0
/// leaves the answer to the platform.
LRESULT AnswerGetObject(const std::shared_ptr<AccessibleLink>& link, HWND window,
                        const Control* control, WPARAM w);

/// Tells the clients that listen what has changed in a window (NotifyWinEvent); `child` counts from
/// 1, 0 is the window itself.
void NotifyClients(Announcement what, HWND window, int child);

}  // namespace marl::win32
