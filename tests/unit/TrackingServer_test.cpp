#include "network/TrackingServer.h"

#include <gtest/gtest.h>

#include <optional>

#include "network/ServerTag.h"
#include "platform/memory/MemoryComponents.h"
#include "platform/memory/MemoryDesktop.h"
#include "platform/memory/MemoryFileSystem.h"
#include "platform/memory/MemoryLocale.h"
#include "platform/memory/MemoryRegistryStore.h"
#include "platform/memory/MemoryStrings.h"

namespace marl {
namespace {

constexpr TextView kClient = u"Marl.TrackingServerClient";
constexpr char kSettingsKey[] = "Software\\Oru\\Marl\\Settings";
constexpr char kListKey[] = "Software\\Oru\\Marl\\ServerMRU";
constexpr TextView kAlpha = u"<project-tracking server=\"alpha\" ssl=\"no\" port=\"80\"/>";
constexpr TextView kBeta = u"<project-tracking server=\"beta\" ssl=\"yes\" port=\"443\"/>";

class Tracking : public testing::Test {
 protected:
  void Store(const NarrowText& text) {
    registry.Plant(kCurrentUser, kSettingsKey, "TrackingServer", kRegSz, text + '\0');
  }
  std::optional<NarrowText> Stored(const char* key, const char* name) {
    OpenKeyHandle opened;
    if (registry.OpenKey(kCurrentUser, key, kKeyQueryValue, opened) != kOk) return {};
    NarrowText bytes(20000, '\0');
    std::uint32_t kind = 0;
    auto size = static_cast<std::uint32_t>(bytes.size());
    if (registry.QueryValue(opened.get(), name, kind, bytes, size) != kOk) return {};
    EXPECT_EQ(kind, std::uint32_t{kRegSz});
    bytes.resize(size);
    return bytes;
  }
  /// The suite's component, which refuses documents that contain one of these.
  void Refuse(const Text& part) {
    components.registered[Text(kClient)] = [part](const Text&,
                                                  std::vector<ComponentValue>& arguments,
                                                  ComponentValue&, Text& failure) {
      if (std::get<Text>(arguments.at(0)).find(part) == Text::npos) return true;
      failure = u"No such server: " + part;
      return false;
    };
  }
  std::vector<Text> List() const {
    std::vector<Text> list;
    for (std::int32_t i = 1; i <= server.ServerList.Count(); ++i) {
      list.push_back(server.ServerList.Item(i));
    }
    return list;
  }

