#include "documents/clsXMLTag.h"
#include "documents/modUTF8.h"
#include "fuzz/Mutators.h"
#include "platform/RuntimeError.h"
#include "tests/unit/FuzzTarget.h"
#include "tests/unit/XMLReference.h"

MARL_FUZZ_WORDS("<", "/>", ">", "</", "name", "Name", "\u00E9", "=", "\"", "'", " ", "\t", "\r\n",
                "&amp;", "&lt;", "&gt;", "&quot;", "&apos;", "&", ";", "value", "a=\"1\"", "a='2'")

// Any text, parsed as a tag.
MARL_FUZZ_TARGET(tags) {
  using namespace marl;
  const Text source = DecodeUTF8(Bytes(data, data + size));
  clsXMLTag tag;
  const bool duplicate = !Skip([&] { tag.ParseTag(source); });
  for (std::int32_t i = -1; i <= tag.AttributeCount() + 1; ++i) tag.AttributeValue(i);

  // The reference takes quadratic time.
  if (source.size() > 8192) return;
  const reference::Tag expected = reference::ReadTag(source);
  fuzz::Expect(duplicate == expected.duplicate, "a duplicate name fails");
  fuzz::Expect(tag.name() == expected.name, "the name is the reference's");
  fuzz::Expect(static_cast<std::size_t>(tag.AttributeCount()) == expected.attributes.size(),
               "the number of attributes is the reference's");
  std::int32_t position = 0;
  for (const auto& [name, value] : expected.attributes) {
    fuzz::Expect(tag.AttributeValue(++position) == value,
                 "the value at the position is the reference's");
    fuzz::Expect(tag.AttributeValue(name) == value, "the value of the name is the reference's");
  }
  fuzz::Expect(XMLUnescape(XMLEscape(source)) == source, "unescaping undoes escaping");
  fuzz::Expect(XMLEscape(source) == reference::Escape(source), "escaping is replacing in turn");
  fuzz::Expect(XMLUnescape(source) == reference::Unescape(source),
               "unescaping is replacing in turn");
}
