// The accessible objects of the program's windows, asked as a client in another process asks them.

#include "tests/contract/MainWindowWin32.h"

// After <windows.h>.
#include <oleacc.h>
#include <uiautomationcore.h>

#include <algorithm>
#include <vector>

#include "platform/forms/CommonControls.h"
#include "platform/forms/Controls.h"
#include "tests/contract/AccessibleClient.h"

namespace marl {

namespace {

/// COM, as the program has it on its thread.
class ComThread {
 public:
  ComThread() { OleInitialize(nullptr); }
  ~ComThread() { OleUninitialize(); }
};

class AccessibleMain : public MainWindow {
 protected:
  void SetUp() override {
    for (const auto* tool : {u"Q17Gauge.exe", u"Q17Pair.exe", u"Q17Bench.exe"}) {
      files.Put(Folder() + tool, "tool");
    }
  }
  Text Folder() const {
    const Text path = process.programPath;
    return path.substr(0, path.rfind(u'\\') + 1);
  }
  POINT Middle(const RECT& place) const {
    return {(place.left + place.right) / 2, (place.top + place.bottom) / 2};
  }
  ComThread com_;
};

/// The events of one window's client area while it lives, as a screen reader hears them.
class HeardEvents {
 public:
  explicit HeardEvents(HWND window)
      : hook_(SetWinEventHook(EVENT_MIN, EVENT_MAX, nullptr, OnEvent, GetCurrentProcessId(),
                              GetCurrentThreadId(), WINEVENT_OUTOFCONTEXT)) {
    watched_ = window;
    Clear();
  }
  ~HeardEvents() { UnhookWinEvent(hook_); }
  HeardEvents(const HeardEvents&) = delete;
  HeardEvents& operator=(const HeardEvents&) = delete;

  static void Clear() { events_.clear(); }
  static bool Has(DWORD what, LONG child) {
    return std::find(events_.begin(), events_.end(), std::pair(what, child)) != events_.end();
  }

 private:
  static void CALLBACK OnEvent(HWINEVENTHOOK, DWORD what, HWND window, LONG object, LONG child,
                               DWORD, DWORD) {
    if (window == watched_ && object == OBJID_CLIENT) events_.emplace_back(what, child);
  }

  static inline HWND watched_ = nullptr;
  static inline std::vector<std::pair<DWORD, LONG>> events_;
  HWINEVENTHOOK hook_;
};

class AccessibleFields : public testing::Test {
 protected:
  class FieldsForm : public Form {
   public:
    explicit FieldsForm(Desktop& desktop) : Form(desktop, "frmFields") {
      Design = {6000, 4500};
      SetCaption(u"Fields");
      label.SetCaption(u"&Server");
      label.SetBounds({120, 120, 1500, 240});
      field.SetBounds({1700, 120, 3000, 315});
      combo.Editable = true;
      combo.SetBounds({1700, 500, 3000, 315});
      combo.AccessibleName = u"Sizes";
      bar.SetBounds({120, 900, 3000, 255});
      bar.Max = 359;
      bar.AccessibleName = u"Angle";
      bar.AccessibleValue = [] { return Text(u"90\u00B0"); };
      button.SetCaption(u"&Colour");
      button.SetBounds({120, 1300, 1500, 345});
      button.AccessibleDescription = [] { return Text(u"red"); };
      button.Click = [this] { ++clicks; };
      tick.SetCaption(u"&Wide");
      tick.SetBounds({1800, 1300, 1500, 255});
      tick.SetValue(1);
      list.CheckBoxes = true;
      list.AccessibleName = u"Rows";
      list.SetBounds({120, 1800, 3000, 1500});
      for (const TextView row : {u"one", u"two", u"three"}) list.AddItem(row);
      list.SetSelected(1, true);
      link.SetCaption(u"www.example.com");
      link.HandCursor = true;
      link.SetBounds({3300, 1800, 2000, 240});
      link.Click = [this] { ++links; };
    }
    Label label{*this, "lblServer"};
    TextBox field{*this, "txtServer"};
    ComboBox combo{*this, "cmbSize"};
    HScrollBar bar{*this, "hsbAngle"};
    CommandButton button{*this, "cmdColour"};
    CheckBox tick{*this, "chkWide"};
    ListBox list{*this, "lstRows"};
    Label link{*this, "lblLink"};
    int clicks = 0;
    int links = 0;
  };

