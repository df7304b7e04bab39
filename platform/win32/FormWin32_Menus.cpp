// The menus of a form.

#include "platform/win32/FormWin32.h"

#include <algorithm>

#include "platform/win32/DesktopWin32.h"

namespace marl::win32 {

namespace {

constexpr int kFirstMenuId = 20000;  // plus the entry's index among the form's controls

Text CaptionWithKeys(const Menu& entry) {
  const Text keys = ShortcutText(entry.Shortcut);
  return keys.empty() ? entry.Caption() : entry.Caption() + u'\t' + keys;
}

/// The platform's record of a menu entry. `caption` must outlive it.
MENUITEMINFOW MenuItem(const Menu& entry, const Text& caption) {
  MENUITEMINFOW item = {};
  item.cbSize = sizeof item;
  item.fMask = MIIM_FTYPE | MIIM_STATE | MIIM_ID;
  item.fType = entry.separator() ? MFT_SEPARATOR : MFT_STRING;
  item.fState = entry.Enabled() ? MFS_ENABLED : MFS_DISABLED;
  if (!entry.separator()) {
    item.fMask |= MIIM_STRING;
    item.dwTypeData = const_cast<wchar_t*>(Wide(caption));
  }
  return item;
}

}  // namespace

bool FormWin32::HasMenuBar(const Form& form) {
  return std::any_of(form.controls().begin(), form.controls().end(), [](const Control* control) {
    return control->kind() == ControlKind::kMenu && !control->container() && control->Visible();
  });
}

void FormWin32::CreateMenus() {
  for (const Control* control : form_.controls()) {
    if (control->kind() != ControlKind::kMenu) continue;
    const Menu* const parent = static_cast<const Menu*>(control)->parent();
    // A hidden top-level menu needs no menu bar, and neither do its entries.
    if (!parent && !HasMenuBar(form_)) continue;
    if (!menus_.contains(parent))
      menus_[parent] = UniqueMenu(parent ? CreatePopupMenu() : CreateMenu());
  }
  for (const auto& [parent, menu] : menus_) FillMenu(parent);
  const auto bar = menus_.find(nullptr);
  if (bar == menus_.end()) return;
  SetMenu(window_, bar->second.get());
}

void FormWin32::FillMenu(const Menu* parent) {
  const auto found = menus_.find(parent);
  if (found == menus_.end()) return;
  const HMENU menu = found->second.get();
  // Sub-menus have owners here, so they are removed, not destroyed.
  while (GetMenuItemCount(menu) > 0) RemoveMenu(menu, 0, MF_BYPOSITION);
  const auto& controls = form_.controls();
  UINT position = 0;
  for (std::size_t i = 0; i < controls.size(); ++i) {
    if (controls[i]->kind() != ControlKind::kMenu) continue;
    const auto& entry = static_cast<const Menu&>(*controls[i]);
    if (entry.parent() != parent || !entry.Visible()) continue;
    const Text caption = CaptionWithKeys(entry);
    MENUITEMINFOW item = MenuItem(entry, caption);
    item.wID = static_cast<UINT>(kFirstMenuId) + static_cast<UINT>(i);
    if (const auto own = menus_.find(&entry); own != menus_.end()) {
      item.fMask |= MIIM_SUBMENU;
      item.hSubMenu = own->second.get();
    }
    InsertMenuItemW(menu, position++, TRUE, &item);
  }
  if (!parent) DrawMenuBar(window_);
}

void FormWin32::SyncMenu(const Menu& entry, Property property) {
  if (property == Property::kCaption && entry.parent()) return SyncMenuCaption(entry);
  FillMenu(entry.parent());
  // The menu bar may now need another line, which reduces the inner height.
  if (!entry.parent()) Report();
}

// For an entry of a drop-down menu only the text changes.
void FormWin32::SyncMenuCaption(const Menu& entry) {
  const auto found = menus_.find(entry.parent());
  if (found == menus_.end() || !entry.Visible()) return;
  UINT position = 0;
  for (const Control* control : form_.controls()) {
    if (control == &entry) break;
    position += control->kind() == ControlKind::kMenu && control->container() == entry.parent() &&
                control->Visible();
  }
  const Text caption = CaptionWithKeys(entry);
  MENUITEMINFOW item = MenuItem(entry, caption);
  item.fMask &= ~static_cast<UINT>(MIIM_ID);
  SetMenuItemInfoW(found->second.get(), position, TRUE, &item);
}

Menu* FormWin32::MenuOf(int id) const {
  const auto& controls = form_.controls();
  const auto place = static_cast<std::size_t>(id - kFirstMenuId);
  if (id < kFirstMenuId || place >= controls.size()) return nullptr;
  Control* const control = controls[place];
  if (control->kind() != ControlKind::kMenu) return nullptr;
  auto* const menu = static_cast<Menu*>(control);
  return menu->Reachable() ? menu : nullptr;
}

}  // namespace marl::win32
