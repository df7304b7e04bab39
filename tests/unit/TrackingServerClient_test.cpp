#include "network/TrackingServerClient.h"

#include <gtest/gtest.h>

#include "network/ServerTag.h"
#include "platform/memory/MemoryComponents.h"
#include "platform/memory/MemoryFileSystem.h"
#include "platform/memory/MemoryRegistryStore.h"
#include "platform/memory/MemoryStrings.h"

namespace marl {
namespace {

constexpr TextView kName = u"Marl.TrackingServerClient";

class ServerClient : public testing::Test {
 protected:
  MemoryComponents components;
  MemoryFileSystem files;
  MemoryStrings resource;
  StringTable strings{resource};
  MemoryRegistryStore registry;
  TrackingServerClient client{{components, files, strings, registry}};
  Text failure = u"untouched";
};

TEST_F(ServerClient, BuiltInOneAcceptsAServerDocument) {
  EXPECT_TRUE(client.SetServer(ServerDocument(BareNameTag(u"alpha")), failure));
  EXPECT_EQ(failure, u"untouched");
}

TEST_F(ServerClient, BuiltInOneRefusesAllElseWithADescription) {
  EXPECT_FALSE(client.SetServer(u"alpha", failure));
  EXPECT_EQ(failure,
            u"This is not a valid project tracking server. Please check the name of the server.");
}

// In the registry it would be the name of another server.
TEST_F(ServerClient, BuiltInOneRefusesANameThatTheCodePageCannotHoldAndSaysWhich) {
  for (const Text& name : {Text(u"\u0416.example"), Text(u"\u0101"), Text(u"a\xD83D\xDE00")}) {
    EXPECT_FALSE(client.SetServer(ServerDocument(BareNameTag(name)), failure));
    EXPECT_EQ(failure,
              u"This is not a valid project tracking server. Please check the name of the server."
              u"\n\n" +
                  name);
  }
  EXPECT_TRUE(client.SetServer(ServerDocument(BareNameTag(u"\u20AC \u00FC & co")), failure));
}

TEST_F(ServerClient, DescriptionSpeaksTheProgramsLanguage) {
  MemoryStrings german("de");
  const StringTable table(german);
  TrackingServerClient speaker({components, files, table, registry});
  EXPECT_FALSE(speaker.SetServer(u"", failure));
  EXPECT_EQ(failure,
            u"Dies ist kein gültiger Server für die Projektverfolgung. Bitte prüfen Sie "
            u"den Servernamen.");
}

TEST_F(ServerClient, RegisteredOneIsMadeAtTheFirstCallAndKept) {
  components.registered[Text(kName)] = {};
  EXPECT_EQ(components.live, 0);
  EXPECT_TRUE(client.SetServer(u"one", failure));
  EXPECT_TRUE(client.SetServer(u"two", failure));
  EXPECT_EQ(components.live, 1);
  const std::vector<MemoryComponents::CallRecord> expected = {
      {Text(kName), u"SetServer", {Text(u"one")}},
      {Text(kName), u"SetServer", {Text(u"two")}},
  };
  EXPECT_EQ(components.calls, expected);
}

TEST_F(ServerClient, RegisteredOneDecidesByItself) {
  components.registered[Text(kName)] = [](const Text&, auto&, auto&, Text& why) {
    why = u"Nobody answers";
    return false;
  };
  EXPECT_FALSE(client.SetServer(ServerDocument(BareNameTag(u"alpha")), failure));
  EXPECT_EQ(failure, u"Nobody answers");
}

TEST_F(ServerClient, ResultOfTheCallIsIgnored) {
  components.registered[Text(kName)] = [](const Text&, auto& arguments, auto& result, Text&) {
    arguments[0] = std::int32_t{7};
    result = Text(u"no");
    return true;
  };
  EXPECT_TRUE(client.SetServer(u"one", failure));
}

TEST_F(ServerClient, RegisteredOneThatCannotBeMadeIsAFailureAndTriedAgain) {
  components.broken[Text(kName)] = u"Module not found";
  EXPECT_FALSE(client.SetServer(ServerDocument(BareNameTag(u"alpha")), failure));
  EXPECT_EQ(failure, u"Module not found");
  components.broken.clear();
  EXPECT_TRUE(client.SetServer(ServerDocument(BareNameTag(u"alpha")), failure));
}

struct Document {
  Text text;
  bool good;
};

Text After(TextView tag) { return ServerDocument(tag); }

class ServerDocuments : public testing::TestWithParam<Document> {};

TEST_P(ServerDocuments, AreRecognised) {
  const MemoryFileSystem files;
  EXPECT_EQ(IsServerDocument(GetParam().text, files), GetParam().good);
}

INSTANTIATE_TEST_SUITE_P(
    Good, ServerDocuments,
    testing::Values(
        Document{After(u"<project-tracking server=\"a\" ssl=\"no\" port=\"80\"/>"), true},
        Document{After(u"<project-tracking server=\"a\"/>"), true},
        Document{After(u"<project-tracking port=\"\" ssl=\"yes\" server='a b'/>"), true},
        Document{After(u"<project-tracking server=\"a\"/> \r\n"), true},
        // clsXMLEngine decides what an element is, not a conforming parser.
        Document{After(u"<project-tracking server=\"a&b<c\" ssl=\"no\" port=\"80\"/>"), true},
        Document{After(u"<project-tracking server=\"a\"b\" ssl=\"no\" port=\"80\"/>"), true},
        Document{After(BareNameTag(Text(10000, u'n'))), true},
        Document{After(BareNameTag(u"a\"<&>\u20AC\xD800")), true}));

INSTANTIATE_TEST_SUITE_P(
    Bad, ServerDocuments,
    testing::Values(
        Document{u"", false}, Document{u"\uFEFF", false}, Document{u"alpha", false},
        Document{BareNameTag(u"alpha"), false}, Document{u"\uFEFF" + BareNameTag(u"alpha"), false},
        Document{Text(kServerProlog) + BareNameTag(u"alpha"), false},
        Document{u"\uFEFF<?xml version=\"1.0\"?>" + BareNameTag(u"alpha"), false},
        Document{u"\uFEFF" + Text(kServerProlog) + u"\r\n" + BareNameTag(u"alpha"), false},
        Document{After(u""), false}, Document{After(u"<"), false},
        Document{After(u"<project-tracking server=\"a\">"), false},
        Document{After(u"<project-tracking server=\"a\"></project-tracking>"), false},
        Document{After(u"</project-tracking server=\"a\"/>"), false},
        Document{After(u"<tracking server=\"a\"/>"), false},
        Document{After(u"<Project-Tracking server=\"a\"/>"), false},
        Document{After(u"<project-tracking server=\"\" ssl=\"no\" port=\"80\"/>"), false},
        Document{After(u"<project-tracking ssl=\"no\" port=\"80\"/>"), false},
        Document{After(u"<project-tracking server=\"a\" server=\"b\"/>"), false},
        Document{After(u"<project-tracking server=\"a>b\" ssl=\"no\" port=\"80\"/>"), false},
        Document{After(u"<project-tracking server=\"a\"/>x"), false},
        Document{After(u"<project-tracking server=\"a\"/><project-tracking server=\"b\"/>"), false},
        Document{After(u"<project-tracking server=\"a\"/> <!-- -->"), false}));

}  // namespace
}  // namespace marl