  AccessibleFields() {
    form.Show();
    desktop.DoEvents();
  }
  ~AccessibleFields() override { form.Unload(); }
  HWND Window(const Control& control) const {
    return static_cast<HWND>(LongToHandle(form.peer()->HandleOf(control)));
  }
  HWND Window() const { return static_cast<HWND>(LongToHandle(form.hWnd())); }

  ComThread com_;
  win32::DesktopWin32 desktop;
  FieldsForm form{desktop};
};

}  // namespace

TEST_F(AccessibleMain, ButtonsAreItsFirstChildren) {
  Start();
  const AccessibleAnswer panel(Window());
  ASSERT_TRUE(panel);
  EXPECT_EQ(panel.Role(CHILDID_SELF), ROLE_SYSTEM_CLIENT);
  ASSERT_GE(panel.Children(), 19) << "the buttons and the status line";
  EXPECT_EQ(panel.Name(1), L"Analyse");
  EXPECT_EQ(panel.Description(1), L"Analyse files for leverage statistics");
  EXPECT_EQ(panel.Name(18), L"Exit");
  EXPECT_EQ(panel.Action(1), L"Press");
  for (LONG id = 1; id <= 18; ++id) EXPECT_EQ(panel.Role(id), ROLE_SYSTEM_PUSHBUTTON);
  EXPECT_EQ(panel.State(1), STATE_SYSTEM_FOCUSABLE);
  EXPECT_EQ(panel.State(3), STATE_SYSTEM_FOCUSABLE | STATE_SYSTEM_UNAVAILABLE);
  IDispatch* status = nullptr;
  for (const LONG id : {1, 18}) {
    EXPECT_EQ(panel->get_accChild(ChildId(id), &status), S_FALSE) << "a simple child";
  }
  EXPECT_EQ(panel->get_accChild(ChildId(19), &status), S_OK);
  const win32::UniqueObject<IDispatch> owned(status);
  EXPECT_TRUE(status);
  EXPECT_EQ(panel->get_accChild(ChildId(panel.Children() + 1), &status), E_INVALIDARG);
  EXPECT_EQ(panel.Role(panel.Children() + 1), -1);
  EXPECT_EQ(panel.Role(-5), -1);
}

TEST_F(AccessibleMain, PlacesHitsAndNeighboursAgree) {
  Start();
  const AccessibleAnswer panel(Window());
  ASSERT_TRUE(panel);
  POINT corner = {};
  ClientToScreen(Window(), &corner);
  const Resolution own = main->resolution();
  const RECT first = panel.Place(1);
  EXPECT_EQ(first.left, corner.x + own.PixelsX(60));
  EXPECT_EQ(first.top, corner.y + own.PixelsY(60));
  EXPECT_EQ(first.right - first.left, own.PixelsX(60 + 1695) - own.PixelsX(60));
  for (LONG id = 1; id <= 18; ++id) {
    const POINT middle = Middle(panel.Place(id));
    EXPECT_EQ(panel.At(middle.x, middle.y), id);
  }
  EXPECT_EQ(panel.At(corner.x + 1, corner.y + 1), CHILDID_SELF);
  EXPECT_EQ(panel.At(corner.x - 50, corner.y - 200), -1);
  EXPECT_EQ(panel.Beside(NAVDIR_FIRSTCHILD, CHILDID_SELF), 1);
  EXPECT_EQ(panel.Beside(NAVDIR_NEXT, 1), 2);
  EXPECT_EQ(panel.Beside(NAVDIR_PREVIOUS, 1), -1);
  EXPECT_EQ(panel.Beside(NAVDIR_DOWN, 2), 7);
  EXPECT_EQ(panel.Beside(NAVDIR_UP, 7), 2);
  EXPECT_EQ(panel.Beside(NAVDIR_RIGHT, 5), -1);
  EXPECT_EQ(panel.Beside(NAVDIR_LEFT, 7), 6);
}

TEST_F(AccessibleMain, PressIsDoneAfterTheClientHasItsAnswer) {
  Start();
  const AccessibleAnswer panel(Window());
  ASSERT_TRUE(panel);
  shell.started.clear();
  EXPECT_EQ(panel.Press(2), S_OK);
  EXPECT_TRUE(shell.started.empty());
  desktop.DoEvents();
  ASSERT_EQ(shell.started.size(), 1u);
  EXPECT_TRUE(shell.started[0].file.ends_with(u"Q17Pair.exe"));
  EXPECT_EQ(panel.Press(3), S_OK) << "a dead one";
  desktop.DoEvents();
  EXPECT_EQ(shell.started.size(), 1u);
  EXPECT_EQ(panel.Press(99), E_INVALIDARG);
}

TEST_F(AccessibleMain, EventsFollowTheFocusAndTheLayout) {
  Start();
  const AccessibleAnswer panel(Window());
  ASSERT_TRUE(panel);
  const HeardEvents heard(Window());
  desktop.Event([&] { main->UserKeyDown(kKeyTab, 0); });
  desktop.Event([&] { main->UserKeyDown(kKeyRight, 0); });
  desktop.DoEvents();
  EXPECT_TRUE(heard.Has(EVENT_OBJECT_FOCUS, 1));
  EXPECT_TRUE(heard.Has(EVENT_OBJECT_FOCUS, 2));
  EXPECT_TRUE(panel.State(2) & STATE_SYSTEM_FOCUSED);
  heard.Clear();
  desktop.Event([&] { main->SetUI(); });
  desktop.DoEvents();
  EXPECT_TRUE(heard.Has(EVENT_OBJECT_REORDER, CHILDID_SELF));
  EXPECT_EQ(panel->accSelect(SELFLAG_TAKEFOCUS, ChildId(6)), S_OK);
  desktop.DoEvents();
  EXPECT_EQ(main->FocusButton, 5);
  EXPECT_TRUE(heard.Has(EVENT_OBJECT_FOCUS, 6));
}

TEST_F(AccessibleMain, ObjectOutlivesTheWindow) {
  Start();
  const AccessibleAnswer panel(Window());
  ASSERT_TRUE(panel);
  const std::vector<int> live = LiveHandles();
  EXPECT_FALSE(live.empty());
  desktop.Event([&] { main->Hide(); });
  const HWND window = Window();
  main->Unload();
  desktop.DoEvents();
  EXPECT_FALSE(IsWindow(window));
  LONG count = 7;
  EXPECT_TRUE(FAILED(panel->get_accChildCount(&count)));
  EXPECT_EQ(panel.Name(1), L"");
  EXPECT_TRUE(FAILED(panel.Press(1)));
  VARIANT focus = {};
  EXPECT_TRUE(FAILED(panel->get_accFocus(&focus)));
}

TEST_F(AccessibleMain, MessagesWithAnyNumbersDoNoHarm) {
  Start();
  shell.started.clear();
  for (const LPARAM l : {LPARAM{-1}, LPARAM{0}, LPARAM{40}, LPARAM{1000000}}) {
    for (const WPARAM w : {WPARAM{0}, WPARAM{1}, WPARAM{7}, WPARAM{0xFFFF0000}, WPARAM{0x10001}}) {
      SendMessageW(Window(), WM_APP + 1, w, l);
    }
  }
  SendMessageW(Window(), WM_GETOBJECT, 0, OBJID_CARET);
  SendMessageW(Window(), WM_GETOBJECT, 0, 0x7FFFFFFF);
  EXPECT_TRUE(main->loaded());
}

TEST_F(AccessibleMain, HundredClientsLoseNoHandle) {
  Start();
  { const AccessibleAnswer warm(Window()); }
  desktop.DoEvents();
  const std::vector<int> before = LiveHandles();
  for (int i = 0; i < 100; ++i) {
    const AccessibleAnswer panel(Window());
    EXPECT_EQ(panel.Name(1), L"Analyse");
  }
  desktop.DoEvents();
  EXPECT_EQ(LiveHandles(), before);
}

TEST_F(AccessibleFields, HaveTheNamesOfTheirLabels) {
  EXPECT_EQ(AccessibleAnswer(Window(form.field)).Name(CHILDID_SELF), L"Server");
  form.label.SetCaption(u"&Port");
  EXPECT_EQ(AccessibleAnswer(Window(form.field)).Name(CHILDID_SELF), L"Port");
  EXPECT_EQ(AccessibleAnswer(Window(form.field)).Role(CHILDID_SELF), ROLE_SYSTEM_TEXT);
  EXPECT_EQ(AccessibleAnswer(Window(form.combo)).Name(CHILDID_SELF), L"Sizes");
  EXPECT_EQ(AccessibleAnswer(Window(form.combo)).Role(CHILDID_SELF), ROLE_SYSTEM_COMBOBOX);
  COMBOBOXINFO combo = {};
  combo.cbSize = sizeof combo;
  ASSERT_TRUE(GetComboBoxInfo(Window(form.combo), &combo));
  EXPECT_EQ(AccessibleAnswer(combo.hwndItem).Name(CHILDID_SELF), L"Sizes");
  EXPECT_EQ(AccessibleAnswer(combo.hwndItem).Role(CHILDID_SELF), ROLE_SYSTEM_TEXT);
}

TEST_F(AccessibleFields, HaveValuesAndDescriptions) {
  const AccessibleAnswer bar(Window(form.bar));
  EXPECT_EQ(bar.Name(CHILDID_SELF), L"Angle");
  EXPECT_EQ(bar.Value(CHILDID_SELF), L"90\u00B0");
  EXPECT_EQ(bar.Role(CHILDID_SELF), ROLE_SYSTEM_SCROLLBAR);
  const AccessibleAnswer button(Window(form.button));
  EXPECT_EQ(button.Name(CHILDID_SELF), L"Colour");
  EXPECT_EQ(button.Description(CHILDID_SELF), L"red");
  const AccessibleAnswer tick(Window(form.tick));
  EXPECT_TRUE(tick.State(CHILDID_SELF) & STATE_SYSTEM_CHECKED);
  EXPECT_EQ(tick.Role(CHILDID_SELF), ROLE_SYSTEM_CHECKBUTTON);
  form.tick.SetValue(0);
  EXPECT_FALSE(tick.State(CHILDID_SELF) & STATE_SYSTEM_CHECKED);
}

TEST_F(AccessibleFields, ButtonsArePressedLater) {
  form.desktop().Actions = {u"Press", u"Open", u"Tick", u"Clear", u"Select"};
  const AccessibleAnswer button(Window(form.button));
  EXPECT_EQ(button.Press(CHILDID_SELF), S_OK);
  EXPECT_EQ(form.clicks, 0);
  desktop.DoEvents();
  EXPECT_EQ(form.clicks, 1);
  const AccessibleAnswer tick(Window(form.tick));
  EXPECT_EQ(tick.Action(CHILDID_SELF), L"Clear");
  EXPECT_EQ(tick.Press(CHILDID_SELF), S_OK);
  desktop.DoEvents();
  EXPECT_EQ(form.tick.Value(), 0);
}

TEST_F(AccessibleFields, RowsHaveTicksAndPlaces) {
  form.desktop().Actions = {u"Press", u"Open", u"Tick", u"Clear", u"Select"};
  const AccessibleAnswer list(Window(form.list));
  ASSERT_TRUE(list);
  ASSERT_EQ(list.Children(), 3);
  EXPECT_EQ(list.Role(CHILDID_SELF), ROLE_SYSTEM_LIST);
  EXPECT_EQ(list.Name(2), L"two");
  EXPECT_EQ(list.Role(2), ROLE_SYSTEM_CHECKBUTTON);
  EXPECT_TRUE(list.State(2) & STATE_SYSTEM_CHECKED);
  EXPECT_FALSE(list.State(1) & STATE_SYSTEM_CHECKED);
  EXPECT_EQ(list.Action(2), L"Clear");
  EXPECT_EQ(list.Action(1), L"Tick");
  const RECT second = list.Place(2);
  EXPECT_GT(second.top, list.Place(1).top);
  EXPECT_EQ(list.At((second.left + second.right) / 2, (second.top + second.bottom) / 2), 2);
  const HeardEvents heard(Window(form.list));
  EXPECT_EQ(list.Press(1), S_OK);
  desktop.DoEvents();
  EXPECT_TRUE(form.list.Selected(0));
  EXPECT_TRUE(heard.Has(EVENT_OBJECT_STATECHANGE, 1));
  EXPECT_EQ(list->accSelect(SELFLAG_TAKEFOCUS | SELFLAG_TAKESELECTION, ChildId(3)), S_OK);
  desktop.DoEvents();
  EXPECT_EQ(form.list.ListIndex(), 2);
  EXPECT_TRUE(list.State(3) & STATE_SYSTEM_SELECTED);
}

TEST_F(AccessibleFields, LinksAreChildrenOfTheirForm) {
  form.desktop().Actions = {u"Press", u"Open", u"Tick", u"Clear", u"Select"};
  const AccessibleAnswer object(Window());
  ASSERT_TRUE(object);
  EXPECT_EQ(object.Name(CHILDID_SELF), L"Fields");
  EXPECT_EQ(object.Name(1), L"Server");
  EXPECT_EQ(object.Role(1), ROLE_SYSTEM_STATICTEXT);
  EXPECT_EQ(object.Role(2), ROLE_SYSTEM_LINK);
  EXPECT_EQ(object.Action(2), L"Open");
  EXPECT_EQ(object.Action(1), L"");
  EXPECT_EQ(object.Press(1), DISP_E_MEMBERNOTFOUND);
  EXPECT_EQ(object.Press(2), S_OK);
  desktop.DoEvents();
  EXPECT_EQ(form.links, 1);
  EXPECT_EQ(object.Children(), 2 + 6) << "the windows of the controls follow";
  RECT area = {};
  GetWindowRect(Window(form.field), &area);
  const POINT field = {(area.left + area.right) / 2, (area.top + area.bottom) / 2};
  EXPECT_EQ(object.At(field.x, field.y), -2) << "an object of its own";
}

// ---- Groups, areas, tabs, and controls that stand for what is painted

namespace {

class AccessibleAreas : public testing::Test {
 protected:
  class AreasForm : public Form {
   public:
    explicit AreasForm(Desktop& desktop) : Form(desktop, "frmAreas") {
      Design = {6000, 4500};
      AccessibleName = u"Areas";
      group.SetCaption(u"&Gradient");
      group.SetBounds({120, 120, 3000, 1500});
      angle.SetCaption(u"&Angle");
      angle.SetBounds({180, 300, 900, 240});
      wide.SetCaption(u"&Wide");
      wide.SetBounds({180, 900, 1500, 255});
      area.AccessibleName = u"Sample";
      area.SetBounds({1200, 300, 1500, 500});
      sample.SetCaption(u"Normal");
      sample.SetBounds({60, 60, 600, 240});
      sample.AccessibleDescription = [] { return Text(u"red"); };
      tabs.SetBounds({120, 1800, 5000, 1000});
      tabs.AddPart({u"&First", u"", u""});
      tabs.AddPart({u"Second", u"", u""});
      link.SetCaption(u"&Site");
      link.HandCursor = true;
      link.SetBounds({3300, 300, 2000, 240});
      link.Click = [this] { ++links; };
      stand.SetBounds({-1500, 300, 900, 240});
      stand.TabStop = false;
      stand.StandsFor = &link;
    }
    Frame group{*this, "fraGradient"};
    Label angle{*this, "lblAngle", -1, &group};
    CheckBox wide{*this, "chkWide", -1, &group};
    PictureBox area{*this, "picArea", -1, &group};
    Label sample{*this, "lblSample", -1, &area};
    TabStrip tabs{*this, "tabPages"};
    Label link{*this, "lblSite"};
    CommandButton stand{*this, "cmdSite"};
    int links = 0;
  };

