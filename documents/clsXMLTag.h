#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "documents/clsXMLEngine.h"
#include "platform/Text.h"

namespace marl {

/// One tag token taken apart into a name and attributes. Meant to be used again from tag to tag.
/// Views that it gives are good until its next ParseTag, and as long as it lives.
class clsXMLTag {
 public:
  /// A free slot for the caller; ParseTag clears it.
  void TextContent(TextView text) { textContent_ = text; }
  const Text& TextContent() const { return textContent_; }

  /// Replaces the whole state by what `tag` holds. Stops quietly at the first malformed attribute
  /// and keeps those before it. An attribute name that is there already, but for case, raises
  /// error 457: the attributes read so far stay, the rest of the tag is not read.
  void ParseTag(TextView tag);
  /// The same for a token as the engine holds it.
  void ParseTag(const XMLToken& token);

  /// The element's name; "/" and "<" within it are dropped.
  TextView name() const {
    return TextView((nameMade_ ? made_.data() : raw_.data()) + name_, nameLength_);
  }
  std::int32_t AttributeCount() const { return static_cast<std::int32_t>(count_); }

  /// Value of the attribute of this name, but for case; empty if there is none.
  TextView AttributeValue(TextView key) const;
  TextView AttributeValue(const char16_t* key) const { return AttributeValue(TextView(key)); }
  /// Value of the attribute at this place, from 1; empty if there is none.
  TextView AttributeValue(std::int32_t position) const {
    const std::size_t place = static_cast<std::size_t>(position) - 1;
    return place < count_ ? ValueOf(attributes_[place]) : TextView();
  }

 private:
  /// An attribute by the places of its texts: the name in the raw tag, the value there or, with
  /// entities, in the texts made from it.
  struct Attribute {
    std::size_t name = 0;
    std::size_t nameLength = 0;
    std::size_t value = 0;
    std::size_t valueLength = 0;
    bool made = false;
  };
  void Initialise();
  void StoreUnits(TextView tag);
  bool StoreASCII(std::string_view tag);
  template <typename MarkAt>
  void Mark(MarkAt&& markAt);
  void ReadTag();
  std::size_t ReadName();
  void Add(std::size_t name, std::size_t nameLength, std::size_t value, std::size_t valueLength);
  void Enter(TextView key);
  void Unescape(Attribute& attribute);
  const Attribute* Find(TextView key) const;
  std::size_t SlotOf(TextView key) const;
  void Index(std::size_t slots);
  TextView NameOf(const Attribute& attribute) const {
    return TextView(raw_.data() + attribute.name, attribute.nameLength);
  }
  TextView ValueOf(const Attribute& attribute) const {
    return TextView((attribute.made ? made_.data() : raw_.data()) + attribute.value,
                    attribute.valueLength);
  }

  std::vector<Attribute> attributes_;  // the first `count_` are the tag's
  std::size_t count_ = 0;
  std::uint64_t kinds_ = 0;  // a bit for each kind of name among them
  Text textContent_;
  std::vector<char16_t> raw_;  // the first `length_` units are the tag
  std::size_t length_ = 0;
  std::vector<std::uint64_t> equals_;  // a bit for each unit of the tag that is a "="
  std::vector<std::uint64_t> quotes_;  // and for each that is a double quote
  bool entities_ = false;              // the tag may hold some
  std::size_t name_ = 0;
  std::size_t nameLength_ = 0;
  bool nameMade_ = false;
  Text made_;  // names with dropped units, values with entities
  // Places by name, once there are many attributes: a power of two, each 0 or place + 1.
  std::vector<std::size_t> slots_;
  std::uint64_t seed_ = 0;
};

}  // namespace marl
