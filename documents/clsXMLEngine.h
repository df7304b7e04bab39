#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

#include "platform/FileSystem.h"
#include "platform/Text.h"

namespace marl {

/// What a token is.
enum XMLTokenKind : std::int32_t {
  xtDeclaration = 0,    ///< any other "<!" construct
  xtInstruction = 1,    ///< "<?" up to "?>", including the prolog
  xtDocType = 2,        ///< "<!DOCTYPE" in any case, up to "]>"
  xtComment = 3,        ///< "<!--" up to "-->"
  xtCData = 4,          ///< "<![CDATA[" in any case, up to "]]>"
  xtText = 5,           ///< everything before the next "<"
  xtOpenTag = 6,        ///< any other "<" construct, up to ">"
  xtCloseTag = 7,       ///< the same with "/" as its second character
  xtEmptyTag = 8,       ///< the same with "/>" at its end
  xtEndOfDocument = 9,  ///< nothing is left
};

/// A view of a token in the document, without decoding: UTF-8 for a file, units otherwise. Valid
/// until the engine's next operation.
struct XMLToken {
  XMLTokenKind kind = xtEndOfDocument;
  std::string_view bytes;
  TextView units;

  Text text() const;
};

/// Cuts a document into a flat stream of tokens, without nesting or validation: terminators are
/// found by plain search, even within quotes, and a token without its terminator extends to the
/// end. All programs of the suite read their files by these rules, so they must not be made
/// stricter.
class clsXMLEngine {
 public:
  explicit clsXMLEngine(const FileSystem& files) : files_(files) {}

  /// Loads a normal file, always as UTF-8, without its byte order mark. If false, the current
  /// document stays as it was.
  bool OpenDocument(TextView path);
  /// Takes `text` as the document, without a leading U+FEFF. Always true; an empty text leaves an
  /// empty document and throws "Invalid procedure call or argument".
  bool OpenXMLW(TextView text);

  /// Sets `token` to the next token, raw, and returns its kind. Never fails; at the end of the
  /// document the token is empty, however often it is called.
  XMLTokenKind GetToken(Text& token);
  /// The same without a copy: the view is valid until the next operation of this object.
  XMLTokenKind GetToken(TextView& token);
  /// The same without decoding.
  XMLTokenKind GetToken(XMLToken& token);

 private:
  bool TakeBytes(XMLToken& token);
  bool IsPlain(std::size_t end);
  XMLTokenKind TakeUnits(TextView& token);
  bool Fill(std::size_t count);
  bool More();
  void MakeRoom();
  void Restart(std::size_t room);
  const char16_t* First() const { return window_.get() + first_; }
  TextView Window() const { return TextView(First(), last_ - first_); }

  const FileSystem& files_;
  // The unread rest: units [first_, last_) of the window, then the bytes from next_ on.
  //
  // A file is cut as bytes while that gives the same tokens: while every byte below 128 is a unit
  // and all other units are above 127. Bytes before plain_ are known to be like that. From the
  // first token that is not, bytes are decoded into the window as the search for the token's end
  // advances.
  Bytes bytes_;
  std::size_t next_ = 0;
  std::size_t plain_ = 0;
  bool byUnits_ = true;
  std::unique_ptr<char16_t[]> window_;
  std::size_t room_ = 0;
  std::size_t first_ = 0;
  std::size_t last_ = 0;
};

}  // namespace marl