  AccessibleAreas() {
    desktop.Actions = {u"Press", u"Open", u"Tick", u"Clear", u"Select"};
    form.Show();
    desktop.DoEvents();
  }
  ~AccessibleAreas() override { form.Unload(); }
  HWND Window(const Control& control) const {
    return static_cast<HWND>(LongToHandle(form.peer()->HandleOf(control)));
  }
  HWND Window() const { return static_cast<HWND>(LongToHandle(form.hWnd())); }
  /// The place of a control of the form, in pixels of the screen.
  RECT Shown(const Control& control) const {
    const Point at = form.Origin(control);
    const Resolution own = form.resolution();
    RECT place = {own.PixelsX(at.x), own.PixelsY(at.y), own.PixelsX(at.x + control.Width()),
                  own.PixelsY(at.y + control.Height())};
    MapWindowPoints(Window(), nullptr, reinterpret_cast<POINT*>(&place), 2);
    return place;
  }
  static POINT Middle(const RECT& place) {
    return {(place.left + place.right) / 2, (place.top + place.bottom) / 2};
  }

  ComThread com_;
  win32::DesktopWin32 desktop;
  AreasForm form{desktop};
};

}  // namespace

TEST_F(AccessibleAreas, FormWithoutATitleHasAName) {
  EXPECT_EQ(AccessibleAnswer(Window()).Name(CHILDID_SELF), L"Areas");
}

TEST_F(AccessibleAreas, GroupHasWhatIsPaintedAndTheWindowsInIt) {
  const AccessibleAnswer group(Window(form.group));
  ASSERT_TRUE(group);
  EXPECT_EQ(group.Role(CHILDID_SELF), ROLE_SYSTEM_GROUPING);
  EXPECT_EQ(group.Name(CHILDID_SELF), L"Gradient");
  ASSERT_EQ(group.Children(), 1 + 2);
  EXPECT_EQ(group.Name(1), L"Angle");
  EXPECT_EQ(group.Role(1), ROLE_SYSTEM_STATICTEXT);
  const RECT place = group.Place(1), shown = Shown(form.angle);
  EXPECT_TRUE(EqualRect(&place, &shown));
  EXPECT_EQ(group.At(Middle(shown).x, Middle(shown).y), 1);
  EXPECT_EQ(group.At(Middle(Shown(form.wide)).x, Middle(Shown(form.wide)).y), -2);
  EXPECT_EQ(group.Beside(NAVDIR_FIRSTCHILD, CHILDID_SELF), 1);
  EXPECT_EQ(group.Beside(NAVDIR_LASTCHILD, CHILDID_SELF), 3);
  IDispatch* child = nullptr;
  EXPECT_EQ(group->get_accChild(ChildId(2), &child), S_OK);
  EXPECT_TRUE(child);
  if (child) child->Release();

  const AccessibleAnswer area(Window(form.area));
  EXPECT_EQ(area.Role(CHILDID_SELF), ROLE_SYSTEM_PANE);
  EXPECT_EQ(area.Name(CHILDID_SELF), L"Sample");
  EXPECT_EQ(area.Children(), 1);
  EXPECT_EQ(area.Name(1), L"Normal");
  EXPECT_EQ(area.Description(1), L"red");
  const RECT sample = area.Place(1), painted = Shown(form.sample);
  EXPECT_TRUE(EqualRect(&sample, &painted));

  const AccessibleAnswer window(Window());
  for (LONG id = 1; window.Simple(id); ++id) {
    EXPECT_EQ(window.Name(id), L"") << "what is in a group is not in the form as well";
  }
  LONG hit = -1;
  const AccessibleAnswer there(Middle(painted), hit);
  ASSERT_TRUE(there);
  EXPECT_EQ(there.Name(hit), L"Normal") << "from the point on the screen";
}

TEST_F(AccessibleAreas, ChangesAndAlertsInAGroupAreAnnouncedThere) {
  const AccessibleAnswer group(Window(form.group));
  ASSERT_TRUE(group);
  const HeardEvents heard(Window(form.group));
  form.Announce(Announcement::kName, &form.angle);
  form.Announce(Announcement::kAlert, &form.angle);
  desktop.DoEvents();
  EXPECT_TRUE(heard.Has(EVENT_OBJECT_NAMECHANGE, 1));
  EXPECT_TRUE(heard.Has(EVENT_SYSTEM_ALERT, 1));
}

TEST_F(AccessibleAreas, TabsAreReadAndChosen) {
  const AccessibleAnswer tabs(Window(form.tabs));
  ASSERT_TRUE(tabs);
  ASSERT_EQ(tabs.Children(), 2);
  EXPECT_EQ(tabs.Role(CHILDID_SELF), ROLE_SYSTEM_PAGETABLIST);
  EXPECT_EQ(tabs.Name(1), L"First");
  EXPECT_EQ(tabs.Role(1), ROLE_SYSTEM_PAGETAB);
  EXPECT_EQ(tabs.Action(2), L"Select");
  EXPECT_TRUE(tabs.State(1) & STATE_SYSTEM_SELECTED);
  EXPECT_FALSE(tabs.State(2) & STATE_SYSTEM_SELECTED);
  const RECT first = tabs.Place(1), second = tabs.Place(2);
  EXPECT_GT(first.right, first.left);
  EXPECT_GE(second.left, first.right - 4);
  EXPECT_EQ(tabs.At(Middle(second).x, Middle(second).y), 2);
  const HeardEvents heard(Window(form.tabs));
  EXPECT_EQ(tabs.Press(2), S_OK);
  EXPECT_EQ(form.tabs.SelectedItem(), 1) << "not before the client has its answer";
  desktop.DoEvents();
  EXPECT_EQ(form.tabs.SelectedItem(), 2);
  EXPECT_TRUE(heard.Has(EVENT_OBJECT_SELECTION, 2));
  EXPECT_EQ(tabs->accSelect(SELFLAG_TAKEFOCUS | SELFLAG_TAKESELECTION, ChildId(1)), S_OK);
  desktop.DoEvents();
  EXPECT_EQ(form.tabs.SelectedItem(), 1);
  SetForegroundWindow(Window());
  SetFocus(Window(form.tabs));
  EXPECT_EQ(tabs.Focus(), 1);
  EXPECT_TRUE(tabs.State(1) & STATE_SYSTEM_FOCUSED);
}

TEST_F(AccessibleAreas, LinkIsOneElementOfTheControlThatStandsForIt) {
  const AccessibleAnswer link(Window(form.stand));
  ASSERT_TRUE(link);
  EXPECT_EQ(link.Name(CHILDID_SELF), L"Site");
  EXPECT_EQ(link.Role(CHILDID_SELF), ROLE_SYSTEM_LINK);
  EXPECT_EQ(link.Action(CHILDID_SELF), L"Open");
  EXPECT_FALSE(link.State(CHILDID_SELF) & (STATE_SYSTEM_OFFSCREEN | STATE_SYSTEM_INVISIBLE));
  const RECT place = link.Place(CHILDID_SELF), shown = Shown(form.link);
  EXPECT_TRUE(EqualRect(&place, &shown)) << "where it is painted";
  const AccessibleAnswer window(Window());
  EXPECT_EQ(window.At(Middle(shown).x, Middle(shown).y), -2);
  LONG hit = -1;
  const AccessibleAnswer there(Middle(shown), hit);
  EXPECT_EQ(link.Press(CHILDID_SELF), S_OK);
  EXPECT_EQ(form.links, 0);
  desktop.DoEvents();
  EXPECT_EQ(form.links, 1);
}

// ---- UI Automation

namespace {

/// A provider that the platform makes of an accessible object: what clients of UI Automation get.
class ProxyOf {
 public:
  ProxyOf(const AccessibleAnswer& object, LONG child) {
    using FromAccessible = HRESULT WINAPI(IAccessible*, long, DWORD, IRawElementProviderSimple**);
    const auto fromAccessible = reinterpret_cast<FromAccessible*>(reinterpret_cast<void*>(
        GetProcAddress(LoadLibraryW(L"uiautomationcore.dll"), "UiaProviderFromIAccessible")));
    if (!fromAccessible || FAILED(fromAccessible(object.operator->(), child, 0, &provider_))) {
      provider_ = nullptr;
    }
  }
  ~ProxyOf() {
    if (provider_) provider_->Release();
  }
  ProxyOf(const ProxyOf&) = delete;
  ProxyOf& operator=(const ProxyOf&) = delete;
  explicit operator bool() const { return provider_ != nullptr; }

