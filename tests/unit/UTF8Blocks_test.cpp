#include "documents/UTF8Blocks.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "documents/Scan.h"
#include "tests/unit/XMLReference.h"

namespace marl {
namespace {

/// Whether blocks are converted in this build and on this processor.
bool AreBlocksConverted() {
#if defined(__SSE2__) && !defined(MARL_PLAIN_SCAN) && !defined(MARL_BASELINE_SCAN)
  return __builtin_cpu_supports("ssse3") && __builtin_cpu_supports("popcnt");
#else
  return false;
#endif
}

/// The first `size` elements, or all.
template <typename List>
List First(const List& list, std::size_t size) {
  return List(list.begin(),
              list.begin() + static_cast<std::ptrdiff_t>(std::min(size, list.size())));
}

/// Units of one byte, and of two where a bit of `order` is set.
Text InOrder(unsigned order, std::size_t size) {
  Text text(size, u'\0');
  for (std::size_t i = 0; i != size; ++i) {
    text[i] =
        static_cast<char16_t>((order >> i % 16 & 1) != 0 ? 0x80 + 0x777 * i / size : 'a' + i % 26);
  }
  return text;
}

TEST(UTF8Blocks, EveryOrderOfOneAndTwoBytes) {
  constexpr std::size_t kUnits = 40;
  for (unsigned order = 0; order != 0x10000; ++order) {
    const Text text = InOrder(order, kUnits);
    const Bytes bytes = reference::Encode(text);
    Bytes out(bytes.size() + kEncodedBlock);
    const EncodedUTF8 encoded = EncodeBlocks(text, out.data(), out.size());
    ASSERT_EQ(encoded.units, AreBlocksConverted() ? 32u : 0u) << order;
    out.resize(encoded.bytes);
    ASSERT_EQ(out, reference::Encode(text.substr(0, encoded.units))) << order;

    Text units(bytes.size(), u'!');
    const DecodedUTF8 decoded =
        DecodeBlocks(bytes.data(), bytes.size(), units.data(), units.size());
    ASSERT_GE(decoded.bytes, AreBlocksConverted() ? bytes.size() / kBlock * kBlock - 1 : 0)
        << order;
    ASSERT_EQ(units.substr(0, decoded.units), reference::Decode(First(bytes, decoded.bytes)))
        << order;
  }
}

TEST(UTF8Blocks, StopBeforeAUnitOfThreeBytes) {
  const Text plain = InOrder(0x5A96, 100);
  for (const int value : {0x7FF, 0x800, 0x8000, 0xD800, 0xFFFF}) {
    for (std::size_t at = 0; at != 70; ++at) {
      Text text = plain;
      text[at] = static_cast<char16_t>(value);
      Bytes out(400);
      const EncodedUTF8 encoded = EncodeBlocks(text, out.data(), out.size());
      const std::size_t units = value < 0x800 ? 96 : at / kBlock * kBlock;
      ASSERT_EQ(encoded.units, AreBlocksConverted() ? units : 0) << value << ' ' << at;
      out.resize(encoded.bytes);
      ASSERT_EQ(out, reference::Encode(text.substr(0, encoded.units))) << value << ' ' << at;
    }
  }
}

TEST(UTF8Blocks, DecodeOnlyWhatIsWellFormed) {
  const Bytes whole = reference::Encode(InOrder(0x3C59, 100));
  for (std::size_t at = 0; at != whole.size(); ++at) {
    for (int byte = 0; byte != 256; ++byte) {
      Bytes bytes = whole;
      bytes[at] = static_cast<unsigned char>(byte);
      Text units(bytes.size(), u'!');
      const DecodedUTF8 decoded =
          DecodeBlocks(bytes.data(), bytes.size(), units.data(), units.size());
      bytes.resize(decoded.bytes);
      ASSERT_EQ(units.substr(0, decoded.units), reference::Decode(bytes)) << at << ' ' << byte;
      ASSERT_TRUE(decoded.bytes == 0 || (bytes.back() & 0xC0) != 0xC0) << at << ' ' << byte;
      // They go on to the block of a byte that does not belong there.
      ASSERT_GE(decoded.bytes + kBlock, AreBlocksConverted() ? at / kBlock * kBlock : 0)
          << at << ' ' << byte;
    }
  }
}

TEST(UTF8Blocks, KeepToTheRoomTheyHave) {
  for (const unsigned order : {0x0000u, 0xFFFFu, 0x6D2Bu}) {
    const Text text = InOrder(order, 100);
    const Bytes bytes = reference::Encode(text);
    for (std::size_t room = 0; room != 150; ++room) {
      // Of exactly this size, so that a sanitizer sees what goes beyond.
      Bytes encoded(room);
      const EncodedUTF8 into = EncodeBlocks(text, encoded.data(), room);
      ASSERT_LE(into.bytes, room);
      ASSERT_EQ(First(encoded, into.bytes), First(bytes, into.bytes)) << room;
      ASSERT_EQ(into.units >= kBlock, AreBlocksConverted() && room >= kEncodedBlock) << room;

      std::vector<char16_t> decoded(room);
      const DecodedUTF8 from = DecodeBlocks(bytes.data(), bytes.size(), decoded.data(), room);
      ASSERT_LE(from.units, room);
      ASSERT_EQ(Text(decoded.data(), from.units), text.substr(0, from.units)) << room;
      ASSERT_EQ(from.units != 0, AreBlocksConverted() && room >= kBlock) << room;

      const Bytes part = First(bytes, room);
      Text units(part.size() + kBlock, u'!');
      ASSERT_LE(DecodeBlocks(part.data(), part.size(), units.data(), units.size()).bytes,
                part.size());
      const std::vector<char16_t> source =
          First(std::vector<char16_t>(text.begin(), text.end()), room);
      Bytes out(2 * source.size() + kEncodedBlock);
      ASSERT_LE(EncodeBlocks({source.data(), source.size()}, out.data(), out.size()).units,
                source.size());
    }
  }
}

}  // namespace
}  // namespace marl
