#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "platform/memory/MemoryDesktop.h"
#include "shell/modFindWindow.h"
#include "tests/contract/DesktopWorld.h"
#ifdef _WIN32
#include "platform/win32/DesktopWin32.h"
#endif

// Windows of other programs: enumerating, finding and showing them.

namespace marl {
namespace {

/// Top-level windows of the test, whose titles begin with a unique word.
class WindowsContract : public BackendTest {
 protected:
  ~WindowsContract() override {
#ifdef _WIN32
    for (const HWND window : windows_) DestroyWindow(window);
#endif
  }

  /// Puts a window above all others.
  void Add(const Text& title, bool visible = true) {
#ifdef _WIN32
    if (real()) {
      const HWND window =
          CreateWindowExW(WS_EX_TOOLWINDOW, L"STATIC", win32::Wide(title), WS_POPUP, 0, 0, 40, 30,
                          nullptr, nullptr, GetModuleHandleW(nullptr), nullptr);
      windows_.push_back(window);
      SetWindowPos(window, HWND_TOP, 0, 0, 0, 0,
                   SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE | (visible ? SWP_SHOWWINDOW : 0));
      return;
    }
#endif
    auto& others = static_cast<MemoryDesktop&>(*desktop).others;
    others.insert(others.begin(), {title, visible});
  }

  /// The title found, or "-".
  Text Find(TextView text, int mode) {
    WindowHandle window = 0;
    Text title;
    if (!FindWindowByTitle(*desktop, text, mode, window, title)) return u"-";
    found = window;
    return title;
  }

  std::unique_ptr<Desktop> desktop = NewDesktop(GetParam());
  WindowHandle found = 0;

 private:
#ifdef _WIN32
  std::vector<HWND> windows_;
#endif
};

TEST_P(WindowsContract, EveryModeFindsItsWindow) {
  Add(u"Xqz one two");
  EXPECT_EQ(Find(u"xQZ ONE", kTitleBegins), u"Xqz one two");
  EXPECT_EQ(Find(u"qz one", kTitleBegins), u"-");
  EXPECT_EQ(Find(u"QZ ONE TWO", kTitleEnds), u"Xqz one two");
  EXPECT_EQ(Find(u"Xqz one", kTitleEnds), u"-");
  EXPECT_EQ(Find(u"qz ONE t", kTitleContains), u"Xqz one two");
  EXPECT_EQ(Find(u"XQZ ONE TWO", kTitleEquals), u"Xqz one two");
  EXPECT_EQ(Find(u"Xqz one", kTitleEquals), u"-");
  EXPECT_EQ(Find(u"Xqz one two", 5), u"-");
}

TEST_P(WindowsContract, TopmostIsEnumeratedFirst) {
  Add(u"Xqz below");
  Add(u"Xqz above");
  Add(u"Xqz hidden", false);
  EXPECT_EQ(Find(u"Xqz", kTitleBegins), u"Xqz above");
}

TEST_P(WindowsContract, HiddenWindowIsNotFoundUntilItIsShown) {
  Add(u"Xqz hidden", false);
  EXPECT_EQ(Find(u"Xqz", kTitleBegins), u"-");
  WindowHandle hidden = 0;
  desktop->EnumerateWindows([&](WindowHandle window) {
    if (desktop->TitleOf(window, 1024) == u"Xqz hidden") hidden = window;
    return hidden == 0;
  });
  ASSERT_NE(hidden, 0);
  EXPECT_FALSE(desktop->IsVisible(hidden));
  desktop->ShowWindow(hidden, 1);
  EXPECT_TRUE(desktop->IsVisible(hidden));
  EXPECT_EQ(Find(u"Xqz", kTitleBegins), u"Xqz hidden");
  EXPECT_EQ(found, hidden);
}

TEST_P(WindowsContract, EmptyTextFindsSomeVisibleWindow) {
  Add(u"");
  Find(u"", kTitleBegins);
  EXPECT_TRUE(desktop->IsVisible(found));
}

TEST_P(WindowsContract, LongTitleIsCutToTheBuffer) {
  const Text title = u"Xqz " + Text(1500, u'y');
  Add(title);
  EXPECT_EQ(Find(u"Xqz", kTitleBegins), title.substr(0, 1023));
  EXPECT_EQ(Find(title.substr(0, 1023), kTitleEquals), title.substr(0, 1023));
  EXPECT_EQ(Find(title.substr(0, 1024), kTitleBegins), u"-");
  EXPECT_EQ(desktop->TitleOf(found, 5), u"Xqz ");
}

TEST_P(WindowsContract, NoWindowHasNoTitleAndIsNotVisible) {
  EXPECT_EQ(desktop->TitleOf(0x7FFFFFF0, 1024), u"");
  EXPECT_FALSE(desktop->IsVisible(0x7FFFFFF0));
  desktop->ShowWindow(0x7FFFFFF0, 1);
}

TEST_P(WindowsContract, ActivationNeedsTheWholeTitle) {
  Add(u"Xqz one two");
  EXPECT_FALSE(desktop->ActivateByTitle(u"Xqz one"));
  EXPECT_TRUE(desktop->ActivateByTitle(u"Xqz one two"));
}

#ifdef _WIN32
// The title is the form's, but its dialog keeps it from input.
TEST(WindowsWin32, LastActivePopupComesToTheFront) {
  win32::DesktopWin32 desktop;
  const auto make = [](const wchar_t* title, HWND owner) {
    return CreateWindowExW(0, L"STATIC", title, WS_POPUP | WS_CAPTION | WS_VISIBLE, 20, 20, 200, 90,
                           owner, nullptr, GetModuleHandleW(nullptr), nullptr);
  };
  const HWND form = make(L"Xqz form", nullptr);
  const HWND dialog = make(L"Xqz dialog", form);
  const HWND other = make(L"Xqz other", nullptr);
  SetForegroundWindow(dialog);
  EnableWindow(form, FALSE);
  SetForegroundWindow(other);
  EXPECT_TRUE(desktop.ActivateByTitle(u"Xqz form"));
  EXPECT_EQ(GetActiveWindow(), dialog);
  for (const HWND window : {dialog, form, other}) DestroyWindow(window);
}
#endif

TEST_P(WindowsContract, EnumerationEndsWhenTheVisitorSaysSo) {
  Add(u"Xqz one");
  Add(u"Xqz two");
  int visits = 0;
  desktop->EnumerateWindows([&](WindowHandle) { return ++visits < 2; });
  EXPECT_EQ(visits, 2);
}

// Below the visitor are the platform's own frames, which no exception may cross.
TEST_P(WindowsContract, FailureOfTheVisitorReachesTheCaller) {
  Add(u"Xqz one");
  Add(u"Xqz two");
  int visits = 0;
  const auto fail = [&](WindowHandle) -> bool {
    ++visits;
    throw RuntimeError(13, u"Type mismatch");
  };
  EXPECT_THROW(desktop->EnumerateWindows(fail), RuntimeError);
  EXPECT_EQ(visits, 1) << "it ends the enumeration";
  EXPECT_THROW(desktop->EnumerateWindows([](WindowHandle) -> bool { throw ProcessEnd{3}; }),
               ProcessEnd);
}

MARL_OVER_ALL_BACKENDS(WindowsContract);

}  // namespace
}  // namespace marl
