#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

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

  /// The element's name; "/" and "<" within it are dropped.
  TextView name() const;
  std::int32_t AttributeCount() const { return static_cast<std::int32_t>(attributes_.size()); }

  /// Value of the attribute of this name, but for case; empty if there is none.
  TextView AttributeValue(TextView key) const;
  TextView AttributeValue(const char16_t* key) const { return AttributeValue(TextView(key)); }
  /// Value of the attribute at this place, from 1; empty if there is none.
  TextView AttributeValue(std::int32_t position) const;

 private:
  /// A run of units: of the raw tag, or of the texts made from it.
  struct Run {
    std::size_t begin = 0;
    std::size_t length = 0;
    bool made = false;
  };
  struct Attribute {
    Run name;
    Run value;
  };

  void Initialise();
  void ReadName(std::size_t& at);
  void Add(Run name, Run value);
  const Attribute* Find(TextView key) const;
  std::size_t SlotOf(TextView key) const;
  void Index(std::size_t slots);
  TextView View(const Run& run) const;

  std::vector<Attribute> attributes_;
  Text textContent_;
  Text raw_;
  Run name_;
  Text made_;  // names with dropped units, values with entities
  // Places by name, once there are many attributes: a power of two, each 0 or place + 1.
  std::vector<std::size_t> slots_;
  std::uint64_t seed_ = 0;
};

}  // namespace marl
