// Writes platform/FoldCase.inc to the standard output, from the Unicode data of Debian's package
// unicode-data: fold_case /usr/share/unicode

#include <cstdio>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

namespace {

constexpr unsigned long kUnits = 0x10000;

using Mapping = std::vector<unsigned long>;

Mapping Identity() {
  Mapping mapping(kUnits);
  for (unsigned long unit = 0; unit < kUnits; ++unit) mapping[unit] = unit;
  return mapping;
}

/// The fields of a line, up to its comment, without the blanks around them.
std::vector<std::string> Fields(std::string_view line) {
  std::vector<std::string> fields(1);
  for (const char c : line.substr(0, line.find('#'))) {
    if (c == ';') {
      fields.emplace_back();
    } else if (c != ' ' && c != '\r') {
      fields.back() += c;
    }
  }
  return fields;
}

/// Reads each line whose field `condition` is one of `wanted` (any, if there is no condition) as
/// "field 0 becomes field `target`". Characters outside the basic plane are skipped.
bool Read(const std::string& path, std::size_t condition, std::string_view wanted,
          std::size_t target, Mapping& mapping) {
  std::ifstream lines(path);
  for (std::string line; std::getline(lines, line);) {
    const std::vector<std::string> fields = Fields(line);
    if (fields.size() <= target || fields[target].empty()) continue;
    if (condition != 0 && wanted.find(fields[condition]) == std::string_view::npos) continue;
    const unsigned long from = std::stoul(fields[0], nullptr, 16);
    const unsigned long to = std::stoul(fields[target], nullptr, 16);
    if (from < kUnits && to < kUnits) mapping[from] = to;
  }
  return lines.eof();
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fputs("fold_case FOLDER: the folder of CaseFolding.txt and UnicodeData.txt\n", stderr);
    return 2;
  }
  const std::string folder = std::string(argv[1]) + "/";
  Mapping folded = Identity();
  Mapping capitals = Identity();
  // C and S fold one unit to one; F and T are the full and the Turkish foldings.
  if (!Read(folder + "CaseFolding.txt", 1, "CS", 2, folded) ||
      !Read(folder + "UnicodeData.txt", 0, "", 12, capitals)) {
    std::fputs("the Unicode data cannot be read\n", stderr);
    return 1;
  }
  // Units with the same folding become their capital, if that has the same folding too.
  Mapping meeting = folded;
  for (unsigned long unit = 0; unit < kUnits; ++unit) {
    const unsigned long capital = capitals[folded[unit]];
    if (folded[capital] == folded[unit]) meeting[unit] = capital;
  }

  std::puts("// Written by tools/fold_case.cpp from the Unicode data of Debian's package");
  std::puts("// unicode-data. Do not edit.");
  std::puts("// {first, last, step, distance}");
  for (unsigned long unit = 0; unit < kUnits;) {
    const unsigned long distance = (meeting[unit] - unit) % kUnits;
    if (distance == 0) {
      ++unit;
      continue;
    }
    const auto fits = [&](unsigned long other) {
      return other < kUnits && (meeting[other] - other) % kUnits == distance;
    };
    // Every unit, or every second one, where the units in between do not change.
    const bool dense = fits(unit + 1);
    const unsigned long step = dense ? 1 : 2;
    unsigned long last = unit;
    while (fits(last + step) && (dense || meeting[last + 1] == last + 1)) last += step;
    std::printf("{0x%04lX, 0x%04lX, %lu, 0x%04lX},\n", unit, last, last == unit ? 1 : step,
                distance);
    unit = last + 1;
  }
}
