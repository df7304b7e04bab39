// Other programs on the same machine: they send commands and messages of any kind, and change
// registry and files while the program runs.

#include <gtest/gtest.h>

#include <random>

#include "platform/DdeCommand.h"
#include "tests/unit/Soundness.h"

namespace marl {
namespace {

int Times(int few, int many) { return LongRun() ? many : few; }

class Neighbour {
 public:
  explicit Neighbour(std::uint32_t seed) : random_(seed) {}

  int Below(int limit) { return std::uniform_int_distribution<int>(0, limit - 1)(random_); }
  bool Sometimes(int oneIn) { return Below(oneIn) == 0; }
  std::uint32_t Bits() { return static_cast<std::uint32_t>(random_()); }
  std::string AnyBytes(int most) {
    std::string bytes;
    for (int left = Below(most + 1); left > 0; --left) bytes += static_cast<char>(Below(256));
    return bytes;
  }

  /// The data of an execute command: narrow or wide, valid or not.
  Bytes Command() {
    std::string text;
    switch (Below(6)) {
      case 0: text = "PRJ C:\\P\\job.qprx"; break;
      case 1: text = "PRJ " + AnyBytes(300); break;
      case 2: text = AnyBytes(20) + "PRJ C:\\x"; break;
      case 3: text = std::string(static_cast<std::size_t>(Below(5)), '\0') + "PRJ \0x"; break;
      case 4: text = "prj c:\\x"; break;
      default: text = AnyBytes(400); break;
    }
    if (Sometimes(2)) text += '\0';
    Bytes data;
    const bool wide = Sometimes(2);
    for (const char c : text) {
      data.push_back(static_cast<unsigned char>(c));
      if (wide) data.push_back(Sometimes(50) ? 1 : 0);
    }
    return data;
  }

