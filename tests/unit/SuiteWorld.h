#pragma once

#include <string_view>

#include "tests/unit/World.h"

namespace marl {

/// The tools of the suite, spelled as they are started.
constexpr TextView kTools[] = {
    u"Q17Gauge.exe", u"Q17Pair.exe",   u"Q17Lexis.exe",  u"Q17Cadence.exe", u"Q17Batch.exe",
    u"Q17Bench.exe", u"Q17Warden.exe", u"Q17Kit.exe",    u"Q17Vault.exe",   u"Q17Renew.exe",
    u"Q17Diff.exe",  u"Q17Bridge.exe", u"Q17Cleave.exe", u"Q17Xlf.exe",     u"MarlTour.exe",
    u"RegLib.EXE",   u"Q17Shell.exe",  u"FaceMap.exe",   u"Q17Morph.exe",   u"WordRich.exe",
    u"PageTool.exe", u"FrameTool.exe"};

/// A machine with the whole suite installed, and helpers for what a user does there.
struct SuiteWorld : World {
  Text folder;

  SuiteWorld();
  ~SuiteWorld();

  /// Puts the program and all tools into a folder, and starts it from there.
  void Install(TextView where);
  void Uninstall(TextView tool) { files.Erase(folder + Text(tool)); }

  void PutSetting(TextView key, TextView value) { settings.Put(u"Marl", u"Settings", key, value); }
  Text Setting(TextView key) const {
    return settings.GetSetting(u"Marl", u"Settings", key, u"(missing)");
  }

  /// What was started, without the registrar, which every start runs first.
  std::vector<MemoryShell::Started> Tools() const {
    std::vector<MemoryShell::Started> tools;
    for (const auto& started : shell.started) {
      if (!started.file.ends_with(u"\\RegLib.EXE")) tools.push_back(started);
    }
    return tools;
  }
  /// The texts of the messages shown so far.
  std::vector<Text> Messages() const {
    std::vector<Text> texts;
    for (const auto& message : desktop.messages) texts.push_back(message.text);
    return texts;
  }
  void Type(std::u16string_view keys) {
    for (const char16_t key : keys) {
      desktop.Event([&] { main().UserKey(key); });
    }
  }
  void Click(Control& control) {
    desktop.Event([&] { control.UserClick(); });
  }
};

}  // namespace marl
