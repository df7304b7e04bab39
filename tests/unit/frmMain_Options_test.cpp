// The options from the main form: what is read, in which order, and what OK stores and applies.

#include <gtest/gtest.h>

#include "appearance/frmUI.h"
#include "network/frmLanSettings.h"
#include "settings/SegmentationRules.h"
#include "settings/frmOptions.h"
#include "settings/frmSegmentation.h"
#include "support/Numbers.h"
#include "tests/unit/StoredValues.h"
#include "tests/unit/SuiteWorld.h"
#include "tests/unit/WatchedRegistry.h"

namespace marl {

namespace {

const NarrowText kBenchKey = "Software\\Oru\\Oru Bench\\Settings";
const NarrowText kMarlKey = "Software\\Oru\\Marl";
const NarrowText kSegmentList = "Software\\Oru\\Marl\\HiddenSegments";
const NarrowText kEntryKey = "Suite.Rtf\\shell\\Translate with Marl\\command";
constexpr TextView kSegmentation = u"Marl.SegmentationComponent";

using Boxes = std::array<int, 9>;

class MainOptions : public testing::Test {
 protected:
  // Start-up, which reads settings too, is over.
  void Start() {
    world.Start();
    world.settings.writes.clear();
    world.shell.started.clear();
  }
  frmMain& main() { return world.main(); }
  MemoryRegistryStore& registry() { return world.registry; }

  /// Chooses the entry and lets `user` work in the dialog.
  template <typename User>
  void Open(User user) {
    if (!world.application) Start();
    world.desktop.whenModal["frmOptions"] = [&](Form& form) {
      user(static_cast<frmOptions&>(form));
    };
    world.desktop.Event([&] { main().mnuToolsOptions(); });
  }
  Boxes Shown() {
    Boxes boxes = {};
    Open([&](frmOptions& form) {
      for (std::size_t i = 0; i < 9; ++i) boxes[i] = form.chkOptions[i].Value();
      form.cmdCancel.UserClick();
    });
    return boxes;
  }
  /// Sets the boxes and closes with OK.
  void Choose(const Boxes& boxes) {
    Open([&](frmOptions& form) {
      for (std::size_t i = 0; i < 9; ++i) {
        if (form.chkOptions[i].Value() != boxes[i]) form.chkOptions[i].UserClick();
      }
      form.cmdOK.UserClick();
    });
  }
  void OpenAndAccept() {
    Open([](frmOptions& form) { form.cmdOK.UserClick(); });
  }

  void PutNumber(const NarrowText& key, const NarrowText& name, std::int32_t value) {
    registry().Plant(kCurrentUser, key, name, kRegDword, DwordBytes(value));
  }
  void PutEntry() {
    registry().Plant(kClassesRoot, ".rtf", "", kRegSz, NarrowText("Suite.Rtf\0", 10));
    registry().Plant(kClassesRoot, kEntryKey, "", kRegSz, NarrowText("x\0", 2));
  }
  std::optional<Stored> Value(const NarrowText& key, const NarrowText& name) {
    const StoredValues values = ValuesOf(registry(), kCurrentUser, key);
    const auto found = values.find(name);
    if (found == values.end()) return {};
    return found->second;
  }
  std::vector<MemorySettingsStore::Write> WizardSaved(TextView text) {
    return {{u"Marl", u"Settings", u"Wizard", Text(text)}};
  }
  Menu& Entry(const std::string& name, int index) {
    for (Control* control : main().controls()) {
      if (control->name() == name && control->index() == index) return static_cast<Menu&>(*control);
    }
    throw std::logic_error("no " + name);
  }
  int Tips() {
    int tips = 0;
    for (const auto& tip : main().TooltipObjects) tips += tip->Style() != -1 ? 1 : 0;
    return tips;
  }

