#include "tests/desktop/Dialog.h"
#include "tests/desktop/Switchboard.h"

// Position and state of the main form at start, and what it saves at exit.

namespace marl::desktop {

namespace {

class Window : public SwitchboardTest {
 protected:
  /// Starts with these settings and returns the window's position.
  POINT PlaceFor(const std::wstring& left, const std::wstring& top) {
    settings.Set(L"Left", left);
    settings.Set(L"Top", top);
    const SuiteFolder suite;
    const RunningMarl marl(suite);
    const HWND window = marl.WaitForWindow();
    if (!window) return {-1, -1};
    const RECT place = AreaOf(window);
    EXPECT_TRUE(Close(marl));
    return {place.left, place.top};
  }

  void ExpectPlace(const std::wstring& left, const std::wstring& top, POINT expected) {
    const POINT place = PlaceFor(left, top);
    EXPECT_EQ(place.x, expected.x) << ToUtf8(left) << ", " << ToUtf8(top);
    EXPECT_EQ(place.y, expected.y) << ToUtf8(left) << ", " << ToUtf8(top);
  }

  void ExpectDefault() const {
    EXPECT_EQ(settings.Get(L"Tooltips"), L"True");
    EXPECT_EQ(settings.Get(L"Tools"), L"False");
    EXPECT_EQ(settings.Get(L"WindowState"), L"0");
    EXPECT_EQ(settings.Get(L"XtraFeatures"), L"1");
  }
};

std::wstring Number(int value) { return std::to_wstring(value); }

}  // namespace

TEST_F(Window, OpensWhereItWasUnlessItWouldBeOffTheScreen) {
  // A first start gives the form's size and its centred position.
  SIZE form;
  POINT middle;
  {
    const SuiteFolder suite;
    const RunningMarl marl(suite);
    const HWND window = marl.WaitForWindow();
    ASSERT_TRUE(window);
    Screenshot("main", window);
    const RECT place = AreaOf(window);
    form = {place.right - place.left, place.bottom - place.top};
    middle = {place.left, place.top};
    ASSERT_TRUE(Close(marl));
  }
  const int width = GetSystemMetrics(SM_CXSCREEN);
  const int height = GetSystemMetrics(SM_CYSCREEN);
  EXPECT_NEAR(middle.x, (width - form.cx) / 2, 1);
  EXPECT_NEAR(middle.y, (height - form.cy) / 2, 1);

  const int right = Twips(width - form.cx);
  const int bottom = Twips(height - form.cy);
  ExpectPlace(L"0", L"0", {0, 0});
  ExpectPlace(Number(Twips(37)), Number(Twips(41)), {37, 41});
  // One bad coordinate centres both.
  ExpectPlace(L"-1", Number(Twips(100)), middle);
  ExpectPlace(Number(Twips(100)), L"-1", middle);
  // Exactly at the edge still fits.
  ExpectPlace(Number(right), Number(Twips(5)), {width - form.cx, 5});
  ExpectPlace(Number(Twips(5)), Number(bottom), {5, height - form.cy});
  ExpectPlace(Number(right), Number(bottom), {width - form.cx, height - form.cy});
  ExpectPlace(Number(right + 1), Number(Twips(5)), middle);
  ExpectPlace(Number(Twips(5)), Number(bottom + 1), middle);
  ExpectPlace(L"2147483647", L"2147483647", middle);
  ExpectPlace(L"-2147483648", L"0", middle);
}

TEST_F(Window, WrongSettingEndsTheProcessWithTheRuntimesText) {
  const struct {
    const wchar_t* key;
    const wchar_t* value;
    const wchar_t* text;
  } cases[] = {
      {L"Left", L"abc", L"Type mismatch"},    {L"Top", L"", L"Type mismatch"},
      {L"Left", L"99999999999", L"Overflow"}, {L"Tooltips", L"maybe", L"Type mismatch"},
      {L"Tools", L"", L"Type mismatch"},      {L"WindowState", L"x", L"Type mismatch"},
  };
  for (const auto& wrong : cases) {
    Settings own;
    own.Set(L"FirstRun", L"N");
    own.Set(wrong.key, wrong.value);
    const auto image = own.Image();
    const SuiteFolder suite;
    const RunningMarl marl(suite);
    const MessageBoxWindow box = marl.WaitForBox();
    ASSERT_TRUE(box) << ToUtf8(wrong.key) << " = " << ToUtf8(wrong.value);
    EXPECT_EQ(box.Title(), L"Marl");
    EXPECT_EQ(box.Text(), wrong.text) << ToUtf8(wrong.key);
    EXPECT_TRUE(box.Press(IDOK));
    EXPECT_EQ(marl.WaitForExit(), 1u);
    EXPECT_EQ(own.Image(), image) << "nothing is saved on that way";
  }
}

TEST_F(Window, StateOneStartsMinimised) {
  settings.Set(L"WindowState", L"1");
  const SuiteFolder suite;
  const RunningMarl marl(suite);
  HWND window = nullptr;
  ASSERT_TRUE(WaitUntil([&] {
    window = marl.Window();
    return window && (IsIconic(window) || !IsWindowVisible(window)) && suite.Starts().size() == 1;
  }));
  ASSERT_TRUE(Close(marl));
  EXPECT_EQ(settings.Get(L"WindowState"), L"1");
}

TEST_F(Window, CloseBoxSavesPlaceAndFlags) {
  const SuiteFolder suite;
  const RunningMarl marl(suite);
  const HWND window = marl.WaitForWindow();
  ASSERT_TRUE(window);
  SetWindowPos(window, nullptr, 120, 90, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
  const auto box = CloseBoxOf(window);
  ASSERT_TRUE(box);
  Click(*box);
  ASSERT_EQ(marl.WaitForExit(), 0u);
  EXPECT_EQ(settings.Get(L"Left"), Number(Twips(120)));
  EXPECT_EQ(settings.Get(L"Top"), Number(Twips(90)));
  ExpectDefault();
}

TEST_F(Window, ExitButtonSavesPlaceAndFlags) {
  const SuiteFolder suite;
  const RunningMarl marl(suite);
  const HWND window = marl.WaitForWindow();
  ASSERT_TRUE(window);
  SetWindowPos(window, nullptr, 33, 44, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
  Click(IconOf(window, kExit));
  ASSERT_EQ(marl.WaitForExit(), 0u);
  EXPECT_EQ(settings.Get(L"Left"), Number(Twips(33)));
  EXPECT_EQ(settings.Get(L"Top"), Number(Twips(44)));
  ExpectDefault();
}

TEST_F(Window, FlagsAreReadInManySpellingsAndSavedInOne) {
  settings.Set(L"Tooltips", L"fAlSe");
  settings.Set(L"Tools", L"1");
  const SuiteFolder suite;
  const RunningMarl marl(suite);
  ASSERT_TRUE(marl.WaitForWindow());
  ASSERT_TRUE(Close(marl));
  EXPECT_EQ(settings.Get(L"Tooltips"), L"False");
  EXPECT_EQ(settings.Get(L"Tools"), L"True");
}

TEST_F(Window, KeyCCentresTheForm) {
  const SuiteFolder suite;
  const RunningMarl marl(suite);
  const HWND window = marl.WaitForWindow();
  ASSERT_TRUE(window);
  const RECT middle = AreaOf(window);
  for (const wchar_t* key : {L"c", L"C"}) {
    SetWindowPos(window, nullptr, 10, 10, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
    ASSERT_TRUE(BringForward(window));
    Keys(key);
    EXPECT_TRUE(WaitUntil([&] {
      const RECT place = AreaOf(window);
      return EqualRect(&place, &middle) != FALSE;
    })) << ToUtf8(key);
  }
}

}  // namespace marl::desktop
