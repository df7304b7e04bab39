#pragma once

#include <cstddef>
#include <cstdlib>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "documents/clsXMLEngine.h"
#include "platform/FoldCase.h"
#include "platform/Text.h"

/// A second implementation of the reader, deliberately slow and simple: one step per rule, every
/// token copied from the rest. The engine must agree with it on every input.
namespace marl::reference {

struct Token {
  XMLTokenKind kind;
  Text text;
  bool operator==(const Token&) const = default;
};

inline Text Decode(const Bytes& bytes) {
  Text text;
  for (std::size_t i = 0; i < bytes.size();) {
    const auto at = [&](std::size_t place) -> unsigned {
      return place < bytes.size() ? bytes[place] : bytes.back();
    };
    const unsigned b = bytes[i];
    if (b < 128) {
      text.push_back(static_cast<char16_t>(b));
      i += 1;
    } else if (b < 224) {
      text.push_back(static_cast<char16_t>((b & 31) * 64 + (at(i + 1) & 63)));
      i += 2;
    } else {
      text.push_back(
          static_cast<char16_t>((b & 15) * 4096 + (at(i + 1) & 63) * 64 + (at(i + 2) & 63)));
      i += 3;
    }
  }
  return text;
}

inline Bytes Encode(TextView text) {
  Bytes bytes;
  for (const unsigned u : text) {
    if (u < 0x80) {
      bytes.push_back(static_cast<unsigned char>(u));
    } else if (u < 0x800) {
      bytes.push_back(static_cast<unsigned char>(192 + u / 64));
      bytes.push_back(static_cast<unsigned char>(128 + u % 64));
    } else {
      bytes.push_back(static_cast<unsigned char>(224 + u / 4096));
      bytes.push_back(static_cast<unsigned char>(128 + u / 64 % 64));
      bytes.push_back(static_cast<unsigned char>(128 + u % 64));
    }
  }
  return bytes;
}

inline Text WithoutMark(Text text) {
  if (!text.empty() && text[0] == 0xFEFF) text.erase(0, 1);
  return text;
}

inline Token Cut(TextView& rest, XMLTokenKind kind, TextView terminator) {
  const std::size_t found = rest.find(terminator);
  const std::size_t length = found == Text::npos ? rest.size() : found + terminator.size();
  Token token{kind, Text(rest.substr(0, length))};
  rest.remove_prefix(length);
  return token;
}

inline Token Next(TextView& rest) {
  const auto begins = [&](const char16_t* keyword) {
    return FoldCase(rest.substr(0, Text(keyword).size())) == keyword;
  };
  if (rest.empty()) return {xtEndOfDocument, u""};
  if (rest[0] != u'<') {
    Token token{xtText, Text(rest.substr(0, rest.find(u'<')))};
    rest.remove_prefix(token.text.size());
    return token;
  }
  if (rest.substr(0, 2) == u"<?") return Cut(rest, xtInstruction, u"?>");
  if (rest.substr(0, 2) == u"<!") {
    if (begins(u"<!DOCTYPE")) return Cut(rest, xtDocType, u"]>");
    if (begins(u"<![CDATA[")) return Cut(rest, xtCData, u"]]>");
    if (rest.substr(0, 4) == u"<!--") return Cut(rest, xtComment, u"-->");
    return Cut(rest, xtDeclaration, u">");
  }
  Token token = Cut(rest, xtOpenTag, u">");
  if (token.text.substr(1, 1) == u"/") {
    token.kind = xtCloseTag;
  } else if (token.text.size() >= 2 && token.text.substr(token.text.size() - 2) == u"/>") {
    token.kind = xtEmptyTag;
  }
  return token;
}

/// All tokens of a document, without the end.
inline std::vector<Token> Tokens(TextView rest) {
  std::vector<Token> tokens;
  while (!rest.empty()) tokens.push_back(Next(rest));
  return tokens;
}

inline Text Replace(const Text& text, TextView what, TextView with) {
  Text replaced;
  for (std::size_t i = 0; i < text.size();) {
    if (text.substr(i, what.size()) == what) {
      replaced += with;
      i += what.size();
    } else {
      replaced += text[i++];
    }
  }
  return replaced;
}

inline Text Unescape(Text text) {
  text = Replace(text, u"&quot;", u"\"");
  text = Replace(text, u"&gt;", u">");
  text = Replace(text, u"&lt;", u"<");
  return Replace(text, u"&amp;", u"&");
}

inline Text Escape(Text text) {
  text = Replace(text, u"&", u"&amp;");
  text = Replace(text, u"<", u"&lt;");
  text = Replace(text, u">", u"&gt;");
  return Replace(text, u"\"", u"&quot;");
}

struct Tag {
  Text name;
  std::vector<std::pair<Text, Text>> attributes;
  bool duplicate = false;  ///< parsing failed at a duplicate name

