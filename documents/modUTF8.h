#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "platform/FileSystem.h"
#include "platform/Text.h"

namespace marl {

/// Replaces "&", "<", ">" and the double quote by their entities.
Text XMLEscape(TextView text);

/// Replaces "&quot;", "&gt;", "&lt;" and "&amp;" by their characters, once: "&amp;lt;" becomes
/// "&lt;". Other entities stay as they are. The inverse of XMLEscape for any text.
Text XMLUnescape(TextView text);
/// The same in place, for `size` units; returns how many are left.
std::size_t XMLUnescape(char16_t* text, std::size_t size);

/// How far a decoding got: bytes read and units written.
struct DecodedUTF8 {
  std::size_t bytes = 0;
  std::size_t units = 0;
};

/// Decodes `size` bytes into at most `room` units at `out`, unit by unit and without validity
/// checks: the lead byte alone tells the form (below 128 one byte, below 224 two, else three), and
/// if bytes are missing at the end, the last one is used in their place. So any bytes give a text
/// of at most as many units, and the result of ToUTF8Bytes decodes to exactly its source.
DecodedUTF8 DecodeUTF8(const unsigned char* bytes, std::size_t size, char16_t* out,
                       std::size_t room);

/// Decodes all the bytes.
Text DecodeUTF8(const Bytes& bytes);

/// The one writer of structured text: keeps one output file open and writes indented lines into it
/// as UTF-8 without a byte order mark. File system failures are thrown as `RuntimeError`.
class modUTF8 {
 public:
  /// Flags of a line; they add up.
  enum LineFlag : std::uint8_t {
    kIndentBefore = 1,   ///< one blank deeper, from this line on
    kUnindentAfter = 2,  ///< one blank less, from the next line on
  };

  explicit modUTF8(FileSystem& files) : files_(files) {}

  /// Creates `path`, replacing an existing file, even a read-only one. With `echo` the lines are
  /// also collected in EchoText. A file that is still open is closed.
  void OpenUTF8File(TextView path, bool echo);
  /// Writes the indent, `text`, and a carriage return and line feed.
  void WriteUTF8Line(std::uint8_t flags, TextView text);
  /// Closes the file if one is open, and sets the indent to 0.
  void CloseUTF8File();

  /// Encodes each unit separately into OutputBytes and returns the number of bytes; a surrogate is
  /// a unit like any other and takes three bytes.
  std::int32_t ToUTF8Bytes(TextView text);
  /// Result of the last ToUTF8Bytes.
  const Bytes& OutputBytes() const { return outputBytes_; }

  /// The lines since the last OpenUTF8File with `echo`, without indents and line ends.
  const Text& EchoText() const { return echoText_; }
  /// Number of blanks before the next line.
  std::int32_t Indent() const { return indent_; }

 private:
  FileSystem& files_;
  Bytes outputBytes_;
  Text echoText_;
  std::int32_t indent_ = 0;
  std::unique_ptr<OutputFile> file_;
  bool echo_ = false;
};

}  // namespace marl