  MemoryDesktop desktop;
  MemoryRegistryStore registry;
  MemoryComponents components;
  MemoryFileSystem files;
  MemoryLocale locale;
  MemoryStrings resource;
  StringTable strings{resource};
  std::vector<Text> names;    ///< all names that were shown
  std::vector<bool> enabled;  ///< all states that were set
  TrackingServer server{{desktop, registry, components, files, strings, locale},
                        {[this](TextView name) { names.emplace_back(name); },
                         [this](bool state) { enabled.push_back(state); }}};
};

using List_ = std::vector<Text>;

TEST_F(Tracking, NoStoredValueShowsNoServerAndListsNothing) {
  server.Start();
  EXPECT_EQ(server.CurrentServerTag, u"");
  EXPECT_EQ(names, List_{u"[no server]"});
  EXPECT_EQ(enabled, std::vector<bool>{false});
  EXPECT_EQ(List(), List_{});
}

TEST_F(Tracking, StoredBareNameBecomesATag) {
  Store("alpha");
  server.Start();
  EXPECT_EQ(server.CurrentServerTag, kAlpha);
  EXPECT_EQ(names, List_{u"alpha"});
  EXPECT_EQ(enabled, std::vector<bool>{true});
  EXPECT_EQ(List(), List_{Text(kAlpha)});
}

TEST_F(Tracking, StoredTagIsTakenAsItIs) {
  Store("<project-tracking server=\"beta\" ssl=\"yes\" port=\"443\"/>");
  server.Start();
  EXPECT_EQ(server.CurrentServerTag, kBeta);
  EXPECT_EQ(names, List_{u"beta"});
}

TEST_F(Tracking, SameTagAgainReturnsFalseYetSetsTheButton) {
  server.Start();
  EXPECT_TRUE(server.SetTrackingServer(kAlpha, true));
  names.clear();
  enabled.clear();
  EXPECT_FALSE(server.SetTrackingServer(kAlpha, true));
  EXPECT_EQ(names, List_{});
  EXPECT_EQ(enabled, std::vector<bool>{true});
  EXPECT_EQ(List(), List_{Text(kAlpha)});
}

TEST_F(Tracking, SameTagInOtherCaseIsAChangeAndMovesInTheList) {
  server.Start();
  server.SetTrackingServer(kAlpha, true);
  server.SetTrackingServer(kBeta, true);
  const Text other = u"<project-tracking server=\"ALPHA\" ssl=\"no\" port=\"80\"/>";
  EXPECT_TRUE(server.SetTrackingServer(other, true));
  EXPECT_EQ(List(), (List_{other, Text(kBeta)}));
}

TEST_F(Tracking, BareNameWithAmpersandIsEscapedInTheTagAndShownPlain) {
  server.Start();
  EXPECT_TRUE(server.SetTrackingServer(u"R&D", true));
  EXPECT_EQ(server.CurrentServerTag,
            u"<project-tracking server=\"R&amp;D\" ssl=\"no\" port=\"80\"/>");
  EXPECT_EQ(names.back(), u"R&D");
}

TEST_F(Tracking, BareNameKeepsItsBlanks) {
  server.Start();
  EXPECT_TRUE(server.SetTrackingServer(u" alpha ", true));
  EXPECT_EQ(server.CurrentServerTag,
            u"<project-tracking server=\" alpha \" ssl=\"no\" port=\"80\"/>");
  EXPECT_EQ(names.back(), u" alpha ");
}

TEST_F(Tracking, TagAfterABlankIsABareName) {
  server.Start();
  EXPECT_TRUE(server.SetTrackingServer(u" <x>", true));
  EXPECT_EQ(server.CurrentServerTag,
            u"<project-tracking server=\" &lt;x&gt;\" ssl=\"no\" port=\"80\"/>");
}

TEST_F(Tracking, TagKeepsTheBlanksAfterIt) {
  server.Start();
  EXPECT_TRUE(server.SetTrackingServer(Text(kAlpha) + u"  ", true));
  EXPECT_EQ(server.CurrentServerTag, Text(kAlpha) + u"  ");
}

TEST_F(Tracking, EmptyNamesRemoveTheServerWithoutAMessage) {
  server.Start();
  for (const TextView nothing :
       {u"", u"   ", u"<project-tracking server=\"\" ssl=\"no\" port=\"80\"/>", u"<", u"<x/>",
        u"<project-tracking ssl=\"yes\"/>"}) {
    server.SetTrackingServer(kAlpha, true);
    components.calls.clear();
    names.clear();
    EXPECT_TRUE(server.SetTrackingServer(nothing, true));
    EXPECT_EQ(server.CurrentServerTag, u"");
    EXPECT_EQ(names, List_{u"[no server]"});
    EXPECT_FALSE(enabled.back());
  }
  EXPECT_TRUE(desktop.messages.empty());
  EXPECT_EQ(List(), List_{Text(kAlpha)}) << "the list keeps what it had";
}

TEST_F(Tracking, DocumentReachesTheComponentToTheCharacter) {
  components.registered[Text(kClient)] = {};
  server.Start();
  EXPECT_TRUE(components.calls.empty()) << "no server is not sent";
  server.SetTrackingServer(kBeta, true);
  const std::vector<MemoryComponents::CallRecord> expected = {
      {Text(kClient),
       u"SetServer",
       {Text(u"\uFEFF<?xml version=\"1.0\" standalone=\"no\"?>"
             u"<project-tracking server=\"beta\" ssl=\"yes\" port=\"443\"/>")}}};
  EXPECT_EQ(components.calls, expected);
}

TEST_F(Tracking, RefusedServerShowsTheComponentsTextAndTheOldOneStays) {
  Refuse(u"beta");
  server.Start();
  server.SetTrackingServer(kAlpha, true);
  names.clear();
  EXPECT_FALSE(server.SetTrackingServer(kBeta, true));
  EXPECT_EQ(server.CurrentServerTag, kAlpha);
  EXPECT_EQ(
      desktop.messages,
      (std::vector<MemoryDesktop::Message>{{u"No such server: beta", kExclamation, u"Marl"}}));
  EXPECT_EQ(names, List_{});
  EXPECT_TRUE(enabled.back());
  EXPECT_EQ(List(), List_{Text(kAlpha)});
}

TEST_F(Tracking, RefusedStoredServerIsSilentAndEndsInNoServer) {
  Refuse(u"alpha");
  Store("alpha");
  server.Start();
  EXPECT_EQ(server.CurrentServerTag, u"");
  EXPECT_EQ(names, List_{u"[no server]"});
  EXPECT_FALSE(enabled.back());
  EXPECT_TRUE(desktop.messages.empty());
  EXPECT_EQ(List(), List_{});
}

TEST_F(Tracking, ComponentThatCannotBeMadeLeavesTheOldServer) {
  components.broken[Text(kClient)] = u"Class not registered";
  Store("alpha");
  server.Start();
  EXPECT_EQ(server.CurrentServerTag, u"");
  EXPECT_TRUE(desktop.messages.empty()) << "silent at the start";
  EXPECT_FALSE(server.SetTrackingServer(kBeta, true));
  EXPECT_EQ(server.CurrentServerTag, u"");
  EXPECT_EQ(
      desktop.messages,
      (std::vector<MemoryDesktop::Message>{{u"Class not registered", kExclamation, u"Marl"}}));
}

TEST_F(Tracking, DuplicateAttributeIsNoFailure) {
  components.registered[Text(kClient)] = {};
  server.Start();
  const Text twice = u"<project-tracking server=\"x\" server=\"y\" ssl=\"no\" port=\"80\"/>";
  EXPECT_TRUE(server.SetTrackingServer(twice, true));
  EXPECT_EQ(server.CurrentServerTag, twice);
  EXPECT_EQ(names.back(), u"x");
}

TEST_F(Tracking, NumberSignIsAServerLikeAnyOther) {
  Store("#");
  server.Start();
  EXPECT_EQ(server.CurrentServerTag, u"<project-tracking server=\"#\" ssl=\"no\" port=\"80\"/>");
}

TEST_F(Tracking, SavingWritesTagAndListByteByByte) {
  server.Start();
  server.SetTrackingServer(kBeta, true);
  server.SetTrackingServer(u"alpha", true);
  server.SaveServerSettings();
  const NarrowText alpha("<project-tracking server=\"alpha\" ssl=\"no\" port=\"80\"/>");
  const NarrowText beta("<project-tracking server=\"beta\" ssl=\"yes\" port=\"443\"/>");
  // The platform adds a NUL to each text; an empty one has no bytes.
  EXPECT_EQ(Stored(kSettingsKey, "TrackingServer"), alpha + '\0');
  EXPECT_EQ(Stored(kListKey, "MRU1"), alpha + '\0');
  EXPECT_EQ(Stored(kListKey, "MRU2"), beta + '\0');
  for (const char* const unused : {"MRU3", "MRU4", "MRU5", "MRU6", "MRU7", "MRU8"}) {
    EXPECT_EQ(Stored(kListKey, unused), "") << unused;
  }
  EXPECT_EQ(Stored(kListKey, "MRU9"), std::nullopt);
}

TEST_F(Tracking, SavingNoServerWritesAnEmptyText) {
  server.Start();
  server.SaveServerSettings();
  EXPECT_EQ(Stored(kSettingsKey, "TrackingServer"), "");
  EXPECT_EQ(Stored(kListKey, "MRU1"), "");
}

TEST_F(Tracking, NothingIsWrittenBeforeSaving) {
  server.Start();
  server.SetTrackingServer(kAlpha, true);
  EXPECT_EQ(Stored(kSettingsKey, "TrackingServer"), std::nullopt);
  EXPECT_EQ(Stored(kListKey, "MRU1"), std::nullopt);
}

TEST_F(Tracking, SavedServerComesBackAtTheNextStart) {
  server.Start();
  server.SetTrackingServer(u"R&D \u20AC", true);
  server.SaveServerSettings();
  TrackingServer next({desktop, registry, components, files, strings, locale},
                      {[](TextView) {}, [](bool) {}});
  next.Start();
  EXPECT_EQ(next.CurrentServerTag, server.CurrentServerTag);
  EXPECT_EQ(next.ServerList.Count(), 1);
}

TEST_F(Tracking, ListHoldsEightServersAndDropsTheOldest) {
  server.Start();
  for (char16_t c = u'a'; c <= u'i'; ++c) server.SetTrackingServer(Text(1, c), true);
  EXPECT_EQ(server.ServerList.Count(), 8);
  EXPECT_EQ(server.ServerList.Item(1), BareNameTag(u"i"));
  EXPECT_EQ(server.ServerList.Item(8), BareNameTag(u"b"));
}

TEST_F(Tracking, RefusingStoreIsSilent) {
  class Denied : public MemoryRegistryStore {
   public:
    Status CreateKey(KeyHandle, const NarrowText&, std::uint32_t, OpenKeyHandle&) override {
      return kAccessDenied;
    }
  } denied;
  TrackingServer unsaved({desktop, denied, components, files, strings, locale},
                         {[](TextView) {}, [](bool) {}});
  unsaved.Start();
  unsaved.SetTrackingServer(kAlpha, true);
  unsaved.SaveServerSettings();
  EXPECT_TRUE(desktop.messages.empty());
  EXPECT_EQ(unsaved.CurrentServerTag, kAlpha);
}

struct Hostile {
  std::uint32_t kind;
  NarrowText bytes;
  Text tag;  ///< the current tag afterwards
};

class TrackingHostile : public Tracking, public testing::WithParamInterface<Hostile> {};

TEST_P(TrackingHostile, StoredValueIsUsedOrDropped) {
  registry.Plant(kCurrentUser, kSettingsKey, "TrackingServer", GetParam().kind, GetParam().bytes);
  server.Start();
  EXPECT_EQ(server.CurrentServerTag, GetParam().tag);
  EXPECT_TRUE(desktop.messages.empty());
  EXPECT_EQ(names.size(), 1u);
}

Text Named(TextView name) { return BareNameTag(name); }

INSTANTIATE_TEST_SUITE_P(
    Values, TrackingHostile,
    testing::Values(
        Hostile{kRegSz, "", u""}, Hostile{kRegSz, NarrowText(1, '\0'), u""},
        Hostile{kRegSz, "alpha", Named(u"alph")},  // the last byte counts as the terminator
        Hostile{kRegSz, NarrowText("alpha\0", 6), Named(u"alpha")},
        Hostile{kRegSz, NarrowText("alpha\0\0", 7), Named(TextView(u"alpha\0", 6))},
        Hostile{kRegSz, NarrowText("a\0b\0", 4), Named(TextView(u"a\0b", 3))},
        Hostile{kRegSz, NarrowText(10000, 'n') + '\0', Named(Text(10000, u'n'))},
        Hostile{kRegSz, NarrowText("a\"b<c>&d%20 e\0", 14), Named(u"a\"b<c>&d%20 e")},
        Hostile{kRegSz, NarrowText("alpha /ssl /x\0", 14), Named(u"alpha /ssl /x")},
        Hostile{kRegSz, NarrowText("<alpha\0", 7), u""},
        Hostile{kRegSz, NarrowText("<project-tracking server=\"a\">\0", 30), u""},
        Hostile{kRegSz, NarrowText("<project-tracking server=\"a\" server=\"b\"/>\0", 42), u""},
        Hostile{kRegDword, DwordBytes(42), Named(u"42")}, Hostile{kRegNone, "alpha", u""},
        Hostile{kRegLink, "alpha", u""}));

TEST_F(Tracking, ListWithHostileEntriesLoads) {
  const NarrowText entries[] = {"",
                                "<",
                                "bare",
                                "<project-tracking server=\"a\" server=\"b\"/>",
                                NarrowText(10000, 'n'),
                                NarrowText("a\0b", 3)};
  int number = 1;
  for (const NarrowText& entry : entries) {
    registry.Plant(kCurrentUser, kListKey, "MRU" + std::to_string(number++), kRegSz, entry + '\0');
  }
  server.Start();
  EXPECT_EQ(server.ServerList.Count(), 5) << "the empty one is passed over";
}

}  // namespace
}  // namespace marl
