#include "support/Like.h"

#include "platform/RuntimeError.h"

namespace marl {

namespace {

RuntimeError InvalidPattern() { return {93, u"Invalid pattern string"}; }

/// True if the unit is in the set; `set` is the text between the brackets.
bool InSet(char16_t unit, TextView set) {
  const bool excluded = set.size() > 1 && set[0] == u'!';
  if (excluded) set.remove_prefix(1);
  bool found = false;
  for (std::size_t i = 0; i < set.size(); ++i) {
    // A hyphen at either end belongs to the set.
    if (i + 2 < set.size() && set[i + 1] == u'-') {
      if (set[i] > set[i + 2]) throw InvalidPattern();
      found = found || (unit >= set[i] && unit <= set[i + 2]);
      i += 2;
    } else {
      found = found || unit == set[i];
    }
  }
  return found != excluded;
}

/// Length of the pattern's first element.
std::size_t ElementLength(TextView pattern) {
  if (pattern[0] != u'[') return 1;
  const std::size_t end = pattern.find(u']');
  if (end == TextView::npos) throw InvalidPattern();
  return end + 1;
}

bool Fits(char16_t unit, TextView element) {
  switch (element[0]) {
    case u'?': return true;
    case u'#': return unit >= u'0' && unit <= u'9';
    case u'[': return InSet(unit, element.substr(1, element.size() - 2));
    default: return unit == element[0];
  }
}

bool IsNothing(TextView element) { return element == u"[]"; }

}  // namespace

bool Like(TextView text, TextView pattern) {
  // Only the last star needs another try: what an earlier one has matched is as good as any other
  // match.
  TextView behindStar;
  std::size_t taken = TextView::npos;
  std::size_t at = 0;
  for (;;) {
    if (!pattern.empty() && pattern[0] == u'*') {
      pattern.remove_prefix(1);
      behindStar = pattern;
      taken = at;
      continue;
    }
    if (!pattern.empty()) {
      const TextView element = pattern.substr(0, ElementLength(pattern));
      if (IsNothing(element)) {
        pattern.remove_prefix(element.size());
        continue;
      }
      if (at < text.size() && Fits(text[at], element)) {
        pattern.remove_prefix(element.size());
        ++at;
        continue;
      }
    } else if (at == text.size()) {
      return true;
    }
    if (taken == TextView::npos || taken == text.size()) return false;
    at = ++taken;
    pattern = behindStar;
  }
}

}  // namespace marl
