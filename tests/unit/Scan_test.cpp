#include "documents/Scan.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/Text.h"

namespace marl {
namespace {

// All lengths around whole blocks and around the number of bits in a word.
constexpr std::size_t kLongest = 5 * kBlock + 3;

template <typename Unit>
void ExpectFound(Unit wanted, Unit other) {
  for (std::size_t size = 0; size <= kLongest; ++size) {
    std::basic_string<Unit> text(size, other);
    for (std::size_t from = 0; from <= size; ++from) {
      ASSERT_EQ(FindUnit(std::basic_string_view<Unit>(text), from, wanted), size) << from;
    }
    for (std::size_t place = 0; place < size; ++place) {
      text[place] = wanted;
      for (std::size_t from = 0; from <= size; ++from) {
        ASSERT_EQ(FindUnit(std::basic_string_view<Unit>(text), from, wanted),
                  from <= place ? place : size)
            << size << " from " << from;
      }
      text[place] = other;
    }
  }
}

TEST(Scan, FindsABytePlacedAnywhere) {
  ExpectFound<char>('<', ';');
  ExpectFound<char>('\0', '\x80');
  ExpectFound<char>('\xFF', '\x7F');
}

TEST(Scan, FindsAUnitPlacedAnywhere) {
  ExpectFound<char16_t>(u'<', 0x3C00 + u'<');
  ExpectFound<char16_t>(u'\0', 0x100);
  ExpectFound<char16_t>(0xFF, 0xFFFF);
  ExpectFound<char16_t>(0xFFFF, 0xFF);
  ExpectFound<char16_t>(0x8000, 0);
}

TEST(Scan, FindsANearOrFarByte) {
  for (std::size_t size = 0; size <= 3 * kStretch + kBlock + 3; ++size) {
    std::string bytes(size, ';');
    ASSERT_EQ(FindByte(bytes, '<'), size);
    for (std::size_t place = size; place-- > 0;) {
      bytes[place] = '<';  // and everything after it
      ASSERT_EQ(FindByte(bytes, '<'), place) << size;
    }
  }
}

TEST(Scan, MarksAStretchPlaceByPlace) {
  std::string bytes(kStretch, 'x');
  Text units(kStretch, u'x');
  const auto marksOf = [](Block block) { return Joined(Matches('=', block), Matches('"', block)); };
  EXPECT_EQ(StretchOf(bytes.data(), marksOf), 0u);
  for (std::size_t place = 0; place < kStretch; ++place) {
    for (const char wanted : {'=', '"'}) {
      bytes[place] = wanted;
      units[place] = static_cast<char16_t>(wanted);
      EXPECT_EQ(StretchOf(bytes.data(), marksOf), Stretch{1} << place);
      EXPECT_EQ(StretchOf(units.data(), marksOf), Stretch{1} << place);
      // Units with the same low byte.
      units[place] = static_cast<char16_t>(0x100 + wanted);
      EXPECT_EQ(StretchOf(units.data(), marksOf), 0u);
    }
    bytes[place] = 'x';
    units[place] = u'x';
  }
}

TEST(Scan, FindsTheFirstOfMany) {
  EXPECT_EQ(FindUnit(std::string_view("a<b<c"), 0, '<'), 1u);
  EXPECT_EQ(FindUnit(std::string_view("a<b<c"), 2, '<'), 3u);
}

// A unit above 255 may be reported as a break, but no break may be missed.
TEST(Scan, FindsWhatMayEndAName) {
  for (unsigned unit = 0; unit <= 0xFFFF; ++unit) {
    char16_t units[kBlock];
    std::fill(units, units + kBlock, u'x');
    units[3] = static_cast<char16_t>(unit);
    const bool breaks = unit <= ' ' || unit == '/' || unit == '<' || unit == '>';
    const unsigned found = PlacesOfNameBreaks(LoadBlock(units));
    if (unit <= 255) {
      ASSERT_EQ(found, breaks ? 8u : 0u) << unit;
    } else {
      ASSERT_EQ(found & ~8u, 0u) << unit;
    }
    if (unit > 255) continue;
    char bytes[kBlock];
    std::fill(bytes, bytes + kBlock, 'x');
    bytes[3] = static_cast<char>(unit);
    ASSERT_EQ(PlacesOfNameBreaks(LoadBlock(bytes)), breaks ? 8u : 0u) << unit;
  }
}

TEST(Scan, CountsAndWidensAsciiUpToTheFirstOther) {
  for (std::size_t size = 0; size <= kLongest; ++size) {
    std::string bytes;
    for (std::size_t i = 0; i < size; ++i) bytes += static_cast<char>('\x7F' - i);
    for (std::size_t place = 0; place <= size; ++place) {
      std::string damaged = bytes;
      if (place < size) damaged[place] = '\x80';
      ASSERT_EQ(CountASCII(damaged), place);

      std::vector<char16_t> units(size + 1, u'~');
      ASSERT_EQ(WidenASCII(damaged, units.data()), place);
      ASSERT_EQ(Text(units.data(), place), Text(bytes.begin(), bytes.begin() + place));
      ASSERT_EQ(units[size], u'~') << "nothing is written past the end";

      const WidenedTag tag = WidenTag(damaged, units.data());
      ASSERT_EQ(tag.plain, place == size);
      ASSERT_EQ(units[size], u'~');
      if (tag.plain) {
        ASSERT_EQ(Text(units.data(), size), Text(bytes.begin(), bytes.end()));
      }
    }
  }
}

TEST(Scan, FindsAnAmpersandAnywhere) {
  for (std::size_t size = 1; size <= kLongest; ++size) {
    for (std::size_t place = 0; place < size; ++place) {
      std::string bytes(size, 'x');
      bytes[place] = '&';
      std::vector<char16_t> units(size);
      ASSERT_TRUE(WidenTag(bytes, units.data()).entities) << size << " at " << place;
    }
  }
}

}  // namespace
}  // namespace marl
