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

/// A token where it stands in the document, for readers in a hurry: as the UTF-8 that the file
/// holds or, where the document is no such file, as units. Good until the engine's next operation.
struct XMLToken {
  XMLTokenKind kind = xtEndOfDocument;
  std::string_view bytes;
  TextView units;

  Text text() const;
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
  // The unread remainder: units [first_, last_) of the window, then the bytes from next_ on.
  //
  // A file is cut as bytes as long as that comes to the same, that is, as long as every byte below
  // 128 is a unit by itself and every other unit is above 127: bytes before plain_ are known to be
  // so. From the first token on that goes beyond, bytes are decoded into the window, as the search
  // for the end of a token gets there.
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
