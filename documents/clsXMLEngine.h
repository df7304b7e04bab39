#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "platform/FileSystem.h"
#include "platform/Text.h"

namespace marl {

/// What a token is.
enum XMLTokenKind : std::int32_t {
  xtDeclaration = 0,    ///< any "<!" construct that is none of the three below
  xtInstruction = 1,    ///< "<?" up to "?>", the prolog included
  xtDocType = 2,        ///< "<!DOCTYPE" in any case, up to "]>"
  xtComment = 3,        ///< "<!--" up to "-->"
  xtCData = 4,          ///< "<![CDATA[" in any case, up to "]]>"
  xtText = 5,           ///< all before the next "<"
  xtOpenTag = 6,        ///< any other "<" construct, up to ">"
  xtCloseTag = 7,       ///< the same with "/" as second character
  xtEmptyTag = 8,       ///< the same with "/>" at its end
  xtEndOfDocument = 9,  ///< nothing is left
};

/// Cuts a document into a flat stream of tokens. No nesting, no validation: terminators are found
/// by plain search, also within quotes, and a token whose terminator is missing is all the rest.
/// The suite's files are read by exactly these rules.
class clsXMLEngine {
 public:
  explicit clsXMLEngine(const FileSystem& files) : files_(files) {}

  /// Loads a normal file, always as UTF-8; a byte order mark at its start is dropped. If false,
  /// the document opened before stays as it was.
  bool OpenDocument(TextView path);
  /// Takes `text` as the document, without a leading U+FEFF. Always true; an empty text leaves
  /// an empty document and fails as an invalid argument.
  bool OpenXMLW(TextView text);

  /// Sets `token` to the next token, raw, and returns its kind. Never fails; at the end the token
  /// is empty, as often as it is asked for.
  XMLTokenKind GetToken(Text& token);
  /// The same without a copy: the view is good until the next operation of this object.
  XMLTokenKind GetToken(TextView& token);

 private:
  bool Fill(std::size_t count);
  bool More();
  void MakeRoom();
  void Restart(std::size_t room);
  void SkipByteOrderMark();
  bool StartsWith(TextView keyword) const;
  const char16_t* First() const { return window_.get() + first_; }
  const char16_t* Last() const { return window_.get() + last_; }
  TextView Take(std::size_t count);
  TextView TakeThrough(TextView before);

  const FileSystem& files_;
  // The unread remainder: units [first_, last_) of the window, then the bytes from next_ on, which
  // are decoded as the search for the end of a token gets there.
  Bytes bytes_;
  std::size_t next_ = 0;
  std::unique_ptr<char16_t[]> window_;
  std::size_t room_ = 0;
  std::size_t first_ = 0;
  std::size_t last_ = 0;
};

}  // namespace marl