  /// A number or a truth value (0 or 1); -1 for none.
  int Property(PROPERTYID id) const {
    VARIANT value = {};
    provider_->GetPropertyValue(id, &value);
    const int number = value.vt == VT_I4     ? value.lVal
                       : value.vt == VT_BOOL ? (value.boolVal != VARIANT_FALSE ? 1 : 0)
                                             : -1;
    VariantClear(&value);
    return number;
  }

 private:
  IRawElementProviderSimple* provider_ = nullptr;
};

constexpr PROPERTYID kControlType = 30003;
constexpr PROPERTYID kHasKeyboardFocus = 30008;
constexpr PROPERTYID kIsKeyboardFocusable = 30009;
constexpr PROPERTYID kIsEnabled = 30010;
constexpr int kButtonType = 50000;

}  // namespace

TEST_F(AccessibleMain, ProxyForUiAutomationFindsWhatItNeeds) {
  Start();
  desktop.Event([&] { main->UserKeyDown(kKeyTab, 0); });
  const AccessibleAnswer panel(Window());
  ASSERT_TRUE(panel);
  const ProxyOf first(panel, 1), dead(panel, 3);
  ASSERT_TRUE(first);
  ASSERT_TRUE(dead);
  EXPECT_EQ(first.Property(kControlType), kButtonType);
  EXPECT_EQ(first.Property(kIsEnabled), 1);
  EXPECT_EQ(dead.Property(kIsEnabled), 0);
  EXPECT_EQ(first.Property(kIsKeyboardFocusable), 1);
  EXPECT_EQ(first.Property(kHasKeyboardFocus), 1);
  EXPECT_EQ(dead.Property(kHasKeyboardFocus), 0);
  // Invoke and HelpText, as the platform's proxy makes them of these two.
  EXPECT_FALSE(panel.Action(1).empty());
  for (LONG id = 1; id <= 18; ++id) EXPECT_EQ(panel.Help(id), panel.Description(id));
  EXPECT_EQ(panel.Help(1), L"Analyse files for leverage statistics");
}

TEST_F(AccessibleFields, HelpIsTheDescription) {
  EXPECT_EQ(AccessibleAnswer(Window(form.button)).Help(CHILDID_SELF), L"red");
  EXPECT_EQ(AccessibleAnswer(Window(form.field)).Help(CHILDID_SELF), L"");
}

TEST_F(AccessibleMain, LeavesTheRequestForAProviderToThePlatform) {
  Start();
  constexpr LPARAM kRootOfUiAutomation = -25;  // UiaRootObjectId
  EXPECT_EQ(SendMessageW(Window(), WM_GETOBJECT, 0, kRootOfUiAutomation), 0);
}

// ---- References

TEST_F(AccessibleMain, ObjectGoesWithItsLastReference) {
  Start();
  IAccessible* object = nullptr;
  {
    const AccessibleAnswer panel(Window());
    ASSERT_TRUE(panel);
    object = panel.operator->();
    object->AddRef();
    IUnknown* unknown = nullptr;
    IDispatch* dispatch = nullptr;
    EXPECT_EQ(object->QueryInterface(IID_IUnknown, reinterpret_cast<void**>(&unknown)), S_OK);
    EXPECT_EQ(object->QueryInterface(IID_IDispatch, reinterpret_cast<void**>(&dispatch)), S_OK);
    EXPECT_EQ(object->QueryInterface(IID_IOleWindow, reinterpret_cast<void**>(&unknown)),
              E_NOINTERFACE);
    dispatch->Release();
  }
  EXPECT_GT(object->AddRef(), 1u);
  object->Release();
  // The one of QueryInterface and this one.
  EXPECT_EQ(object->Release(), 1u);
  EXPECT_EQ(object->Release(), 0u);
}

}  // namespace marl