  SuiteWorld world;
};

}  // namespace

TEST_F(MainOptions, MenuEntryAndItsShortcutOpenTheDialog) {
  Start();
  world.desktop.whenAnyModal = [](Form& form) { form.UserClose(); };
  Entry("mnuToolsOptions", -1).UserClick();
  EXPECT_TRUE(main().UserShortcut({kKeyF6, false, true}));
  EXPECT_EQ(world.desktop.modal, (std::vector<std::string>{"frmOptions", "frmOptions"}));
}

TEST_F(MainOptions, FreshUserSeesBoxes7And8AndTheSwitchboardsOwnChecked) {
  EXPECT_EQ(Shown(), (Boxes{1, 0, 0, 0, 1, 0, 0, 1, 1}));
}

TEST_F(MainOptions, StoredValuesOppositeToTheDefaultsAreShown) {
  world.PutSetting(u"Tooltips", u"False");
  world.PutSetting(u"Tools", u"True");
  world.PutSetting(u"Wizard", u"N");
  PutNumber(kBenchKey, "UseAltWordCounts", 1);
  PutNumber(kBenchKey, "HideNumberSegs", 1);
  PutNumber(kMarlKey, "XPlacement", 0);
  PutNumber(kMarlKey, "ShowBullets", 3);
  PutEntry();
  EXPECT_EQ(Shown(), (Boxes{0, 1, 1, 1, 0, 1, 1, 0, 0}));
}

TEST_F(MainOptions, AnyNumberButZeroChecksTheBoxesOfTheBench) {
  for (const std::int32_t number : {-1, 2, 256, 0x7FFFFFFF}) {
    PutNumber(kBenchKey, "UseAltWordCounts", number);
    PutNumber(kBenchKey, "HideNumberSegs", number);
    PutNumber(kMarlKey, "XPlacement", number);
    const Boxes boxes = Shown();
    EXPECT_EQ(boxes[2], 1);
    EXPECT_EQ(boxes[5], 1);
    EXPECT_EQ(boxes[6], 0) << "checked for 0 alone";
  }
}

TEST_F(MainOptions, BitsOfShowBulletsAreTwoBoxes) {
  const struct {
    std::int32_t stored;
    int numbers, bullets;
  } rows[] = {{0, 1, 1}, {1, 0, 1}, {2, 1, 0}, {3, 0, 0}, {4, 1, 1}, {-1, 0, 0}, {-4, 1, 1}};
  for (const auto& row : rows) {
    PutNumber(kMarlKey, "ShowBullets", row.stored);
    const Boxes boxes = Shown();
    EXPECT_EQ(boxes[7], row.numbers) << row.stored;
    EXPECT_EQ(boxes[8], row.bullets) << row.stored;
  }
}

TEST_F(MainOptions, ShowBulletsIsStoredFromTheUncheckedBoxes) {
  const struct {
    int numbers, bullets;
    std::int32_t stored;
  } rows[] = {{1, 1, 0}, {0, 1, 1}, {1, 0, 2}, {0, 0, 3}};
  for (const auto& row : rows) {
    Choose({1, 0, 0, 0, 1, 0, 0, row.numbers, row.bullets});
    EXPECT_EQ(Value(kMarlKey, "ShowBullets"), Dword(row.stored));
  }
}

TEST_F(MainOptions, OtherBitsOfShowBulletsAreLostOnOk) {
  PutNumber(kMarlKey, "ShowBullets", 0x7FFFFFFE);
  OpenAndAccept();
  EXPECT_EQ(Value(kMarlKey, "ShowBullets"), Dword(2));
}

TEST_F(MainOptions, OkStoresEveryBoxBothWays) {
  Choose({1, 1, 1, 0, 1, 1, 1, 1, 1});
  EXPECT_EQ(ValuesOf(registry(), kCurrentUser, kBenchKey),
            (StoredValues{{"UseAltWordCounts", Dword(1)}, {"HideNumberSegs", Dword(1)}}));
  EXPECT_EQ(Value(kMarlKey, "XPlacement"), Dword(0));
  EXPECT_EQ(Value(kMarlKey, "ShowBullets"), Dword(0));
  EXPECT_TRUE(main().TooltipsEnabled);
  EXPECT_TRUE(main().ToolsMenuVisible);
  EXPECT_EQ(world.settings.writes, WizardSaved(u"Y"));

  Choose({0, 0, 0, 0, 0, 0, 0, 0, 0});
  EXPECT_EQ(ValuesOf(registry(), kCurrentUser, kBenchKey),
            (StoredValues{{"UseAltWordCounts", Dword(0)}, {"HideNumberSegs", Dword(0)}}));
  EXPECT_EQ(Value(kMarlKey, "XPlacement"), Dword(1));
  EXPECT_EQ(Value(kMarlKey, "ShowBullets"), Dword(3));
  EXPECT_FALSE(main().TooltipsEnabled);
  EXPECT_FALSE(main().ToolsMenuVisible);
  EXPECT_EQ(world.Setting(u"Wizard"), u"N");
}

TEST_F(MainOptions, OkWithNoChangeRewritesTheFourValuesAndTheListAndNoContextMenu) {
  registry().Plant(kCurrentUser, kSegmentList, "RegEx1", kRegSz, NarrowText("a\0", 2));
  registry().Plant(kCurrentUser, kSegmentList, "Other", kRegSz, NarrowText("a\0", 2));
  OpenAndAccept();
  EXPECT_EQ(ValuesOf(registry(), kCurrentUser, kBenchKey),
            (StoredValues{{"UseAltWordCounts", Dword(0)}, {"HideNumberSegs", Dword(0)}}));
  EXPECT_EQ(Value(kMarlKey, "XPlacement"), Dword(1));
  EXPECT_EQ(Value(kMarlKey, "ShowBullets"), Dword(0));
  EXPECT_EQ(ValuesOf(registry(), kCurrentUser, kSegmentList), (StoredValues{{"RegEx1", Sz("a")}}));
  EXPECT_TRUE(world.shell.ran.empty());
  EXPECT_TRUE(world.Tools().empty());
}

TEST_F(MainOptions, CancelAndTheCloseBoxStoreAndApplyNothing) {
  Start();
  const auto toggleAll = [](frmOptions& form) {
    for (CheckBox& box : form.chkOptions) box.UserClick();
    form.cmdAddRegEx.UserClick();
  };
  Open([&](frmOptions& form) {
    toggleAll(form);
    form.cmdCancel.UserClick();
  });
  Open([&](frmOptions& form) {
    toggleAll(form);
    form.UserClose();
  });
  EXPECT_TRUE(ValuesOf(registry(), kCurrentUser, kBenchKey).empty());
  EXPECT_FALSE(HasKey(registry(), kCurrentUser, kSegmentList));
  EXPECT_EQ(Value(kMarlKey, "XPlacement"), std::nullopt);
  EXPECT_TRUE(world.settings.writes.empty());
  EXPECT_TRUE(world.shell.ran.empty());
  EXPECT_TRUE(main().TooltipsEnabled);
  EXPECT_FALSE(main().ToolsMenuVisible);
}

TEST_F(MainOptions, DialogIsGoneAfterwards) {
  OpenAndAccept();
  EXPECT_EQ(world.desktop.forms(), std::vector<Form*>{&main()});
  Open([](frmOptions& form) { form.UserClose(); });
  EXPECT_EQ(world.desktop.forms(), std::vector<Form*>{&main()});
}

TEST_F(MainOptions, NothingIsWrittenBeforeTheDialogIsClosed) {
  Open([&](frmOptions& form) {
    for (CheckBox& box : form.chkOptions) box.UserClick();
    EXPECT_TRUE(ValuesOf(registry(), kCurrentUser, kBenchKey).empty());
    EXPECT_TRUE(world.settings.writes.empty());
    EXPECT_TRUE(main().TooltipsEnabled);
  });
}

// The context menu.

TEST_F(MainOptions, ContextMenuProgramIsStartedOnlyOnAChange) {
  Choose({1, 0, 0, 1, 1, 0, 0, 1, 1});
  using Ran = std::vector<std::pair<Text, int>>;
  EXPECT_EQ(world.shell.ran, (Ran{{u"C:\\Suite\\Q17Shell.exe /R", kShowMinimised}}));
  world.shell.ran.clear();
  PutEntry();
  Choose({1, 0, 0, 1, 1, 0, 0, 1, 1});
  EXPECT_EQ(world.shell.ran, Ran{}) << "unchanged";
  Choose({1, 0, 0, 0, 1, 0, 0, 1, 1});
  EXPECT_EQ(world.shell.ran, (Ran{{u"C:\\Suite\\Q17Shell.exe /U", kShowMinimised}}));
}

TEST_F(MainOptions, ContextMenuProgramIsStartedByItsFullPath) {
  world.Install(u"C:\\Program Files\\The Suite");
  world.icons.Put(u"C:\\Program Files\\The Suite\\q17icl.oru", 117, 1, 2);
  world.files.Put(u"C:\\Program", "");
  world.files.Put(u"C:\\Program.exe", "");
  Choose({1, 0, 0, 1, 1, 0, 0, 1, 1});
  ASSERT_EQ(world.shell.ran.size(), 1u);
  EXPECT_EQ(world.shell.ran[0].first, u"\"C:\\Program Files\\The Suite\\Q17Shell.exe\" /R");
  EXPECT_EQ(world.shell.programs, std::vector<Text>{u"C:\\Program Files\\The Suite\\Q17Shell.exe"});
}

TEST_F(MainOptions, ContextMenuProgramThatNeedsElevationIsStartedByTheShell) {
  world.shell.runStatus = kElevationRequired;
  Choose({1, 0, 0, 1, 1, 0, 0, 1, 1});
  ASSERT_FALSE(world.shell.started.empty());
  EXPECT_EQ(world.shell.started.back(),
            (MemoryShell::Started{ShellOwner::kMainForm, u"", u"C:\\Suite\\Q17Shell.exe", u"/R",
                                  u"", kShowMinimised}));
  EXPECT_FALSE(world.desktop.ended());
}

TEST_F(MainOptions, PreviousStateIsTheOneBeforeTheDialogOpened) {
  Open([&](frmOptions& form) {
    PutEntry();
    form.cmdOK.UserClick();
  });
  EXPECT_TRUE(world.shell.ran.empty());
}

TEST_F(MainOptions, EntryOfAnotherLanguageReadsAsAbsentAndIsAddedAgain) {
  PutEntry();
  world.resource.texts[IDS_CONTEXT_MENU_ENTRY] = u"Mit Marl \u00FCbersetzen";
  EXPECT_EQ(Shown()[3], 0);
  Choose({1, 0, 0, 1, 1, 0, 0, 1, 1});
  ASSERT_EQ(world.shell.ran.size(), 1u);
  EXPECT_TRUE(world.shell.ran[0].first.ends_with(u"/R"));
}

TEST_F(MainOptions, ProgramAtTheRootOfADriveGetsNoSecondSeparator) {
  world.Install(u"D:\\");
  world.icons.Put(u"D:\\q17icl.oru", 117, 1, 2);
  Choose({1, 0, 0, 1, 1, 0, 0, 1, 1});
  ASSERT_EQ(world.shell.ran.size(), 1u);
  EXPECT_EQ(world.shell.ran[0].first, u"D:\\Q17Shell.exe /R");
}

TEST_F(MainOptions, ContextMenuProgramThatDoesNotStartEndsTheProgram) {
  world.shell.runStatus = kAccessDenied;
  Choose({0, 0, 1, 1, 0, 0, 0, 1, 1});
  EXPECT_EQ(world.Messages(), std::vector<Text>{u"File not found"});
  EXPECT_TRUE(world.desktop.ended());
  EXPECT_EQ(Value(kBenchKey, "UseAltWordCounts"), Dword(1)) << "written before";
  EXPECT_TRUE(world.settings.writes.empty()) << "the wizard comes after it";
}

// Wizard.

TEST_F(MainOptions, WizardOtherThanYShowsUncheckedAndIsRewrittenAsN) {
  for (const TextView text : {u"N", u"y", u"Yes", u" Y", u"", u"1", u"True"}) {
    Start();
    world.PutSetting(u"Wizard", text);
    world.settings.writes.clear();
    EXPECT_EQ(Shown()[4], 0);
    OpenAndAccept();
    EXPECT_EQ(world.settings.writes, WizardSaved(u"N"));
  }
}

TEST_F(MainOptions, WizardIsReadWhenTheDialogOpens) {
  Start();
  EXPECT_EQ(Shown()[4], 1);
  world.PutSetting(u"Wizard", u"N");
  EXPECT_EQ(Shown()[4], 0);
}

// What takes effect at once.

TEST_F(MainOptions, ToolsShowsAndHidesTheProgramsAtOnce) {
  Start();
  for (const int shown : {1, 0, 1}) {
    Choose({1, shown, 0, 0, 1, 0, 0, 1, 1});
    for (int index = 0; index < 5; ++index) {
      EXPECT_EQ(Entry("mnuToolsApp", index).Visible(), shown == 1) << index;
    }
    EXPECT_EQ(main().UserShortcut({kKeyF1, false, true}), shown == 1);
  }
}

TEST_F(MainOptions, TooltipsComeAndGoAtOnce) {
  Start();
  const int all = Tips();
  EXPECT_GT(all, 0);
  Choose({0, 0, 0, 0, 1, 0, 0, 1, 1});
  EXPECT_EQ(Tips(), 0);
  Choose({1, 0, 0, 0, 1, 0, 0, 1, 1});
  EXPECT_EQ(Tips(), all);
}

TEST_F(MainOptions, FlagsAreSavedWhenTheMainFormUnloads) {
  Choose({0, 1, 0, 0, 1, 0, 0, 1, 1});
  main().Unload();
  EXPECT_EQ(world.Setting(u"Tooltips"), u"False");
  EXPECT_EQ(world.Setting(u"Tools"), u"True");
}

// Order and kinds.

namespace {

/// The main form's handler with a registry that records calls.
class OptionsOrder : public MainOptions {
 protected:
  class Recorder : public WatchedRegistry {
   public:
    std::vector<NarrowText> log;
    Status OpenKey(KeyHandle key, const NarrowText& path, std::uint32_t access,
                   OpenKeyHandle& out) override {
      path_ = path;
      return WatchedRegistry::OpenKey(key, path, access, out);
    }
    Status QueryValue(KeyHandle key, const NarrowText& name, std::uint32_t& kind,
                      std::span<char> buffer, std::uint32_t& size) override {
      log.push_back("read " + path_ + '\\' + name);
      return WatchedRegistry::QueryValue(key, name, kind, buffer, size);
    }
    Status SetValue(KeyHandle key, const NarrowText& name, std::uint32_t kind,
                    const NarrowText& data) override {
      log.push_back("write " + name);
      return WatchedRegistry::SetValue(key, name, kind, data);
    }
    Status DeleteKey(KeyHandle key, const NarrowText& path) override {
      log.push_back("delete " + path);
      return WatchedRegistry::DeleteKey(key, path);
    }

