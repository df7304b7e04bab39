// A random user: clicks, keys, menu commands, tray messages, commands of other programs and answers
// in dialogs, chosen by fixed seeds. Whatever the user does, and wherever the user exits, the
// program neither fails nor stays in a dialog, saves once, and leaks nothing.

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "platform/forms/CommonControls.h"
#include "tests/unit/SuiteWorld.h"

namespace marl {

namespace {

constexpr char kProject[] =
    "<?xml version=\"1.0\" encoding=\"utf-8\"?>\r\n"
    "<project version=\"1.0\">\r\n<files sourcelang=\"de\" targetlangs=\"en|fr\">\r\n"
    "<file name=\"a.htm\"/>\r\n</files>\r\n</project>\r\n";

class RandomUser {
 public:
  explicit RandomUser(std::uint32_t seed) : random_(seed) { MakeWorld(); }

  /// Performs one action, which every failure message names.
  void Act() {
    const std::string what = Choose();
    last_.push_back(what);
    if (last_.size() > 12) last_.erase(last_.begin());
    SuiteWorld& world = *world_;
    if (!world.desktop.ended() && world.main().loaded()) {
      EXPECT_EQ(world.desktop.forms().size(), 1u) << History();
      EXPECT_LE(world.tray.popups, 1) << History();
    }
    EXPECT_EQ(world.registry.OpenKeys(), 0u) << History();
    EXPECT_EQ(world.files.OpenFiles(), 0) << History();
    if (world.desktop.ended() || !world.main().loaded()) {
      ExpectLeft();
      ++exits_;
      StartAgain();
    }
  }

  int exits() const { return exits_; }
  /// How often the user exited from within a dialog, a message, a search or a call.
  int exitsInside() const { return exitsInside_; }
  std::size_t dialogs() const { return dialogs_; }

 private:
  int Below(int limit) { return std::uniform_int_distribution<int>(0, limit - 1)(random_); }
  bool Sometimes(int oneIn) { return Below(oneIn) == 0; }
  template <typename Collection>
  auto& Any(Collection& collection) {
    return collection[static_cast<std::size_t>(Below(static_cast<int>(std::size(collection))))];
  }

  static std::string Narrow(const Text& text) { return {text.begin(), text.end()}; }
  /// Checks that the program has ended, with all its windows, and has saved once.
  void ExpectLeft() {
    SuiteWorld& world = *world_;
    const auto& messages = world.desktop.messages;
    EXPECT_EQ(world.desktop.exitCode(), 0)
        << (messages.empty() ? "" : Narrow(messages.back().text)) << History();
    EXPECT_TRUE(world.desktop.forms().empty()) << History();
    EXPECT_TRUE(world.tray.icons.empty()) << History();
    EXPECT_TRUE(world.hooks.listeners.empty()) << History();
    EXPECT_EQ(world.components.live, 0) << History();
    const auto& writes = world.settings.writes;
    EXPECT_EQ(std::count_if(writes.begin(), writes.end(),
                            [](const auto& write) { return write.key == u"Left"; }),
              1)
        << History();
  }

  /// Exits the program now and then, from its present state. True if it did.
  bool LeavesHere(const char* where, int oneIn = 100) {
    if (world_->desktop.ended() || !Sometimes(oneIn)) return false;
    last_.push_back(std::string("leave:") + where);
    Leave(Below(3));
    EXPECT_TRUE(world_->desktop.ended()) << History();
    ++exitsInside_;
    return true;
  }
  void Leave(int way) {
    SuiteWorld& world = *world_;
    MemoryDesktop& desktop = world.desktop;
    if (way == 0) return desktop.Event([&] { world.main().UserClose(); });
    if (way == 1) return desktop.Event([&] { desktop.Leave(); });
    world.tray.choice = kExit + 1;
    desktop.Event([&] {
      world.hooks.Send(world.main().hWnd(), world.hooks.NumberOf("msgMarlMenu"), 0, 0x205);
    });
  }

  std::string History() const {
    std::string history = "\nafter:";
    for (const std::string& act : last_) history += ' ' + act;
    return history;
  }

  Text AnyText() {
    static const std::vector<Text> texts = {u"",
                                            u"Server",
                                            u"127.0.0.1",
                                            u"8080",
                                            u"65536",
                                            u"-1",
                                            u"abc",
                                            u"8.25",
                                            u"1e9",
                                            u"\"<&>%20",
                                            u"C:\\Project\\p.qpr",
                                            u"C:\\Project\\missing.qpr",
                                            u"C:\\Project",
                                            u"Ä\u0416\u4E2D",
                                            Text(3000, u'x'),
                                            Text(1, u'\xD800')};
    return Any(texts);
  }

