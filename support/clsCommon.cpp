#include "support/clsCommon.h"

#include <algorithm>
#include <array>
#include <string>

#include "platform/ApplicationTitle.h"
#include "platform/RuntimeError.h"
#include "platform/forms/Controls.h"
#include "platform/forms/Form.h"
#include "support/Numbers.h"
#include "support/StartCommand.h"

namespace marl {

namespace {

std::size_t Length(TextView text) { return text.size(); }

// The runtime's text functions, with positions from 1; outside the text the result is empty.
TextView Left(TextView text, std::size_t length) { return text.substr(0, length); }
TextView Mid(TextView text, std::size_t from) {
  return from > text.size() ? TextView() : text.substr(from - 1);
}

/// First position of `search`, from `from` on; 0 if there is none. An empty text is found at
/// `from`.
std::size_t InStr(std::size_t from, TextView text, TextView search) {
  if (from > text.size()) return 0;
  const std::size_t at = text.find(search, from - 1);
  return at == TextView::npos ? 0 : at + 1;
}

std::size_t Within16Bits(std::size_t value) {
  if (value > 32767) throw RuntimeError::Overflow();
  return value;
}

/// The runtime's description of a failed file operation.
Text Description(Status status) {
  switch (static_cast<long>(status)) {
    case kFileNotFound:
    case kNoMoreFiles: return u"File not found";
    case kPathNotFound: return u"Path not found";
    case kSharingViolation: return u"Permission denied";
    case 112: return u"Disk full";  // ERROR_DISK_FULL
    default: return u"Path/File access error";
  }
}

/// "&h" and the hexadecimal digits of each byte, from the last to the first, as a number.
Text NumberOfBytes(std::string_view bytes) {
  constexpr char16_t kDigits[] = u"0123456789ABCDEF";
  Text digits = u"&h";
  for (auto byte = bytes.rbegin(); byte != bytes.rend(); ++byte) {
    const auto value = static_cast<unsigned char>(*byte);
    if (value >= 16) digits += kDigits[value >> 4];
    digits += kDigits[value & 15];
  }
  const std::optional<double> number = ParseNumber(digits);
  // Text that is no number stays as it is.
  return number ? NumberText(CLng(*number)) : digits;
}

}  // namespace

void clsCommon::CentreForm(Form& form) {
  const auto half = [](int whole, int part) {
    return CLng((static_cast<double>(whole) - part) / 2);
  };
  const auto centre = [&] {
    const Size screen = form.ScreenSize();
    form.Move(half(screen.width, form.Width()), half(screen.height, form.Height()));
  };
  const Resolution before = form.resolution();
  centre();
  // A form that comes from a monitor of another resolution has another size now.
  if (form.resolution() != before) centre();
}

Text clsCommon::INIFile(const std::optional<TextView>& file) const {
  return file ? Text(*file) : strParseFileName(ports_.process.ProgramPath(), 1) + u".ini";
}

Text clsCommon::GetINISetting(TextView section, TextView key, TextView defaultText,
                              std::optional<TextView> file) const {
  constexpr std::size_t kBufferSize = 1024;
  return ports_.profile.GetString(section, key, defaultText, kBufferSize, INIFile(file));
}

void clsCommon::SetINISetting(TextView section, TextView key, TextView value,
                              std::optional<TextView> file) const {
  ports_.profile.SetString(section, key, value, INIFile(file));
}

void clsCommon::HighLight(TextBox& field) {
  field.Select(0, static_cast<int>(field.Text().size()));
}

void clsCommon::StartSysInfo() const {
  bool started = false;
  Skip([&] {
    Text command;
    if (!GetKeyValue(kLocalMachine, u"SOFTWARE\\Microsoft\\Shared Tools\\MSINFO", u"PATH",
                     command)) {
      Text folder;
      if (!GetKeyValue(kLocalMachine, u"SOFTWARE\\Microsoft\\Shared Tools Location", u"MSINFO",
                       folder)) {
        return;
      }
      command = folder + u"\\MSINFO32.EXE";
      if (!ports_.files.NormalFileExists(command)) return;
    }
    started = StartCommand(ports_.shell, ports_.files, command, kShowNormal);
  });
  if (!started)
    ports_.desktop.MsgBox(ports_.strings.Get(IDS_NO_SYSTEM_INFO), kOkOnly, kApplicationTitle);
}

bool clsCommon::GetKeyValue(KeyHandle root, TextView keyPath, TextView valueName, Text& out) const {
  RegistryStore& registry = ports_.registry;
  OpenKeyHandle key;
  std::array<char, 1024> buffer = {};
  std::uint32_t kind = kRegNone;
  std::uint32_t size = buffer.size();
  if (registry.OpenKey(root, registry.ToNarrow(keyPath), kKeyQueryValue, key) != kOk ||
      registry.QueryValue(key.get(), registry.ToNarrow(valueName), kind, buffer, size) != kOk) {
    out.clear();
    return false;
  }
  std::string_view data(buffer.data(), std::min<std::size_t>(size, buffer.size()));
  if (data.ends_with('\0')) data.remove_suffix(1);
  if (kind == kRegSz) out = registry.FromNarrow(data);
  if (kind == kRegDword) out = NumberOfBytes(data);
  return true;
}

bool clsCommon::IsLoaded(std::string_view formName) const {
  const std::vector<Form*>& forms = ports_.desktop.forms();
  return std::any_of(forms.begin(), forms.end(),
                     [&](const Form* form) { return form->name() == formName; });
}

Text clsCommon::SandR(TextView text, TextView search, TextView replacement) {
  Text result(text);
  std::size_t at = Within16Bits(InStr(1, text, search));
  while (at > 0) {
    const std::size_t behind = Within16Bits(at + Length(search));
    Text next(Left(result, at - 1));
    next += replacement;
    next += Mid(result, behind);
    result = std::move(next);
    at = Within16Bits(InStr(Within16Bits(at + Length(replacement)), text, search));
  }
  return result;
}

Text clsCommon::strParseFileName(TextView path, std::int16_t part) {
  const std::size_t slash = path.rfind(u'\\');
  const std::size_t name = slash == TextView::npos ? 0 : slash + 1;
  std::size_t dot = path.rfind(u'.');
  if (dot == TextView::npos || dot < name) dot = path.size();
  switch (part) {
    case 0: return Text(path.substr(0, name));
    case 1: return Text(path.substr(name, dot - name));
    case 2: return Text(path.substr(std::min(dot + 1, path.size())));
    default: return {};
  }
}

std::int16_t clsCommon::MoveFile(TextView source, TextView destination, const AddText& add) const {
  FileSystem& files = ports_.files;
  std::int16_t failures = 0;
  const auto tell = [&](int message, Status status) {
    if (!add) return;
    Text text;
    ports_.strings.Find(message, text);
    Skip([&] { add(text + Text(destination) + u"\r\n" + Description(status)); });
  };

  Status status = kOk;
  if (FileExists(destination)) {
    status = files.Remove(destination, false);
    std::uint32_t attributes = 0;
    if (status != kOk && files.Attributes(destination, attributes) == kOk &&
        (attributes & kReadOnly)) {
      files.SetAttributes(destination, attributes & ~std::uint32_t{kReadOnly});
      tell(IDS_READ_ONLY_CLEARED, status);
      status = files.Remove(destination, false);
    }
  }
  if (status != kOk) {
    tell(IDS_DELETION_FAILED, status);
    ++failures;
  } else if (status = files.Copy(source, destination); status != kOk) {
    tell(IDS_COPY_FAILED, status);
    ++failures;
  }
  // The source is deleted even if the copy failed.
  files.Remove(source, false);
  return failures;
}

Text clsCommon::SetCaption(TextView text, const std::function<float(TextView)>& textWidth,
                           float width) {
  const auto half = static_cast<std::size_t>(RoundHalfEven(static_cast<double>(text.size()) / 2));
  TextView left = Left(text, half);
  TextView right = Mid(text, half + 1);
  Text current(text);
  while (textWidth(current) > width) {
    if (left.empty()) throw RuntimeError::InvalidCall();
    left.remove_suffix(1);
    right = Mid(right, 2);
    current = left;
    current += u"....";
    current += right;
  }
  return current;
}

Text clsCommon::FormatString(TextView pattern, const std::vector<Text>& arguments) {
  constexpr std::size_t kTokens = 6;
  Text result(pattern);
  for (std::size_t n = 0; n < kTokens; ++n) {
    const Text token{u'%', static_cast<char16_t>(u'1' + n), u'%'};
    const Text value = n < arguments.size() ? arguments[n] : Text();
    for (std::size_t at = 0; (at = result.find(token)) != Text::npos;) {
      result.replace(at, token.size(), value);
    }
  }
  return result;
}

void clsCommon::DeleteFile(TextView path) const {
  std::uint32_t attributes = 0;
  if (ports_.files.Attributes(path, attributes) == kOk && (attributes & kReadOnly)) {
    ports_.files.SetAttributes(path, attributes & ~std::uint32_t{kReadOnly});
  }
  ports_.files.Remove(path, false);
}

bool clsCommon::FileExists(TextView path) const { return ports_.files.Find(path) != nullptr; }

}  // namespace marl