  /// Changes something that the program reads.
  void Meddle(Machine& machine) {
    static constexpr const char* kKeys[] = {"Software\\Oru\\Marl\\GUI",
                                            "Software\\Oru\\Marl\\Settings",
                                            "Software\\Oru\\Marl\\ServerMRU",
                                            "Software\\Oru\\Marl\\HiddenSegments",
                                            "Software\\Oru\\Marl\\Proxy",
                                            "Software\\Oru\\Marl\\Segmentation",
                                            "Software\\Oru\\Marl",
                                            "Software\\Oru\\Oru Bench\\Settings"};
    static constexpr const char* kValues[] = {
        "Angle",    "IconsPerRow", "Font1",      "DisplayIcons", "Icons",  "TrackingServer",
        "MRU1",     "MRU2",        "RegEx1",     "RegEx2",       "Port",   "Server",
        "UseProxy", "DontSplit1",  "XPlacement", "ShowBullets",  "Color1", "BorderWidth"};
    static constexpr std::uint32_t kKinds[] = {
        kRegNone, kRegSz, kRegExpandSz, kRegBinary, kRegDword, kRegDwordBigEndian, kRegMultiSz, 11};
    const char* const key = kKeys[Below(std::size(kKeys))];
    switch (Below(5)) {
      case 0: machine.registry.DeleteKey(kCurrentUser, key); break;
      case 1:
      case 2: {
        std::string data = AnyBytes(40);
        if (Sometimes(3)) data = Sometimes(2) ? "7" : "%A%|12|1|0|0";
        if (Sometimes(10)) data.assign(70'000, 'x');
        machine.registry.Plant(kCurrentUser, key, kValues[Below(std::size(kValues))],
                               kKinds[Below(std::size(kKinds))], data);
        break;
      }
      case 3: {
        const std::vector<Text> files = machine.files.Files();
        if (files.empty()) break;
        const Text file = files[static_cast<std::size_t>(Below(static_cast<int>(files.size())))];
        if (Sometimes(2)) {
          machine.files.Erase(file);
        } else {
          machine.files.Put(file, AnyBytes(200), Sometimes(3) ? kReadOnly : kArchive);
        }
        break;
      }
      default: {
        static constexpr const char16_t* kTexts[] = {u"",     u"x", u"-1", u"99999999999",
                                                     u"True", u"2", u"N"};
        static constexpr const char16_t* kSettings[] = {u"Left", u"Tooltips", u"Tools", u"Wizard",
                                                        u"WindowState"};
        machine.settings.Put(u"Marl", u"Settings", kSettings[Below(std::size(kSettings))],
                             kTexts[Below(std::size(kTexts))]);
        break;
      }
    }
  }

 private:
  std::mt19937 random_;
};

Text TextOf(const Bytes& data) {
  if (IsWideCommand(data)) return WideCommand(data);
  Text text;
  for (const char c : NarrowCommand(data)) text += static_cast<unsigned char>(c);
  return text;
}

TEST(Neighbours, BurstOfCommandsChangesNothingButTheProject) {
  Machine machine;
  ProgramRun run(machine);
  run.Start();
  const StoredState before = machine.Stored();
  const auto started = run.shell.started.size();
  Neighbour neighbour(1);
  Text project;
  for (int i = 0; i < Times(500, 30'000); ++i) {
    const Text command = TextOf(neighbour.Command());
    bool taken = false;
    run.Act([&] { taken = run.main().UserExecute(command); });
    ASSERT_EQ(taken, command.starts_with(u"PRJ "));
    if (taken) project = command.substr(4);
    ASSERT_EQ(run.main().dlgOpen.FileName, project);
  }
  const Bytes large(1 << 20, 'P');
  const Text command = u"PRJ " + TextOf(large);
  run.Act([&] { run.main().UserExecute(command); });
  EXPECT_EQ(run.main().dlgOpen.FileName.size(), large.size());
  EXPECT_TRUE(run.up());
  EXPECT_EQ(run.shell.started.size(), started);
  EXPECT_TRUE(run.desktop.messages.empty());
  EXPECT_EQ(machine.Stored(), before);
}

TEST(Neighbours, MessagesOfAnyKindStartNothingAndStoreNothing) {
  Machine machine;
  ProgramRun run(machine);
  run.Start();
  const StoredState before = machine.Stored();
  const auto started = run.shell.started.size();
  const std::uint32_t own[] = {run.hooks.NumberOf("msgMarlMenu"),
                               run.hooks.NumberOf("TaskbarCreated"), 0, 5, 6};
  Neighbour neighbour(2);
  for (int i = 0; i < Times(5000, 100'000); ++i) {
    const std::uint32_t message =
        neighbour.Sometimes(3) ? own[neighbour.Below(5)] : neighbour.Bits() & 0xFFFF;
    const auto w =
        static_cast<std::uintptr_t>(neighbour.Sometimes(2) ? neighbour.Below(3) : neighbour.Bits());
    const auto l = static_cast<std::intptr_t>(neighbour.Sometimes(2) ? 0x200 + neighbour.Below(8)
                                                                     : neighbour.Bits());
    run.Act([&] { run.hooks.Send(run.main().hWnd(), message, w, l); });
    run.tray.shown.clear();
  }
  EXPECT_TRUE(run.up());
  EXPECT_EQ(run.tray.icons.size(), 1u);
  EXPECT_EQ(run.tray.popups, 1);
  EXPECT_EQ(run.shell.started.size(), started);
  EXPECT_TRUE(run.desktop.messages.empty());
  EXPECT_EQ(machine.Stored(), before);
}

TEST(Neighbours, ChangeOfRegistryAndFilesIsSurvived) {
  int calls = 0;
  {
    Machine machine;
    ProgramRun run(machine);
    TravelAll(run);
    calls = run.faults.calls();
  }
  int failed = 0;
  const int rounds = Times(4, 1000);
  for (int round = 0; round < rounds && !HasFailure(); ++round) {
    SCOPED_TRACE("round " + std::to_string(round));
    Machine machine;
    Neighbour neighbour(static_cast<std::uint32_t>(100 + round));
    {
      ProgramRun run(machine);
      for (int i = 0; i < 40; ++i) {
        run.faults.MeanwhileAt(1 + neighbour.Below(calls), [&] { neighbour.Meddle(machine); });
      }
      TravelAll(run);
      run.faults.End();
      EXPECT_FALSE(run.faults.endless());
      EXPECT_TRUE(run.desktop.ended());
      // A stored value that cannot be used ends the program, with the runtime's text.
      EXPECT_EQ(run.desktop.exitCode() == 0, FailureOf(run).empty());
      failed += run.desktop.exitCode();
      ExpectNothingHeld(run);
    }
    ProgramRun next(machine);
    next.Start();
    EXPECT_EQ(next.up(), FailureOf(next).empty());
    next.Leave();
    EXPECT_TRUE(next.desktop.ended());
    ExpectNothingHeld(next);
  }
  EXPECT_LT(failed, rounds) << "some days go well";
}

}  // namespace
}  // namespace marl