  void MakeWorld() {
    world_ = std::make_unique<SuiteWorld>();
    SuiteWorld& world = *world_;
    world.files.Put(u"C:\\Project\\p.qpr", kProject);
    world.files.Put(u"C:\\Project\\en\\a.htm", "text");
    world.files.Put(u"C:\\Project\\fr\\a.bak", "text");
    world.files.Put(u"C:\\Project\\old.prj", "[Project]\r\nSource=de\r\n");
    for (const char16_t* title : {u"Editor", u"Marl : other", u"Mail"}) {
      world.desktop.others.push_back({title, true});
    }
    Arrange();
    world.Start();
  }

  /// The same machine and user, with the program restarted.
  void StartAgain() {
    bool gone = false;
    do {
      auto next = std::make_unique<SuiteWorld>();
      next->settings = world_->settings;
      next->settings.writes.clear();
      next->files.Put(u"C:\\Project\\p.qpr", kProject);
      next->files.Put(u"C:\\Project\\en\\a.htm", "text");
      world_ = std::move(next);
      Arrange();
      // The user may have chosen to start with the wizard.
      world_->process.commandLine = u"nw";
      const bool leaves = Sometimes(10);
      if (leaves) {
        world_->desktop.posted.push_back([this] {
          last_.push_back("leave:splash");
          Leave(Below(2));
        });
      }
      world_->Start();
      EXPECT_EQ(world_->desktop.ended(), leaves) << History();
      gone = world_->desktop.ended();
      if (gone) {
        ExpectLeft();
        ++exitsInside_;
      }
    } while (gone && !testing::Test::HasFailure());
  }

  void Arrange() {
    MemoryDesktop& desktop = world_->desktop;
    desktop.whenAnyModal = [this](Form& form) { Use(form); };
    desktop.answer = [this](const MemoryDesktop::Message& message) {
      LeavesHere("message");
      if (message.flags & kYesNo) return Sometimes(2) ? int{kAnswerYes} : int{kAnswerNo};
      return int{kAnswerOk};
    };
    world_->components.registered[u"Marl.ReplaceComponent"] =
        [this](const Text&, std::vector<ComponentValue>&, ComponentValue&, Text&) {
          LeavesHere("component", 5);
          return true;
        };
    world_->fileDialogs.whenShown = [this](Text& path) {
      LeavesHere("file-dialog");
      if (Sometimes(3)) return FileDialogResult::kCancelled;
      path = AnyText();
      return FileDialogResult::kChosen;
    };
    world_->colorDialog.whenShown = [this](Color& color) {
      LeavesHere("color-dialog");
      color = Below(0x1000000);
      return !Sometimes(3);
    };
    world_->shell.browser = u"C:\\Browser\\b.exe";
  }

  /// What a user does in a dialog: a few actions, then closes it.
  void Use(Form& form) {
    ++dialogs_;
    if (++depth_ <= 4) {
      for (int acts = Below(12); acts > 0 && form.Visible() && form.loaded(); --acts) {
        world_->desktop.Event([&] { Touch(form); });
        if (LeavesHere(form.name().c_str(), 200)) break;
      }
    }
    --depth_;
  }

  void Touch(Form& form) {
    if (Sometimes(20)) return form.UserClose();
    if (Sometimes(10)) {
      form.UserKeyDown(Below(256), Below(4));
      return;
    }
    std::vector<Control*> within;
    for (Control* control : form.controls()) {
      if (control->Reachable()) within.push_back(control);
    }
    if (within.empty()) return;
    Control& control = *Any(within);
    last_.push_back(form.name() + '.' + control.name());
    switch (control.kind()) {
      case ControlKind::kTextBox:
        if (const Text text = AnyText(); Sometimes(2)) {
          static_cast<TextBox&>(control).UserEdit(text, static_cast<int>(text.size()), 0);
        } else {
          control.UserFocus();
        }
        break;
      case ControlKind::kListBox: UseList(static_cast<ListBox&>(control)); break;
      case ControlKind::kComboBox: {
        auto& combo = static_cast<ComboBox&>(control);
        if (combo.Editable && Sometimes(2)) {
          combo.UserEdit(AnyText());
        } else if (combo.ListCount() > 0) {
          combo.UserSelectRow(Below(combo.ListCount()));
        }
        break;
      }
      case ControlKind::kHScrollBar:
        static_cast<HScrollBar&>(control).UserScroll(Below(800) - 200);
        break;
      case ControlKind::kTabStrip: {
        auto& tabs = static_cast<TabStrip&>(control);
        if (tabs.PartCount() > 0) tabs.UserSelectTab(1 + Below(tabs.PartCount()));
        break;
      }
      default: control.UserClick(); break;
    }
  }

  void UseList(ListBox& list) {
    const int rows = list.ListCount();
    if (rows == 0) return;
    switch (Below(4)) {
      case 0: list.UserSelectRow(Below(rows)); break;
      case 1:
        if (list.CheckBoxes) list.UserCheck(Below(rows));
        break;
      case 2: {
        if (!list.MultiSelect) break;
        std::vector<int> chosen;
        for (int row = 0; row < rows; ++row) {
          if (Sometimes(3)) chosen.push_back(row);
        }
        list.UserSelectRows(chosen, chosen.empty() ? -1 : chosen.back());
        break;
      }
      default:
        if (list.MultiSelect) break;
        list.UserMouseDown(Below(rows + 1) - 1);
        for (int moves = Below(5); moves > 0; --moves) list.UserMouseMove(Below(rows + 1) - 1);
        list.UserMouseUp();
        break;
    }
  }