   private:
    NarrowText path_;
  };

  OptionsOrder() {
    world.desktop.whenModal["frmOptions"] = [this](Form& form) {
      recorder.log.push_back("shown");
      static_cast<frmOptions&>(form).cmdOK.UserClick();
    };
  }
  void Run() {
    world.otherRegistry = &recorder;
    world.Start();
    recorder.log.clear();
    recorder.written.clear();
    world.desktop.Event([&] { main().mnuToolsOptions(); });
  }

  Recorder recorder;
};

}  // namespace

TEST_F(OptionsOrder, ReadsThenShowsThenStoresTheListFirst) {
  recorder.Plant(kCurrentUser, kSegmentList, "RegEx1", kRegSz, NarrowText("a\0", 2));
  Run();
  EXPECT_EQ(
      recorder.log,
      (std::vector<NarrowText>{
          "read .rtf\\", "read .rtf\\shell\\Translate with Marl\\command\\",
          "read " + kBenchKey + "\\UseAltWordCounts", "read " + kBenchKey + "\\HideNumberSegs",
          "read " + kMarlKey + "\\XPlacement", "read " + kMarlKey + "\\ShowBullets",
          "read " + kSegmentList + "\\RegEx1", "read " + kSegmentList + "\\RegEx2", "shown",
          "delete " + kSegmentList, "write RegEx1", "write UseAltWordCounts",
          "write HideNumberSegs", "write XPlacement", "write ShowBullets"}));
}

// The kind of the last value read is the kind that is written.

namespace {

struct KindRow {
  const char* name;
  std::uint32_t kind;  ///< of `ShowBullets` as it was stored
  NarrowText stored;
  std::uint32_t written;  ///< kind of all four values after OK; kRegNone: nothing is written
};

class OptionsKind : public MainOptions, public testing::WithParamInterface<KindRow> {};

}  // namespace

TEST_P(OptionsKind, OfShowBulletsIsTheKindOfAllFourWrites) {
  const KindRow& row = GetParam();
  registry().Plant(kCurrentUser, kMarlKey, "ShowBullets", row.kind, row.stored);
  Choose({1, 0, 1, 0, 1, 0, 0, 0, 1});
  const StoredValues bench = ValuesOf(registry(), kCurrentUser, kBenchKey);
  if (row.written == kRegDword) {
    EXPECT_EQ(bench, (StoredValues{{"UseAltWordCounts", Dword(1)}, {"HideNumberSegs", Dword(0)}}));
    EXPECT_EQ(Value(kMarlKey, "XPlacement"), Dword(1));
    EXPECT_EQ(Value(kMarlKey, "ShowBullets"), Dword(1));
  } else {
    EXPECT_EQ(bench, (StoredValues{{"UseAltWordCounts", Sz("1")}, {"HideNumberSegs", Sz("0")}}));
    EXPECT_EQ(Value(kMarlKey, "XPlacement"), Sz("1"));
    EXPECT_EQ(Value(kMarlKey, "ShowBullets"), Sz("1"));
  }
  EXPECT_TRUE(world.desktop.messages.empty());
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, OptionsKind,
    testing::Values(KindRow{"Dword", kRegDword, DwordBytes(2), kRegDword},
                    KindRow{"BigEndian", kRegDwordBigEndian, NarrowText("\0\0\0\2", 4), kRegDword},
                    KindRow{"Text", kRegSz, NarrowText("2\0", 2), kRegSz},
                    KindRow{"ExpandableText", kRegExpandSz, NarrowText("2\0", 2), kRegSz}),
    [](const auto& row) { return row.param.name; });

TEST_F(MainOptions, MultiStringThatIsANumberIsReadAndNothingIsWrittenByItsKind) {
  registry().Plant(kCurrentUser, kMarlKey, "ShowBullets", kRegMultiSz, NarrowText("3\0", 2));
  PutNumber(kBenchKey, "UseAltWordCounts", 0);
  Choose({1, 0, 1, 0, 1, 1, 1, 1, 1});
  EXPECT_EQ(Value(kBenchKey, "UseAltWordCounts"), Dword(0));
  EXPECT_EQ(Value(kBenchKey, "HideNumberSegs"), std::nullopt);
  EXPECT_EQ(Value(kMarlKey, "XPlacement"), std::nullopt);
  EXPECT_EQ(Value(kMarlKey, "ShowBullets"), (Stored{kRegMultiSz, NarrowText("3\0", 2)}));
  EXPECT_EQ(world.Setting(u"Wizard"), u"Y");
}

TEST_F(MainOptions, KindOfAnEarlierReadCountsWhereTheLaterValuesAreMissing) {
  registry().Plant(kCurrentUser, kBenchKey, "UseAltWordCounts", kRegSz, NarrowText("1\0", 2));
  OpenAndAccept();
  EXPECT_EQ(ValuesOf(registry(), kCurrentUser, kBenchKey),
            (StoredValues{{"UseAltWordCounts", Sz("1")}, {"HideNumberSegs", Sz("0")}}));
  EXPECT_EQ(Value(kMarlKey, "XPlacement"), Sz("1"));
  EXPECT_EQ(Value(kMarlKey, "ShowBullets"), Sz("0"));
}

TEST_F(MainOptions, LaterReadOverridesTheKindOfAnEarlierOne) {
  registry().Plant(kCurrentUser, kBenchKey, "UseAltWordCounts", kRegSz, NarrowText("1\0", 2));
  PutNumber(kMarlKey, "ShowBullets", 0);
  OpenAndAccept();
  EXPECT_EQ(Value(kBenchKey, "UseAltWordCounts"), Dword(1));
}

// Each value that is no number, under each of the four names.

namespace {

struct ForeignRow {
  const char* name;
  std::uint32_t kind;
  NarrowText data;
  const char16_t* message;  ///< the failure that ends the program; null if it goes on
};

class OptionsForeign : public MainOptions, public testing::WithParamInterface<ForeignRow> {};

}  // namespace

TEST_P(OptionsForeign, ValueIsConvertedAsTheRuntimeDoes) {
  const std::pair<NarrowText, NarrowText> places[] = {{kBenchKey, "UseAltWordCounts"},
                                                      {kBenchKey, "HideNumberSegs"},
                                                      {kMarlKey, "XPlacement"},
                                                      {kMarlKey, "ShowBullets"}};
  for (const auto& [key, name] : places) {
    SuiteWorld fresh;
    fresh.Start();
    fresh.registry.Plant(kCurrentUser, key, name, GetParam().kind, GetParam().data);
    fresh.desktop.whenAnyModal = [](Form& form) { form.UserClose(); };
    fresh.desktop.Event([&] { fresh.main().mnuToolsOptions(); });
    if (GetParam().message) {
      EXPECT_EQ(fresh.Messages(), std::vector<Text>{GetParam().message}) << name;
      EXPECT_TRUE(fresh.desktop.ended()) << name;
    } else {
      EXPECT_TRUE(fresh.Messages().empty()) << name;
      EXPECT_EQ(fresh.desktop.modal, std::vector<std::string>{"frmOptions"}) << name;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(
    Values, OptionsForeign,
    testing::Values(ForeignRow{"Number", kRegSz, NarrowText("1\0", 2), nullptr},
                    ForeignRow{"EmptyText", kRegSz, NarrowText("\0", 1), u"Type mismatch"},
                    ForeignRow{"TextOfNoBytes", kRegSz, "", nullptr},
                    ForeignRow{"Words", kRegSz, NarrowText("yes\0", 4), u"Type mismatch"},
                    ForeignRow{"TooLarge", kRegSz, NarrowText("3000000000\0", 11), u"Overflow"},
                    ForeignRow{"Bytes", kRegBinary, DwordBytes(1), u"Type mismatch"},
                    ForeignRow{"NoBytes", kRegBinary, "", u"Type mismatch"},
                    ForeignRow{"Quadword", 11, NarrowText("12345678"), u"Type mismatch"},
                    ForeignRow{"ShortNumber", kRegDword, "\1", nullptr},
                    ForeignRow{"LongNumber", kRegDword, NarrowText("12345"), nullptr}),
    [](const auto& row) { return row.param.name; });

TEST_F(MainOptions, TextIsReadAsTheUserWritesNumbers) {
  Start();
  registry().Plant(kCurrentUser, kMarlKey, "ShowBullets", kRegSz, NarrowText("1,0\0", 4));
  Boxes boxes = Shown();
  EXPECT_EQ(boxes[7], 1) << "ten";
  EXPECT_EQ(boxes[8], 0);
  world.locales.threadLocale = 0x407;
  boxes = Shown();
  EXPECT_EQ(boxes[7], 0) << "one";
  EXPECT_EQ(boxes[8], 1);
}

TEST_F(MainOptions, RegistryThatRefusesIsSilentAndTheRestIsApplied) {
  class Refusing : public MemoryRegistryStore {
   public:
    bool refuse = false;
    Status SetValue(KeyHandle key, const NarrowText& name, std::uint32_t kind,
                    const NarrowText& data) override {
      return refuse ? kAccessDenied : MemoryRegistryStore::SetValue(key, name, kind, data);
    }
  } refusing;
  world.otherRegistry = &refusing;
  world.Start();
  refusing.refuse = true;
  world.desktop.whenModal["frmOptions"] = [](Form& form) {
    auto& options = static_cast<frmOptions&>(form);
    options.chkOptions[0].UserClick();
    options.chkOptions[4].UserClick();
    options.cmdAddRegEx.UserClick();
    options.cmdOK.UserClick();
  };
  world.desktop.Event([&] { main().mnuToolsOptions(); });
  EXPECT_TRUE(world.desktop.messages.empty());
  EXPECT_FALSE(main().TooltipsEnabled);
  EXPECT_EQ(world.Setting(u"Wizard"), u"N");
}

// The dialogs of the buttons take effect at once.

TEST_F(MainOptions, DisplaySettingsApplyAtOnceAndStayWhenTheOptionsAreCancelled) {
  Start();
  const int before = main().Skin.Angle;
  world.desktop.whenModal["frmUI"] = [](Form& form) {
    auto& display = static_cast<frmUI&>(form);
    display.hsbAngle.UserScroll(display.hsbAngle.Value() == 17 ? 18 : 17);
    display.cmdDismiss[0].UserClick();
  };
  Open([&](frmOptions& form) {
    form.cmdDisplay.UserClick();
    EXPECT_NE(main().Skin.Angle, before);
    EXPECT_TRUE(form.Visible());
    form.cmdCancel.UserClick();
  });
  EXPECT_EQ(world.desktop.modal, (std::vector<std::string>{"frmOptions", "frmUI"}));
  EXPECT_NE(main().Skin.Angle, before);
  EXPECT_EQ(Value("Software\\Oru\\Marl\\GUI", "Angle")->kind, kRegDword);
  EXPECT_EQ(world.desktop.forms(), std::vector<Form*>{&main()});
}

TEST_F(MainOptions, CancelledDisplaySettingsChangeNothing) {
  Start();
  const int before = main().Skin.Angle;
  world.desktop.whenModal["frmUI"] = [](Form& form) {
    auto& display = static_cast<frmUI&>(form);
    display.hsbAngle.UserScroll(display.hsbAngle.Value() == 17 ? 18 : 17);
    display.cmdDismiss[1].UserClick();
  };
  Open([](frmOptions& form) { form.UserKeyDown(kKeyF4, 0); });
  EXPECT_EQ(world.desktop.modal, (std::vector<std::string>{"frmOptions", "frmUI"}));
  EXPECT_EQ(main().Skin.Angle, before);
  EXPECT_FALSE(HasKey(registry(), kCurrentUser, "Software\\Oru\\Marl\\GUI"));
}

TEST_F(MainOptions, LanSettingsKeepWhatTheyStoredWhenTheOptionsAreCancelled) {
  world.desktop.whenModal["frmLanSettings"] = [](Form& form) {
    auto& lan = static_cast<frmLanSettings&>(form);
    lan.optOverride.UserClick();
    lan.cmdOK.UserClick();
  };
  Open([](frmOptions& form) {
    form.cmdLanSettings.UserClick();
    EXPECT_TRUE(form.Visible());
    form.cmdCancel.UserClick();
  });
  EXPECT_EQ(world.desktop.modal, (std::vector<std::string>{"frmOptions", "frmLanSettings"}));
  EXPECT_TRUE(HasKey(registry(), kCurrentUser, "Software\\Oru\\Marl\\Proxy"));
}

TEST_F(MainOptions, BuiltInSegmentationRulesKeepWhatTheyStoredWhenTheOptionsAreCancelled) {
  world.desktop.whenModal["frmSegmentation"] = [](Form& form) {
    auto& rules = static_cast<frmSegmentation&>(form);
    rules.cmdAddDontSplit.UserClick();
    rules.txtDontSplit.UserEdit(u"Mr.", 3, 0);
    rules.cmdOK.UserClick();
  };
  Open([](frmOptions& form) {
    form.cmdSegmentation.UserClick();
    form.cmdCancel.UserClick();
  });
  EXPECT_EQ(SegmentationRules::Load(registry()), (SegmentationRules{{u"Mr."}, {}}));
}

TEST_F(MainOptions, SegmentationComponentIsCalledOnceWithoutArgumentsAndReleased) {
  world.components.registered[Text(kSegmentation)] = [&](const Text&, auto&, auto& result, Text&) {
    EXPECT_EQ(world.components.live, 1);
    result = Text(u"dropped");
    return true;
  };
  Open([&](frmOptions& form) {
    for (int click = 0; click < 2; ++click) {
      form.cmdSegmentation.UserClick();
      EXPECT_EQ(world.components.live, 0) << "a new instance each time";
    }
  });
  const MemoryComponents::CallRecord call{Text(kSegmentation), u"Run", {}};
  EXPECT_EQ(world.components.calls, (std::vector<MemoryComponents::CallRecord>{call, call}));
  EXPECT_EQ(world.desktop.modal, std::vector<std::string>{"frmOptions"});
}

TEST_F(MainOptions, SegmentationComponentThatFailsEndsTheProgramWithItsText) {
  world.components.registered[Text(kSegmentation)] = [](const Text&, auto&, auto&, Text& failure) {
    failure = u"No rules today";
    return false;
  };
  Open([](frmOptions& form) { form.cmdSegmentation.UserClick(); });
  EXPECT_EQ(world.Messages(), std::vector<Text>{u"No rules today"});
  EXPECT_TRUE(world.desktop.ended());
}

TEST_F(MainOptions, SegmentationComponentThatCannotBeMadeIsAFailureToo) {
  world.components.broken[Text(kSegmentation)] = u"The module could not be found";
  Open([](frmOptions& form) { form.cmdSegmentation.UserClick(); });
  EXPECT_EQ(world.Messages(), std::vector<Text>{u"The module could not be found"});
  EXPECT_TRUE(world.desktop.ended());
}

TEST_F(MainOptions, OpensOverTheMainForm) {
  Start();
  main().Move(2400, 1500);
  Open([&](frmOptions& form) {
    EXPECT_EQ(form.Left(), CLng(2400 + (main().Width() - form.Width()) / 2.0));
    EXPECT_EQ(form.Top(), CLng(1500 + (main().Height() - form.Height()) / 2.0));
  });
}

}  // namespace marl
