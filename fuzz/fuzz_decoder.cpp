#include "documents/modUTF8.h"
#include "platform/memory/OneFile.h"
#include "tests/unit/FuzzTarget.h"
#include "tests/unit/XMLReference.h"

// Any bytes, decoded, encoded and decoded again; and the same bytes as units to encode.
MARL_FUZZ_TARGET(decoder) {
  using namespace marl;
  const Bytes bytes(data, data + size);
  const Text text = DecodeUTF8(bytes);
  fuzz::Expect(text == reference::Decode(bytes), "the text is the reference's");

  // In steps of a length that the input chooses.
  const std::size_t room = size == 0 ? 1 : 1 + data[0] % 64;
  Text steps;
  for (std::size_t next = 0; next != size;) {
    Text part(room, u'\0');
    const DecodedUTF8 done = DecodeUTF8(data + next, size - next, part.data(), room);
    fuzz::Expect(done.bytes > 0 && done.units > 0 && done.units <= room, "a step goes on");
    steps.append(part, 0, done.units);
    next += done.bytes;
  }
  fuzz::Expect(steps == text, "steps give the same text");

  OneFile file(data, 0);
  modUTF8 utf8(file);
  Text units;
  for (std::size_t i = 0; i + 1 < size; i += 2) {
    units += static_cast<char16_t>(data[i] << 8 | data[i + 1]);
  }
  for (const Text& source : {text, units}) {
    fuzz::Expect(utf8.ToUTF8Bytes(source) == static_cast<std::int32_t>(utf8.OutputBytes().size()),
                 "the count is that of the bytes");
    fuzz::Expect(utf8.OutputBytes() == reference::Encode(source), "the bytes are the reference's");
    fuzz::Expect(DecodeUTF8(utf8.OutputBytes()) == source, "decoding undoes encoding");
  }
}
