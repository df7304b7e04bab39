#include "platform/memory/MemoryProfile.h"

#include <algorithm>

#include "platform/FoldCase.h"
#include "platform/memory/CodePage1252.h"

namespace marl {

namespace {

constexpr std::size_t kNone = static_cast<std::size_t>(-1);

bool IsBlank(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

std::string_view Trim(std::string_view text) {
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
  return text;
}

std::string_view Unquote(std::string_view value) {
  const bool quoted = value.size() >= 2 && value.front() == value.back() &&
                      (value.front() == '"' || value.front() == '\'');
  return quoted ? value.substr(1, value.size() - 2) : value;
}

TextView BeforeNul(TextView text) { return text.substr(0, text.find(u'\0')); }

bool SameName(std::string_view name, TextView wanted) {
  return SameText(FromCodePage1252(Trim(name)),
                  FromCodePage1252(Trim(ToCodePage1252(BeforeNul(wanted)))));
}

bool IsSection(std::string_view line) {
  const std::string_view trimmed = Trim(line);
  return trimmed.starts_with('[') && trimmed.find(']') != std::string_view::npos;
}

bool IsSection(std::string_view line, TextView wanted) {
  if (!IsSection(line)) return false;
  const std::string_view trimmed = Trim(line);
  return SameName(trimmed.substr(1, trimmed.rfind(']') - 1), wanted);
}

bool IsKey(std::string_view line, TextView wanted) {
  const std::string_view trimmed = Trim(line);
  const std::size_t equals = trimmed.find('=');
  return !trimmed.starts_with(';') && equals != std::string_view::npos &&
         SameName(trimmed.substr(0, equals), wanted);
}

/// Line of the section's header; kNone if there is none.
std::size_t FindSection(const std::vector<std::string>& lines, TextView section) {
  for (std::size_t i = 0; i < lines.size(); ++i) {
    if (IsSection(lines[i], section)) return i;
  }
  return kNone;
}

/// Line of the key in the section whose header is at `head`; kNone if there is none.
std::size_t FindKey(const std::vector<std::string>& lines, std::size_t head, TextView key) {
  for (std::size_t i = head + 1; i < lines.size() && !IsSection(lines[i]); ++i) {
    if (IsKey(lines[i], key)) return i;
  }
  return kNone;
}

}  // namespace

Text MemoryProfile::PathOf(TextView file) const {
  file = BeforeNul(file);
  Text path = IsBareProfile(file) ? windowsFolder + u'\\' + Text(file) : Text(file);
  if (path.size() > kLongestProfilePath) path.clear();
  return path;
}

std::vector<std::string> MemoryProfile::Lines(TextView file) const {
  std::vector<std::string> lines;
  Bytes bytes;
  if (files_.ReadAll(PathOf(file), bytes) != kOk) return lines;
  std::string line;
  for (const unsigned char byte : bytes) {
    if (byte == '\n') {
      if (line.ends_with('\r')) line.pop_back();
      lines.push_back(std::move(line));
      line.clear();
    } else {
      line += static_cast<char>(byte);
    }
  }
  if (!line.empty()) lines.push_back(std::move(line));
  return lines;
}

Text MemoryProfile::GetString(TextView section, TextView key, TextView defaultText,
                              std::size_t bufferSize, TextView file) const {
  if (bufferSize == 0) return {};
  std::string value = ToCodePage1252(BeforeNul(defaultText));
  while (value.ends_with(' ')) value.pop_back();
  const std::vector<std::string> lines = Lines(file);
  const std::size_t head = FindSection(lines, section);
  if (head != kNone) {
    const std::size_t at = FindKey(lines, head, key);
    if (at != kNone) {
      value = Unquote(Trim(std::string_view(lines[at]).substr(lines[at].find('=') + 1)));
    }
  }
  value.resize(std::min(value.size(), bufferSize - 1));
  return FromCodePage1252(value);
}

bool MemoryProfile::SetString(TextView section, TextView key, TextView value, TextView file) {
  std::vector<std::string> lines = Lines(file);
  const std::string name(Trim(ToCodePage1252(BeforeNul(key))));
  const std::string line = name + '=' + ToCodePage1252(BeforeNul(value));
  const std::size_t head = FindSection(lines, section);
  if (head == kNone) {
    lines.push_back('[' + std::string(Trim(ToCodePage1252(BeforeNul(section)))) + ']');
    lines.push_back(line);
  } else if (const std::size_t at = FindKey(lines, head, key); at != kNone) {
    lines[at] = line;
  } else {
    // After the section's last line that is not blank.
    std::size_t place = head + 1;
    for (std::size_t i = head + 1; i < lines.size() && !IsSection(lines[i]); ++i) {
      if (!Trim(lines[i]).empty()) place = i + 1;
    }
    lines.insert(lines.begin() + static_cast<std::ptrdiff_t>(place), line);
  }
  std::string content;
  for (const std::string& each : lines) content += each + "\r\n";
  if (IsBareProfile(BeforeNul(file))) files_.MakeFolder(windowsFolder);
  Status status = kOk;
  const auto output = files_.Create(PathOf(file), status);
  return output && output->Write(content.data(), content.size()) == kOk;
}

}  // namespace marl
