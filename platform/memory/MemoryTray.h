#pragma once

#include <algorithm>
#include <map>
#include <vector>

#include "platform/Tray.h"

namespace marl {

/// A notification area in memory, with menus that a scripted user answers.
class MemoryTray : public Tray {
 public:
  struct Call {
    int command = 0;
    NotifyIconData data;
    bool operator==(const Call&) const = default;
  };
  struct Item {
    Text caption;
    int picture = 0;
    bool checked = false;
    bool enabled = true;
    bool operator==(const Item&) const = default;
  };
  /// The contents of a menu when it was shown.
  struct Shown {
    PicturePtr pictures;
    WindowHandle owner = 0;
    std::vector<Item> items;
    Point at;
  };

  // Set by the test.
  bool refuses = false;  ///< the shell refuses icons
  std::map<WindowHandle, IconHandle> windowIcons;
  Point cursor;    ///< pixels
  int choice = 0;  ///< the item that the user chooses; 0 for none

  // Recorded for the test.
  std::vector<Call> calls;
  std::vector<NotifyIconData> icons;  ///< the icons in the area
  std::vector<Shown> shown;
  int popups = 0;  ///< number of existing menus

  /// The taskbar has restarted and has lost its icons.
  void Restart() { icons.clear(); }

  bool NotifyIcon(int command, const NotifyIconData& data) override {
    calls.push_back({command, data});
    if (refuses) return false;
    const auto known = std::find_if(icons.begin(), icons.end(), [&](const NotifyIconData& icon) {
      return icon.hWnd == data.hWnd && icon.uID == data.uID;
    });
    if (command == kNotifyAdd && known == icons.end()) {
      icons.push_back(data);
      return true;
    }
    if (command == kNotifyDelete && known != icons.end()) {
      icons.erase(known);
      return true;
    }
    return false;
  }
  IconHandle IconOf(WindowHandle window) const override {
    const auto icon = windowIcons.find(window);
    return icon == windowIcons.end() ? 0 : icon->second;
  }
  std::unique_ptr<PopupMenu> CreatePopup() override { return std::make_unique<Popup>(*this); }
  Point CursorPosition() const override { return cursor; }

 private:
  class Popup : public PopupMenu {
   public:
    explicit Popup(MemoryTray& tray) : tray_(tray) { ++tray_.popups; }
    ~Popup() override { --tray_.popups; }
    void SetImageList(PicturePtr strip) override { state_.pictures = std::move(strip); }
    void SetOwner(WindowHandle window) override { state_.owner = window; }
    void AddItem(TextView caption, int picture, bool checked, bool enabled) override {
      state_.items.push_back({Text(caption), picture, checked, enabled});
    }
    void Show(Point at) override {
      state_.at = at;
      tray_.shown.push_back(state_);
      const auto choice = static_cast<std::size_t>(tray_.choice);
      if (choice == 0 || choice > state_.items.size()) return;
      if (state_.items[choice - 1].enabled && Click) Click(tray_.choice);
    }

   private:
    MemoryTray& tray_;
    Shown state_;
  };
};

}  // namespace marl