  std::string Choose() {
    SuiteWorld& world = *world_;
    frmMain& main = world.main();
    MemoryDesktop& desktop = world.desktop;
    switch (Below(13)) {
      case 0:
      case 1: {
        const auto x = static_cast<float>(Below(12000) - 500);
        const auto y = static_cast<float>(Below(8000) - 500);
        desktop.Event([&] { main.UserMouseMove(0, 0, x, y); });
        return "move";
      }
      case 2: {
        const int button = 1 + Below(2);
        const auto x = static_cast<float>(Below(9000));
        const auto y = static_cast<float>(Below(6000));
        desktop.Event([&] { main.UserMouseDown(button, x, y); });
        if (Sometimes(8)) return "half-click";
        desktop.Event([&] { main.UserMouseUp(button, x + static_cast<float>(Below(50)), y); });
        return "click";
      }
      case 3:
      case 4: {
        std::vector<Menu*> entries;
        for (Control* control : main.controls()) {
          if (control->kind() != ControlKind::kMenu) continue;
          auto* const entry = static_cast<Menu*>(control);
          const bool leaves = entry->name() == "mnuProjectExit" && !Sometimes(20);
          if (entry->Reachable() && entry->Click && !leaves) entries.push_back(entry);
        }
        Menu* const entry = Any(entries);
        desktop.Event([&] { entry->UserClick(); });
        return entry->name();
      }
      case 5: {
        static constexpr std::u16string_view kKeys = u"SETGUIsetgui\x1B\r xQ";
        const bool word = Sometimes(10);
        const int count = word ? 6 : 1;
        for (int i = 0; i < count; ++i) {
          const char16_t key =
              word ? kKeys[static_cast<std::size_t>(i)]
                   : kKeys[static_cast<std::size_t>(Below(static_cast<int>(kKeys.size())))];
          desktop.Event([&] { main.UserKey(key); });
        }
        return word ? "hidden-word" : "key";
      }
      case 6: {
        Shortcut keys{Sometimes(2) ? 0x70 + Below(12) : 'A' + Below(26), Sometimes(2),
                      Sometimes(2)};
        desktop.Event([&] { main.UserShortcut(keys); });
        return "shortcut";
      }
      case 7: {
        static constexpr std::uint32_t kMessages[] = {5, 6, 0x7F, 0xC001, 0xC002, 0xC003, 0xC004};
        static constexpr std::intptr_t kMouse[] = {0x200, 0x201, 0x202, 0x203, 0x205, 0x203};
        world.tray.choice = Below(20);
        desktop.Event([&] {
          world.hooks.Send(main.hWnd(), Any(kMessages), static_cast<std::uintptr_t>(Below(3)),
                           Any(kMouse));
        });
        return "message";
      }
      case 8: {
        const Text command = (Sometimes(3) ? u"prj " : u"PRJ ") + AnyText();
        desktop.Event([&] { main.UserExecute(command); });
        return "command";
      }
      case 9: desktop.Advance(Below(400)); return "wait";
      case 12:
        // Runs in the next folder search.
        desktop.posted.push_back([this] { LeavesHere("search", 10); });
        desktop.Event([&] { main.mnuProjectClean(); });
        return "clean";
      case 10: {
        desktop.cursor = {Below(1024), Below(768)};
        desktop.foreground = Sometimes(3) ? nullptr : &main;
        return "cursor";
      }
      default: {
        const bool shown = Sometimes(2);
        desktop.Event(
            [&] { main.SetState(shown ? WindowState::kNormal : WindowState::kMinimised); });
        if (shown) desktop.Event([&] { main.RestoreWindow(); });
        return shown ? "restore" : "minimise";
      }
    }
  }

  std::mt19937 random_;
  std::unique_ptr<SuiteWorld> world_;
  std::vector<std::string> last_;
  std::size_t dialogs_ = 0;
  int depth_ = 0;
  int exits_ = 0;
  int exitsInside_ = 0;
};

}  // namespace

class AnHour : public testing::TestWithParam<std::uint32_t> {};

// Each user performs 10,000 actions, more than a fast one in an hour.
TEST_P(AnHour, OfRandomActionsLeavesTheProgramSound) {
  RandomUser user(GetParam());
  for (int act = 0; act < 10000 && !testing::Test::HasFailure(); ++act) user.Act();
  EXPECT_GT(user.dialogs(), 20u);
  EXPECT_GT(user.exitsInside(), 20);
}

INSTANTIATE_TEST_SUITE_P(Users, AnHour, testing::Values(1u, 20061u, 77777u, 4000000007u));

}  // namespace marl
