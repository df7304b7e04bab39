#include "platform/Icons.h"

#include <memory>
#include <utility>
#include <vector>

#include "appearance/modSetIcon.h"
#include "platform/memory/MemoryIcons.h"
#include "tests/contract/Backends.h"
#ifdef _WIN32
#include "platform/win32/Handle.h"
#include "platform/win32/IconsWin32.h"
#endif

namespace marl {
namespace {

/// The program's icon library, and windows that get icons.
class IconsContract : public BackendTest {
 protected:
  IconsContract() {
#ifdef _WIN32
    if (real()) {
      icons = std::make_unique<win32::IconsWin32>();
      char full[MAX_PATH] = {};
      path = Text(full, full + GetFullPathNameA(MARL_ICON_LIBRARY, MAX_PATH, full, nullptr));
      return;
    }
#endif
    auto memory = std::make_unique<MemoryIcons>();
    path = u"C:\\Suite\\q17icl.oru";
    memory->Put(path, kMarlIcon, 71, 72);
    icons = std::move(memory);
  }
  ~IconsContract() override {
#ifdef _WIN32
    for (const HWND window : windows_) DestroyWindow(window);
#endif
  }

  WindowHandle NewWindow(WindowHandle owner) {
#ifdef _WIN32
    if (real()) {
      const HWND window = CreateWindowExW(0, L"STATIC", L"", WS_OVERLAPPED, 0, 0, 9, 9,
                                          static_cast<HWND>(LongToHandle(owner)), nullptr,
                                          GetModuleHandleW(nullptr), nullptr);
      windows_.insert(windows_.begin(), window);
      return HandleToLong(window);
    }
#endif
    const WindowHandle window = ++lastWindow_;
    if (owner != 0) static_cast<MemoryIcons&>(*icons).owners[window] = owner;
    return window;
  }
  /// The window's icon; 0 if there is none.
  IconHandle IconOf(WindowHandle window, WindowIcon which) {
#ifdef _WIN32
    if (real()) {
      return static_cast<IconHandle>(SendMessageW(static_cast<HWND>(LongToHandle(window)),
                                                  WM_GETICON, static_cast<WPARAM>(which), 0));
    }
#endif
    return static_cast<MemoryIcons&>(*icons).IconOf(window, which);
  }
  IconHandle LoadBig(LibraryHandle library, int id) {
    return icons->Load(library, id, icons->Metric(kIconWidth), icons->Metric(kIconHeight));
  }
  IconHandle LoadSmall(LibraryHandle library, int id) {
    return icons->Load(library, id, icons->Metric(kSmallIconWidth),
                       icons->Metric(kSmallIconHeight));
  }

  std::unique_ptr<Icons> icons;
  Text path;

 private:
  WindowHandle lastWindow_ = 500;
#ifdef _WIN32
  std::vector<HWND> windows_;  // owned windows before their owners
#endif
};
MARL_OVER_ALL_BACKENDS(IconsContract);

TEST_P(IconsContract, SizesAreThoseOfTheScreen) {
  for (const int metric : {kIconWidth, kIconHeight, kSmallIconWidth, kSmallIconHeight}) {
    EXPECT_GT(icons->Metric(metric), 0) << metric;
  }
  EXPECT_LT(icons->Metric(kSmallIconWidth), icons->Metric(kIconWidth));
  EXPECT_LT(icons->Metric(kSmallIconHeight), icons->Metric(kIconHeight));
}

TEST_P(IconsContract, LibraryGivesItsIconsInBothSizes) {
  const LibraryHandle library = icons->OpenLibrary(path);
  ASSERT_NE(library, 0);
  const IconHandle big = LoadBig(library, kMarlIcon);
  const IconHandle small = LoadSmall(library, kMarlIcon);
  EXPECT_NE(big, 0);
  EXPECT_NE(small, 0);
  EXPECT_NE(big, small);
  EXPECT_NE(LoadBig(library, kMarlIcon), 0) << "as often as it is asked for";
  EXPECT_EQ(LoadBig(library, kMarlIcon + 1), 0);
  icons->CloseLibrary(library);
}

TEST_P(IconsContract, WhatIsNoLibraryIsNotOpened) {
  EXPECT_EQ(icons->OpenLibrary(u"C:\\no such folder\\q17icl.oru"), 0);
  EXPECT_EQ(icons->OpenLibrary(u""), 0);
  EXPECT_EQ(LoadBig(0, kMarlIcon), 0);
  icons->CloseLibrary(0);
}

TEST_P(IconsContract, PathIsFoundWithoutRegardToCase) {
  Text upper = path;
  for (char16_t& unit : upper) {
    if (unit >= u'a' && unit <= u'z') unit = static_cast<char16_t>(unit - u'a' + u'A');
  }
  const LibraryHandle library = icons->OpenLibrary(upper);
  EXPECT_NE(library, 0);
  EXPECT_NE(LoadBig(library, kMarlIcon), 0);
  icons->CloseLibrary(library);
}

TEST_P(IconsContract, WindowsKeepOneIconOfEachKind) {
  const LibraryHandle library = icons->OpenLibrary(path);
  const IconHandle big = LoadBig(library, kMarlIcon);
  const IconHandle small = LoadSmall(library, kMarlIcon);
  icons->CloseLibrary(library);
  const WindowHandle window = NewWindow(0);
  const WindowHandle other = NewWindow(0);
  EXPECT_EQ(IconOf(window, kBigIcon), 0);
  icons->SetIcon(window, kBigIcon, big);
  EXPECT_EQ(IconOf(window, kBigIcon), big) << "an icon outlives its library";
  icons->SetIcon(window, kSmallIcon, small);
  EXPECT_EQ(IconOf(window, kBigIcon), big);
  EXPECT_EQ(IconOf(window, kSmallIcon), small);
  icons->SetIcon(window, kBigIcon, small);
  EXPECT_EQ(IconOf(window, kBigIcon), small);
  EXPECT_EQ(IconOf(other, kBigIcon), 0);
  icons->SetIcon(0x7FFFFFF0, kBigIcon, big);
}

TEST_P(IconsContract, OwnersAreFoundStepByStep) {
  const WindowHandle top = NewWindow(0);
  const WindowHandle middle = NewWindow(top);
  const WindowHandle window = NewWindow(middle);
  EXPECT_EQ(icons->OwnerOf(window), middle);
  EXPECT_EQ(icons->OwnerOf(middle), top);
  EXPECT_EQ(icons->OwnerOf(top), 0);
  EXPECT_EQ(icons->OwnerOf(0x7FFFFFF0), 0);
}

}  // namespace
}  // namespace marl
