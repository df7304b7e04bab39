#include "documents/modUTF8.h"
#include "network/ServerTag.h"
#include "network/TrackingServerClient.h"
#include "platform/memory/OneFile.h"
#include "tests/unit/FuzzTarget.h"

// Any text: as a server's bare name, as a name that the user typed, as a stored tag, as a document.
MARL_FUZZ_TARGET(servertag) {
  using namespace marl;
  const Text source = DecodeUTF8(Bytes(data, data + size));
  const OneFile files(data, size);
  const auto check = [&](const Text& text) {
    clsXMLTag tag;
    ReadServerTag(text, tag);
    const Text site = TrackingSite(tag);
    fuzz::Expect(site.starts_with(UsesSsl(tag) ? u"https://" : u"http://"),
                 "the scheme follows ssl");
    fuzz::Expect(site.ends_with(u"/OruCadenceProjectTracking/logon.aspx"), "the page is the last");
    fuzz::Expect(WardenArguments(tag).starts_with(tag.AttributeValue(u"server")),
                 "the server is the first argument");
    if (IsServerDocument(ServerDocument(text), files)) {
      fuzz::Expect(!tag.AttributeValue(u"server").empty(), "an accepted document names a server");
    }
  };
  check(source);
  check(ComposeServerTag(source, size % 2 == 0, source));
  IsServerDocument(source, files);

  const Text bare = BareNameTag(source);
  check(bare);
  clsXMLTag tag;
  ReadServerTag(bare, tag);
  fuzz::Expect(tag.AttributeValue(u"server") == source, "a bare name comes back from its tag");
  fuzz::Expect(tag.AttributeValue(u"port") == u"80" && !UsesSsl(tag), "on the plain port");
  fuzz::Expect(IsServerDocument(ServerDocument(bare), files) == !source.empty(),
               "and is a server, whatever it holds");
}
