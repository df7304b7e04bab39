// Painting of a form, its picture boxes, groups and pages.

#include "platform/win32/FormWin32.h"

#include <commctrl.h>

#include <algorithm>
#include <cstddef>
#include <memory>
#include <utility>
#include <vector>

#include "platform/Painting.h"
#include "platform/win32/DesktopWin32.h"
#include "platform/win32/TabsWin32.h"

namespace marl::win32 {

CanvasWin32 FormWin32::CanvasOn(HDC context) const { return {context, desktop_.fonts(), dpi()}; }

namespace {

/// The rectangles of a window's update region (GetUpdateRgn); none if the platform cannot list
/// them.
std::vector<PixelRect> UpdateRegion(HWND window) {
  const UniqueRegion region(CreateRectRgn(0, 0, 0, 0));
  if (GetUpdateRgn(window, region.get(), FALSE) == ERROR) return {};
  const DWORD size = GetRegionData(region.get(), 0, nullptr);
  std::vector<std::byte> bytes(size);
  auto* const data = reinterpret_cast<RGNDATA*>(bytes.data());
  if (size < sizeof(RGNDATAHEADER) || !GetRegionData(region.get(), size, data)) return {};
  std::vector<PixelRect> rects;
  const auto* const first = reinterpret_cast<const RECT*>(data->Buffer);
  for (DWORD i = 0; i < data->rdh.nCount; ++i) {
    rects.push_back({first[i].left, first[i].top, first[i].right, first[i].bottom});
  }
  return rects;
}

}  // namespace

template <typename Paint>
void FormWin32::PaintBuffered(HWND window, Paint paint) {
  const std::vector<PixelRect> region = UpdateRegion(window);
  const Painting painting(window);
  const HDC screen = painting.context();
  const RECT& bounds = painting.area();
  if (bounds.left >= bounds.right || bounds.top >= bounds.bottom) return;
  // Composed off screen and shown at once, so that nothing flickers.
  PixelSurface& surface = desktop_.surface();
  for (const PixelRect& area :
       AreasToPaint(region, {bounds.left, bounds.top, bounds.right, bounds.bottom})) {
    if (!surface.Fit(area.width(), area.height())) {
      CanvasWin32 canvas = CanvasOn(screen);
      return paint(screen, canvas);
    }
    const HDC memory = surface.context();
    SetViewportOrgEx(memory, -area.left, -area.top, nullptr);
    CanvasWin32 canvas(surface, area, desktop_.fonts(), dpi());
    paint(memory, canvas);
    BitBlt(screen, area.left, area.top, area.width(), area.height(), memory, area.left, area.top,
           SRCCOPY);
  }
}

void FormWin32::PaintWindow() {
  dirty_.clear();
  PaintBuffered(window_, [&](HDC, CanvasWin32& canvas) { PaintForm(form_, canvas); });
}

// During the last message of a failed program only the background is painted: the failure may have
// been in what is painted.
LRESULT FormWin32::PaintNothing(HWND window) {
  const Painting painting(window);
  FillRect(painting.context(), &painting.area(), GetSysColorBrush(COLOR_BTNFACE));
  return 0;
}

void FormWin32::PaintPictureBox(const PictureBox& box, HDC context, CanvasWin32& canvas) {
  POINT origin = {};
  const HBRUSH background = BackgroundIn(&box, origin);
  if (!background || box.BackColor() != kButtonFace) return PaintPicture(box, canvas);
  const Size size = box.PixelSize();
  FillWith(context, {0, 0, size.width, size.height}, background, origin);
  if (box.Picture()) canvas.Draw(*box.Picture(), 0, 0);
  PaintControls(form_, &box, canvas);
}

// The native group paints itself; its labels are painted on top, in the same area only: text that
// is drawn twice gets bolder.
void FormWin32::PaintFrame(HWND frame) {
  const UniqueRegion dirty(CreateRectRgn(0, 0, 0, 0));
  GetUpdateRgn(frame, dirty.get(), FALSE);
  DefSubclassProc(frame, WM_PAINT, 0, 0);
  if (const Control* const control = ControlOf(frame)) {
    const ClientContext screen(frame);
    SelectClipRgn(screen.get(), dirty.get());
    desktop_.Event([&] {
      CanvasWin32 canvas = CanvasOn(screen.get());
      PaintControls(form_, control, canvas);
    });
  }
}

void FormWin32::EraseContainer(HWND container, HDC context) {
  RECT area;
  GetClientRect(container, &area);
  POINT origin = {};
  const HBRUSH background = BackgroundIn(ControlOf(container), origin);
  FillWith(context, area, background ? background : GetSysColorBrush(COLOR_BTNFACE), origin);
}

LRESULT FormWin32::ColorControl(HDC context, HWND child) {
  // The context may still have the previous text colour, such as that of disabled text.
  SetTextColor(context, GetSysColor(IsWindowEnabled(child) ? COLOR_BTNTEXT : COLOR_GRAYTEXT));
  SetBkColor(context, GetSysColor(COLOR_BTNFACE));
  const Control* const control = ControlOf(child);
  POINT origin = {};
  // A disabled field is plain grey.
  const HBRUSH background = control && control->kind() != ControlKind::kTextBox
                                ? BackgroundIn(control->container(), origin)
                                : nullptr;
  if (!background) return reinterpret_cast<LRESULT>(GetSysColorBrush(COLOR_BTNFACE));
  MapWindowPoints(GetParent(child), child, &origin, 1);
  LPtoDP(context, &origin, 1);
  SetBrushOrgEx(context, origin.x, origin.y, nullptr);
  SetBkMode(context, TRANSPARENT);
  return reinterpret_cast<LRESULT>(background);
}

HBRUSH FormWin32::BackgroundIn(const Control* container, POINT& origin) const {
  origin = {};
  for (; container; container = container->container()) {
    const auto found = pages_.find(container);
    const HBRUSH background = found == pages_.end() ? nullptr : found->second->Brush();
    if (background) return background;
    origin.x -= form_.resolution().PixelsX(container->Left());
    origin.y -= form_.resolution().PixelsY(container->Top());
  }
  return nullptr;
}

void FormWin32::CreatePages() {
  pages_.clear();
  if (desktop_.HighContrast()) return;  // plain, in the system's colours
  for (const auto& [control, child] : windows_) {
    if (control->kind() != ControlKind::kPictureBox) continue;
    const auto& box = static_cast<const PictureBox&>(*control);
    if (!StripOf(box)) continue;
    const Size size = box.PixelSize();
    const auto same = std::find_if(pages_.begin(), pages_.end(),
                                   [&](const auto& page) { return page.second->size() == size; });
    pages_[control] =
        same != pages_.end() ? same->second : std::make_shared<PageBackground>(size, dpi());
  }
}

LRESULT CALLBACK FormWin32::ContainerEntry(HWND window, UINT message, WPARAM w, LPARAM l, UINT_PTR,
                                           DWORD_PTR peer) noexcept {
  auto* const form = reinterpret_cast<FormWin32*>(peer);
  switch (message) {
    // The form handles the notifications of the controls inside.
    case WM_COMMAND:
    case WM_HSCROLL:
    case WM_NOTIFY:
    case WM_MEASUREITEM:
    case WM_DRAWITEM:
    case WM_CTLCOLORSTATIC:
    case WM_CTLCOLORBTN:
    case WM_CTLCOLOREDIT:
    case WM_CTLCOLORLISTBOX: return SendMessageW(form->window_, message, w, l);
    case WM_ERASEBKGND:
      // While the whole form changes, it is painted once, at the end.
      if (!form->rescaling_) form->EraseContainer(window, reinterpret_cast<HDC>(w));
      return 1;
    case WM_PRINTCLIENT:
    case WM_PAINT: {
      const Control* const control = form->ControlOf(window);
      if (!control || control->kind() != ControlKind::kPictureBox) break;
      const auto& box = static_cast<const PictureBox&>(*control);
      if (message == WM_PAINT && form->desktop_.ended()) return PaintNothing(window);
      form->desktop_.Event([&] {
        if (message == WM_PRINTCLIENT) {
          const HDC context = reinterpret_cast<HDC>(w);
          CanvasWin32 canvas = form->CanvasOn(context);
          form->PaintPictureBox(box, context, canvas);
        } else {
          form->PaintBuffered(window, [&](HDC context, CanvasWin32& canvas) {
            form->PaintPictureBox(box, context, canvas);
          });
        }
      });
      return 0;
    }
    default: return DefSubclassProc(window, message, w, l);
  }
  if (message != WM_PAINT) return DefSubclassProc(window, message, w, l);
  form->PaintFrame(window);
  return 0;
}

}  // namespace marl::win32
