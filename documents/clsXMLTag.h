#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "documents/clsXMLEngine.h"
#include "platform/Text.h"

namespace marl {

/// A tag token split into name and attributes. Meant to be reused from tag to tag. Its views are
/// valid until the next ParseTag.
class clsXMLTag {
 public:
  clsXMLTag();
  // Copy only: a moved-from object would have no attribute slots.
  clsXMLTag(const clsXMLTag&) = default;
  clsXMLTag& operator=(const clsXMLTag&) = default;

  /// For the caller's use; ParseTag clears it.
  void TextContent(TextView text) { textContent_ = text; }
  const Text& TextContent() const { return textContent_; }

  /// Parses `tag`. Stops silently at the first malformed attribute and keeps those before it. A
  /// duplicate attribute name, ignoring case, throws error 457: the attributes before it stay, the
  /// rest of the tag is not read.
  void ParseTag(TextView tag);
  /// The same for a token as the engine holds it.
  void ParseTag(const XMLToken& token);

  /// The element's name; "/" and "<" within it are dropped.
  TextView name() const { return TextView(raw_.data() + name_, nameLength_); }
  std::int32_t AttributeCount() const { return static_cast<std::int32_t>(count_); }

  /// Value of the attribute of this name, ignoring case; empty if there is none.
  TextView AttributeValue(TextView key) const;
  TextView AttributeValue(const char16_t* key) const { return AttributeValue(TextView(key)); }
  /// Value of the attribute at this position, from 1; empty if there is none.
  TextView AttributeValue(std::int32_t position) const {
    const std::size_t place = static_cast<std::size_t>(position) - 1;
    return place < count_ ? ValueOf(attributes_[place]) : TextView();
  }

 private:
  /// An attribute, by positions in raw_.
  struct Attribute {
    std::size_t name;
    std::size_t nameEnd;
    std::size_t valueEnd;

    /// After the "=" and the quote.
    std::size_t value() const { return nameEnd + 2; }
  };
  void ReadKept(std::size_t size);
  template <typename Unit>
  void Read(std::basic_string_view<Unit> tag, bool entities);
  template <typename Unit>
  std::size_t ReadName(std::basic_string_view<Unit> tag);
  template <typename Unit>
  std::size_t ReadPlain(std::basic_string_view<Unit> tag, std::size_t next);
  template <typename Unit>
  bool ReadOdd(std::basic_string_view<Unit> tag, std::size_t next);
  bool Enter(TextView name);
  const Attribute* Find(TextView name) const;
  std::size_t SlotOf(TextView name) const;
  void Index(std::size_t slots);
  TextView NameOf(const Attribute& attribute) const {
    return TextView(raw_.data() + attribute.name, attribute.nameEnd - attribute.name);
  }
  TextView ValueOf(const Attribute& attribute) const {
    return TextView(raw_.data() + attribute.value(), attribute.valueEnd - attribute.value());
  }

  // The tag, followed by remains of longer ones. Name and values are unescaped in place: they only
  // get shorter.
  std::vector<char16_t> raw_;
  std::size_t name_ = 0;
  std::size_t nameLength_ = 0;
  // The attributes, followed by free elements.
  std::vector<Attribute> attributes_;
  std::size_t count_ = 0;
  Text textContent_;
  // Attributes by name, once there are many: a power of two of slots, each 0 or index + 1.
  std::vector<std::size_t> slots_;
  std::uint64_t seed_ = 0;
};

}  // namespace marl
