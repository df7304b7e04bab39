#pragma once

#if defined(MARL_FUZZ)

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t most);

namespace marl::fuzz {

/// Cuts marked-up text into pieces: tags, names, quoted values, and what is between them.
inline std::vector<std::string> PiecesOfMarkup(const std::string& text) {
  std::vector<std::string> pieces;
  std::string piece;
  const auto end = [&] {
    if (!piece.empty()) pieces.push_back(std::exchange(piece, {}));
  };
  for (const char c : text) {
    const bool edge = std::string_view("<>\"'= /|&;\r\n[]").find(c) != std::string_view::npos;
    if (edge) end();
    piece += c;
    if (edge) end();
  }
  end();
  return pieces;
}

/// A mutator that keeps the structure: it deletes, repeats, swaps and replaces whole pieces, with
/// `words` that the reader knows. Every third time it mutates bytes, as the fuzzer does by itself.
inline std::size_t MutatePieces(std::uint8_t* data, std::size_t size, std::size_t most,
                                unsigned seed, const std::vector<std::string_view>& words) {
  std::minstd_rand random(seed);
  const auto below = [&](std::size_t limit) { return static_cast<std::size_t>(random()) % limit; };
  if (below(3) == 0) return LLVMFuzzerMutate(data, size, most);
  std::vector<std::string> pieces = PiecesOfMarkup(std::string(data, data + size));
  for (std::size_t changes = 1 + below(3); changes > 0; --changes) {
    const std::size_t at = below(pieces.size() + 1);
    const auto place = pieces.begin() + static_cast<std::ptrdiff_t>(at);
    switch (below(5)) {
      case 0:
        if (at < pieces.size()) pieces.erase(place);
        break;
      case 1:
        if (at < pieces.size()) pieces.insert(place, std::string(pieces[at]));
        break;
      case 2:
        if (at < pieces.size()) std::swap(pieces[at], pieces[below(pieces.size())]);
        break;
      case 3:
        if (at < pieces.size()) pieces[at] = words[below(words.size())];
        break;
      default: pieces.insert(place, std::string(words[below(words.size())])); break;
    }
  }
  std::string text;
  for (const std::string& piece : pieces) text += piece;
  text.resize(std::min(text.size(), most));
  std::memcpy(data, text.data(), text.size());
  return text.size();
}

}  // namespace marl::fuzz

/// Defines the mutator of a target, with the words that its reader knows.
#define MARL_FUZZ_WORDS(...)                                                           \
  extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, \
                                                 std::size_t most, unsigned seed);     \
  extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, \
                                                 std::size_t most, unsigned seed) {    \
    return marl::fuzz::MutatePieces(data, size, most, seed, {__VA_ARGS__});            \
  }
#else
#define MARL_FUZZ_WORDS(...)
#endif
