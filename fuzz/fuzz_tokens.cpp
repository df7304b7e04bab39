#include "documents/clsXMLEngine.h"
#include "documents/clsXMLTag.h"
#include "platform/RuntimeError.h"
#include "platform/memory/OneFile.h"
#include "tests/unit/FuzzTarget.h"
#include "tests/unit/XMLReference.h"

// A file of any bytes, cut into tokens: together they are the document, and each is the one that
// the reference finds.
MARL_FUZZ_TARGET(tokens) {
  using namespace marl;
  const OneFile file(data, size);
  clsXMLEngine engine(file);
  fuzz::Expect(engine.OpenDocument(u"a.xml"), "a file that is there opens");

  const Text document = reference::WithoutMark(reference::Decode(Bytes(data, data + size)));
  TextView rest = document;
  Text all;
  for (;;) {
    Text token;
    const XMLTokenKind kind = engine.GetToken(token);
    fuzz::Expect(reference::Token{kind, token} == reference::Next(rest),
                 "the token is the reference's");
    if (kind == xtEndOfDocument) break;
    fuzz::Expect(!token.empty(), "no token is empty");
    all += token;
  }
  fuzz::Expect(all == document, "the tokens are the document");

  Text token = u"old";
  fuzz::Expect(engine.GetToken(token) == xtEndOfDocument && token.empty(), "the end stays");
  // Undecoded tokens are the same, and so are the tags parsed from them.
  fuzz::Expect(engine.OpenDocument(u"a.xml"), "the file opens again");
  clsXMLEngine other(file);
  other.OpenDocument(u"a.xml");
  clsXMLTag fast;
  clsXMLTag plain;
  for (;;) {
    XMLToken found;
    const XMLTokenKind kind = engine.GetToken(found);
    fuzz::Expect(kind == other.GetToken(token) && kind == found.kind, "the kind is the same");
    fuzz::Expect(found.text() == token, "the text is the same");
    if (kind == xtEndOfDocument) break;
    const bool failed = !Skip([&] { fast.ParseTag(found); });
    fuzz::Expect(failed == !Skip([&] { plain.ParseTag(token); }), "the failure is the same");
    fuzz::Expect(fast.name() == plain.name() && fast.AttributeCount() == plain.AttributeCount(),
                 "the tag is the same");
    for (std::int32_t i = 1; i <= fast.AttributeCount(); ++i) {
      fuzz::Expect(fast.AttributeValue(i) == plain.AttributeValue(i), "the value is the same");
    }
  }
  if (document.empty()) return;
  fuzz::Expect(engine.OpenXMLW(document), "a text opens");
  all = document[0] == 0xFEFF ? u"\xFEFF" : u"";
  for (TextView view; engine.GetToken(view) != xtEndOfDocument;) all += view;
  fuzz::Expect(all == document, "the text is cut in the same way");
}