  Text Value(const Text& key) const {
    for (const auto& [attribute, value] : attributes) {
      if (FoldCase(attribute) == FoldCase(key)) return value;
    }
    return u"";
  }
};

inline Tag ReadTag(Text s) {
  Tag tag;
  while (!s.empty()) {
    const char16_t c = s[0];
    s.erase(0, 1);
    if (c == u'<' || c == u'/') continue;
    if (c == u'\t' || c == u'\r' || c == u'\n' || c == u' ' || c == u'>') break;
    tag.name += c;
  }
  for (;;) {
    while (!s.empty() && s.front() == u' ') s.erase(0, 1);
    while (!s.empty() && s.back() == u' ') s.pop_back();
    const std::size_t equals = s.find(u'=');
    if (equals == Text::npos) return tag;
    const Text name = s.substr(0, equals);
    s.erase(0, equals + 1);
    if (s.empty()) return tag;
    const std::size_t closing = s.find(s[0], 1);
    if (closing == Text::npos) return tag;
    const Text value = Unescape(s.substr(1, closing - 1));
    s.erase(0, closing + 1);
    for (const auto& attribute : tag.attributes) {
      if (FoldCase(attribute.first) == FoldCase(name)) {
        tag.duplicate = true;
        return tag;
      }
    }
    tag.attributes.emplace_back(name, value);
  }
}

/// Random documents made of markup pieces, some of them damaged. The seed is fixed.
class Documents {
 public:
  explicit Documents(unsigned seed) : random_(seed) {}

  /// A text of up to `pieces` pieces.
  Text Make(std::size_t pieces) {
    static const Text kPieces[] = {u"<",
                                   u">",
                                   u"/>",
                                   u"</",
                                   u"<a",
                                   u"<a>",
                                   u"</a>",
                                   u"<?",
                                   u"?>",
                                   u"<!",
                                   u"<!-",
                                   u"<!--",
                                   u"-->",
                                   u"--",
                                   u"->",
                                   u"<!DOCTYPE",
                                   u"]>",
                                   u"]",
                                   u"]]>",
                                   u"<![",
                                   u"<![CDATA[",
                                   u"<!doctypE",
                                   u"<![cdata[",
                                   u"<!ELEMENT ",
                                   u"b",
                                   u"B",
                                   u"c",
                                   u" ",
                                   u"  ",
                                   u"=",
                                   u"=\"",
                                   u"\"",
                                   u"'",
                                   u"='",
                                   u"\t",
                                   u"\r\n",
                                   u"\" ",
                                   u" b=\"1\"",
                                   u" c='2'",
                                   u" d=\"&lt;\"",
                                   u"&",
                                   u"&amp;",
                                   u"lt;",
                                   u"&quot;",
                                   u"&gt;",
                                   u"&lt;",
                                   u"&apos;",
                                   u"&#65;",
                                   u"é",
                                   u"É",
                                   u"€",
                                   u"中",
                                   u"\xD83D",
                                   u"\xDE00",
                                   u"\xFEFF",
                                   u"\xFFFF",
                                   u"?",
                                   u"!",
                                   u"/",
                                   u"-",
                                   u"<language lc=\"fr\" description=\"French\"/>",
                                   u"<document path=\"fr\\a.qtd\"/>",
                                   Text(1, u'\0'),
                                   u"["};
    Text text;
    for (std::size_t count = Below(pieces + 1); count > 0; --count) {
      text += kPieces[Below(std::size(kPieces))];
    }
    // Damage: drop, double or change a unit.
    for (std::size_t count = Below(3); count > 0 && !text.empty(); --count) {
      const std::size_t at = Below(text.size());
      switch (Below(3)) {
        case 0: text.erase(at, 1); break;
        case 1: text.insert(at, 1, text[at]); break;
        default: text[at] = static_cast<char16_t>(random_()); break;
      }
    }
    return text;
  }

