#include "tests/unit/Soundness.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

namespace marl {

namespace {

constexpr const char* kLists[] = {"key Software\\Oru\\Marl\\ServerMRU|",
                                  "key Software\\Oru\\Marl\\HiddenSegments|",
                                  "key Software\\Oru\\Marl\\Segmentation|"};

/// The beginning that all entries of a list share; empty if `place` is in none.
std::string ListOf(const std::string& place) {
  for (const char* const list : kLists) {
    if (place.starts_with(list)) return list;
  }
  return {};
}

/// The proxy's port is written as 0 before its value.
constexpr const char* kPort = "key Software\\Oru\\Marl\\Proxy|Port";
const std::string kNoPort = std::string("4:") + std::string(4, '\0');

bool IsFile(const std::string& place) { return place.starts_with("file "); }

/// The page that probes the browser: it stays if it cannot be deleted, until the next start.
bool IsProbe(const std::string& place) {
  return place.find("\\Temp\\ORU") != std::string::npos && place.ends_with(".tmp.html");
}

/// True if `part` is what is left of `whole` when parts of it could not be written.
bool IsRestOf(const std::string& part, const std::string& whole) {
  std::size_t at = 0;
  for (const char c : whole) {
    // After a line that could not be written, the next ones have another indent.
    while (at < part.size() && part[at] == ' ') ++at;
    if (at < part.size() && part[at] == c) ++at;
  }
  return at == part.size();
}

std::string Printed(const std::string& value) {
  std::string printed;
  for (const char c : value.substr(0, 120)) printed += c >= ' ' && c < 127 ? c : '.';
  return printed;
}

}  // namespace

bool LongRun() {
  const char* const value = std::getenv("MARL_FAULTS");
  return value && *value;
}

bool SoundStores::Known(const std::string& place, const std::string* value) const {
  return std::any_of(states_.begin(), states_.end(), [&](const StoredState& state) {
    const auto known = state.find(place);
    return value ? known != state.end() && known->second == *value : known == state.end();
  });
}

std::string SoundStores::Wrong(const StoredState& stored) const {
  std::string wrong;
  const auto add = [&](const std::string& place, const std::string& value) {
    wrong += "\n  " + Printed(place) + " = " + Printed(value);
  };
  for (const auto& [place, value] : stored) {
    if (Known(place, &value) || IsProbe(place)) continue;
    const std::string list = ListOf(place);
    bool sound = (!list.empty() && value == "1:") || (place == kPort && value == kNoPort);
    for (const StoredState& state : states_) {
      for (const auto& [otherPlace, other] : state) {
        // An entry of a list may have moved; a file may have lost what could not be written.
        sound = sound || (!list.empty() && otherPlace.starts_with(list) && other == value) ||
                (IsFile(place) && otherPlace == place && IsRestOf(value, other));
      }
    }
    if (!sound) add(place, value);
  }
  for (const StoredState& state : states_) {
    for (const auto& [place, value] : state) {
      if (stored.contains(place) || Known(place, nullptr) || !ListOf(place).empty()) continue;
      // A skin file is deleted before it is written anew.
      if (IsFile(place) && place.ends_with(".qsk")) continue;
      add(place, "(gone)");
    }
  }
  return wrong;
}

std::string WrongAfter(const Journey& journey, const StoredState& stored) {
  const auto add = [](std::vector<StoredState>& states, const Journey& way, bool firstUse,
                      std::string_view failing) {
    Machine machine(firstUse);
    states.push_back(machine.Stored());
    ProgramRun run(machine);
    run.faults.FailCalls(failing);
    Travel(way, run);
    states.push_back(machine.Stored());
  };
  static std::map<std::string, SoundStores> usual;
  static std::map<std::string, SoundStores> unusual;
  auto known = usual.find(journey.name);
  if (known == usual.end()) {
    std::vector<StoredState> states;
    add(states, journey, journey.firstUse, "");
    known = usual.emplace(journey.name, SoundStores(std::move(states))).first;
  }
  if (known->second.Wrong(stored).empty()) return {};

  known = unusual.find(journey.name);
  if (known == unusual.end()) {
    std::vector<StoredState> states;
    for (const bool firstUse : {false, true}) add(states, journey, firstUse, "");
    // What a user leaves who chooses no file, colour or font.
    for (const char* const call : {"FileDialogs", "ColorDialog", "FontList", "Files.ReadAll"}) {
      add(states, journey, journey.firstUse, call);
    }
    // A second start that does not see the first one is a usual one.
    if (journey.starting) add(states, Journeys()[1], false, "");
    known = unusual.emplace(journey.name, SoundStores(std::move(states))).first;
  }
  return known->second.Wrong(stored);
}

void ExpectNothingHeld(ProgramRun& run) {
  const bool killed = run.faults.killed();
  // Before that, the program ends without its exit sequence.
  if (!killed && run.cameUp() && run.desktop.exitCode() == 0) {
    EXPECT_TRUE(run.desktop.forms().empty()) << "a form is left behind";
    EXPECT_TRUE(run.hooks.listeners.empty()) << "the hook is left behind";
    EXPECT_EQ(run.icons.destroyed.size(), 1u) << "the icon of the notification area";
  }
  if (!killed && !run.faults.failed().contains("Tray.NotifyIcon")) {
    EXPECT_TRUE(run.tray.icons.empty()) << "an icon is left in the notification area";
  }
  run.Discard();
  if (killed) {
    // The platform releases what a killed process holds.
    run.icons.open.clear();
  }
  EXPECT_EQ(run.Held(), "");
}

void ExpectNextStart(Machine& machine) {
  machine.session->holders = 0;
  ProgramRun next(machine);
  next.Start();
  EXPECT_TRUE(next.up()) << "the next start does not come up: " << FailureOf(next);
  EXPECT_EQ(next.tray.icons.size(), 1u);
  if (next.up()) {
    EXPECT_TRUE(next.main().Visible());
    EXPECT_TRUE(next.main().tmrOver.Enabled());
  }
  next.Leave();
  EXPECT_TRUE(next.desktop.ended());
  EXPECT_EQ(next.desktop.exitCode(), 0) << FailureOf(next);
  ExpectNothingHeld(next);
  for (const auto& [place, value] : machine.Stored()) {
    EXPECT_FALSE(IsProbe(place) || place.ends_with(".TMP")) << "a temporary file stays: " << place;
  }
}

std::string Narrow(TextView text) { return {text.begin(), text.end()}; }

std::string FailureOf(const ProgramRun& run) {
  if (run.desktop.messages.empty()) return {};
  const auto& last = run.desktop.messages.back();
  return last.flags == kCritical ? Narrow(last.text) : std::string();
}

}  // namespace marl
