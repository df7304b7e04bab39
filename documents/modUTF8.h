#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "platform/FileSystem.h"
#include "platform/Text.h"

namespace marl {

/// Replaces "&", "<", ">" and the double quote by their entities.
Text XMLEscape(TextView text);

/// Replaces "&quot;", "&gt;", "&lt;" and "&amp;" by what they stand for, once: "&amp;lt;" gives
/// "&lt;". Every other entity stays as it is. The inverse of XMLEscape for any text.
Text XMLUnescape(TextView text);
/// The same in place, for `size` units; returns how many are left.
std::size_t XMLUnescape(char16_t* text, std::size_t size);

/// How far a decoding came: bytes taken and units given.
struct DecodedUTF8 {
  std::size_t bytes = 0;
  std::size_t units = 0;
};

/// Decodes `size` bytes into at most `room` units at `out`, unit by unit and without validity
/// checks: the lead byte alone tells the form (below 128 one byte, below 224 two, else three), and
/// at the end of the bytes the last one stands in for those that are missing. So any bytes give
/// a text of at most as many units, and what ToUTF8Bytes made gives its text back exactly.
DecodedUTF8 DecodeUTF8(const unsigned char* bytes, std::size_t size, char16_t* out,
                       std::size_t room);

/// Decodes all the bytes.
Text DecodeUTF8(const Bytes& bytes);

/// The one writer of structured text: keeps one output file open and writes indented lines into
/// it as UTF-8 without a byte order mark. Failures of the file system leave as `RuntimeError`.
class modUTF8 {
 public:
  /// Flags of a line; they add up.
  enum LineFlag : std::uint8_t {
    kIndentBefore = 1,   ///< one blank deeper, from this line on
    kUnindentAfter = 2,  ///< one blank less, from the next line on
  };

  explicit modUTF8(FileSystem& files) : files_(files) {}

  /// Creates `path` in place of a file of that name, read-only or not. With `echo` the lines are
  /// also collected in EchoText. A file that is still open is lost track of: close it first.
  void OpenUTF8File(TextView path, bool echo);
  /// Writes `text` behind the indent, with carriage return and line feed.
  void WriteUTF8Line(std::uint8_t flags, TextView text);
  /// Closes the file if one is open, and sets the indent to 0.
  void CloseUTF8File();

  /// Encodes each unit by itself into OutputBytes and returns their number; surrogates are units
  /// like any other and take three bytes each.
  std::int32_t ToUTF8Bytes(TextView text);
  /// Result of the last ToUTF8Bytes.
  const Bytes& OutputBytes() const { return outputBytes_; }

  /// The lines since the last echoing OpenUTF8File, without indents and line ends.
  const Text& EchoText() const { return echoText_; }
  /// Blanks before the next line.
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