  /// A typical tag, with up to 20 attributes, some of them odd or damaged.
  Text MakeTag() {
    static const Text kEnds[] = {u">", u"/>", u" />", u"", u"  ", u"\" ", u"="};
    Text tag = u"<" + MakeWord(8);
    for (std::size_t count = Below(21); count > 0; --count) {
      const Text quote = Below(12) == 0 ? u"'" : u"\"";
      tag += Below(40) == 0 ? u"\t" : Text(Below(20) == 0 ? Below(4) : 1, u' ');
      tag += MakeWord(Below(30) == 0 ? 70 : 6) + u"=" + quote;
      for (std::size_t words = Below(4); words > 0; --words) {
        static const Text kBetween[] = {u" ", u"=", u"&lt;", u"&amp;", u"/", u"'", u"é", u"."};
        tag += MakeWord(Below(30) == 0 ? 90 : 12) + kBetween[Below(std::size(kBetween))];
      }
      tag += quote;
    }
    tag += kEnds[Below(std::size(kEnds))];
    if (Below(3) == 0) {
      tag[Below(tag.size())] = u"=\"' <>/&x\u00E9"[Below(10)];
    }
    return tag;
  }

  /// The bytes of such a text, possibly truncated, with random changes.
  Bytes MakeBytes(std::size_t pieces) {
    Bytes bytes = Encode(Make(pieces));
    if (Below(4) == 0) bytes.resize(Below(bytes.size() + 1));
    for (std::size_t count = Below(3); count > 0 && !bytes.empty(); --count) {
      bytes[Below(bytes.size())] = static_cast<unsigned char>(random_());
    }
    return bytes;
  }

  /// Any units.
  Text MakeUnits(std::size_t most) {
    Text text(Below(most + 1), u'\0');
    for (char16_t& unit : text) {
      const unsigned shift = static_cast<unsigned>(Below(17));
      unit = static_cast<char16_t>((random_() & 0xFFFF) >> shift);
    }
    return text;
  }

  /// Words of several scripts: runs of units that take one, two or three bytes.
  Text MakeScripts(std::size_t most) {
    Text text;
    for (std::size_t size = Below(most + 1); text.size() < size;) {
      const std::size_t length = 1 + Below(Below(4) == 0 ? 80 : 12);
      const std::size_t bytes = Below(3);
      for (std::size_t i = 0; i < length; ++i) {
        constexpr std::size_t kFirst[] = {0, 0x80, 0x800, 0x10000};
        text += static_cast<char16_t>(kFirst[bytes] + Below(kFirst[bytes + 1] - kFirst[bytes]));
      }
    }
    return text;
  }

  /// Letters of both cases.
  Text MakeWord(std::size_t most) {
    Text word(Below(most + 1), u'\0');
    for (char16_t& unit : word) unit = u"abcdeABCDEstxyz"[Below(15)];
    return word;
  }

  std::size_t Below(std::size_t bound) { return random_() % bound; }

 private:
  std::mt19937 random_;
};

/// How often a comparison is repeated: MARL_ROUNDS if that is set, otherwise `usual`.
inline int Rounds(int usual) {
  const char* const rounds = std::getenv("MARL_ROUNDS");
  return rounds ? std::atoi(rounds) : usual;
}

}  // namespace marl::reference
