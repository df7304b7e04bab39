#include "documents/modFindFiles.h"

#include <algorithm>
#include <memory>
#include <optional>

#include "platform/FoldCase.h"
#include "support/Like.h"

namespace marl {

namespace {

/// One pattern of the list, in capitals.
class NameFilter {
 public:
  explicit NameFilter(TextView pattern) : pattern_(FoldCase(pattern)) {
    const TextView rest = TextView(pattern_).substr(pattern_.starts_with(u'*') ? 1 : 0);
    plainEnd_ = rest.size() < pattern_.size() && rest.find_first_of(u"*?#[") == TextView::npos;
  }

  bool Matches(TextView name) const {
    if (!plainEnd_) return Like(FoldCase(name), pattern_);
    // By far the most common form: any name with a given ending.
    const TextView end = TextView(pattern_).substr(1);
    return name.size() >= end.size() &&
           std::equal(end.begin(), end.end(), name.end() - std::ssize(end),
                      [](char16_t wanted, char16_t unit) { return wanted == FoldCase(unit); });
  }

 private:
  Text pattern_;
  bool plainEnd_ = false;
};

std::vector<NameFilter> Filters(TextView list) {
  std::vector<NameFilter> filters;
  for (std::size_t bar; (bar = list.find(u'|')) != TextView::npos;) {
    filters.emplace_back(list.substr(0, bar));
    list.remove_prefix(bar + 1);
  }
  return filters;
}

/// A folder that is being searched.
struct Level {
  std::size_t length;  ///< of its path, including the backslash
  std::unique_ptr<FileSearch> search;
  std::optional<bool> matches;  ///< whether its path matches `pattern`
};

}  // namespace

TextView StripNull(TextView text) { return text.substr(0, text.find(u'\0')); }

void modFindFiles::FindFiles(Text& folder, TextView pattern, TextView filters, std::int16_t recurse,
                             std::vector<Text>& result) {
  if (!folder.ends_with(u'\\')) folder += u'\\';
  const std::vector<NameFilter> wanted = Filters(filters);
  // A loop over one path, not a recursion: folders may be nested too deep for the stack.
  Text path = folder;
  std::vector<Level> levels;
  const auto enter = [&] {
    const std::size_t length = path.size();
    path += u'*';
    auto search = files_.Find(path);
    path.pop_back();
    if (search) levels.push_back({length, std::move(search), {}});
  };

  // A look into an empty message queue takes several times as long as an entry does; reading the
  // clock does not.
  std::optional<std::int64_t> lastEvents;
  const auto letMessagesThrough = [&] {
    if (lastEvents && clock_.Microseconds() - *lastEvents < kQuiet) return;
    doEvents_();
    lastEvents = clock_.Microseconds();
  };

  enter();
  FoundEntry entry;
  while (!levels.empty()) {
    Level& level = levels.back();
    path.resize(level.length);
    if (level.search->Next(entry) != kOk) {
      levels.pop_back();
      continue;
    }
    letMessagesThrough();
    if (SearchCancelled) {
      levels.pop_back();
      continue;
    }
    const TextView name = StripNull(entry.name);
    if (entry.attributes & kDirectory) {
      if (!recurse || name == u"." || name == u"..") continue;
      path += name;
      path += u'\\';
      enter();
      continue;
    }
    if (!level.matches) level.matches = Like(path, pattern);
    if (!*level.matches) continue;
    const bool found = std::any_of(wanted.begin(), wanted.end(),
                                   [&](const NameFilter& filter) { return filter.Matches(name); });
    if (!found) continue;
    Text& full = result.emplace_back();
    full.reserve(path.size() + name.size());
    full += path;
    full += name;
  }
}

}  // namespace marl
