#pragma once

#include <map>
#include <set>
#include <vector>

#include "platform/FoldCase.h"
#include "platform/Icons.h"

namespace marl {

/// Icon libraries in memory; remembers who got which icon.
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

  // What the test arranges.
  std::map<Image, IconHandle> images;           ///< what each library holds
  std::map<WindowHandle, WindowHandle> owners;  ///< window -> its owner
  std::map<int, int> metrics = {
      {kIconWidth, 32}, {kIconHeight, 32}, {kSmallIconWidth, 16}, {kSmallIconHeight, 16}};

  // What has happened.
  std::vector<Text> opened;  ///< each path that was asked for
  std::map<LibraryHandle, Text> open;
  std::vector<Given> given;
  std::vector<IconHandle> destroyed;

  /// Puts an icon in both sizes of the platform into a library.
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
  /// The icon that the window has; 0 for none.
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
