#pragma once

#include <map>
#include <set>
#include <vector>

#include "platform/FoldCase.h"
#include "platform/Icons.h"

namespace marl {

/// Icon libraries in memory; records which window got which icon.
class MemoryIcons : public Icons {
 public:
  struct Image {
    Text file;
    int id = 0;
    int width = 0;
    int height = 0;
    auto operator<=>(const Image&) const = default;
  };
  struct Given {
    WindowHandle window = 0;
    int which = 0;
    IconHandle icon = 0;
    bool operator==(const Given&) const = default;
  };

  // Set by the test.
  std::map<Image, IconHandle> images;           ///< contents of each library
  std::map<WindowHandle, WindowHandle> owners;  ///< window -> its owner
  std::map<int, int> metrics = {
      {kIconWidth, 32}, {kIconHeight, 32}, {kSmallIconWidth, 16}, {kSmallIconHeight, 16}};

  // Recorded for the test.
  std::vector<Text> opened;  ///< all paths that were opened, or tried
  std::map<LibraryHandle, Text> open;
  std::vector<Given> given;
  std::vector<IconHandle> destroyed;

  /// Adds an icon to a library, in both system sizes.
  void Put(TextView library, int id, IconHandle bigIcon, IconHandle smallIcon) {
    images[{Text(library), id, metrics[kIconWidth], metrics[kIconHeight]}] = bigIcon;
    images[{Text(library), id, metrics[kSmallIconWidth], metrics[kSmallIconHeight]}] = smallIcon;
  }

  LibraryHandle OpenLibrary(TextView path) override {
    opened.emplace_back(path);
    for (const auto& [image, icon] : images) {
      if (!SameText(image.file, path)) continue;
      open[++last_] = image.file;
      return last_;
    }
    return 0;
  }
  void CloseLibrary(LibraryHandle library) override { open.erase(library); }
  IconHandle Load(LibraryHandle library, int id, int width, int height) override {
    const auto from = open.find(library);
    if (from == open.end()) return 0;
    const auto image = images.find({from->second, id, width, height});
    return image == images.end() ? 0 : image->second;
  }
  void Destroy(IconHandle icon) override { destroyed.push_back(icon); }
  int Metric(int index) const override {
    const auto metric = metrics.find(index);
    return metric == metrics.end() ? 0 : metric->second;
  }
  WindowHandle OwnerOf(WindowHandle window) const override {
    const auto owner = owners.find(window);
    return owner == owners.end() ? 0 : owner->second;
  }
  void SetIcon(WindowHandle window, int which, IconHandle icon) override {
    given.push_back({window, which, icon});
  }
  /// The window's icon; 0 if there is none.
  IconHandle IconOf(WindowHandle window, int which) const {
    for (auto last = given.rbegin(); last != given.rend(); ++last) {
      if (last->window == window && last->which == which) return last->icon;
    }
    return 0;
  }

 private:
  LibraryHandle last_ = 0;
};

}  // namespace marl
