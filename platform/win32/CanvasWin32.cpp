#include "platform/win32/CanvasWin32.h"

#include <algorithm>
#include <functional>
#include <numeric>

#include "platform/Painting.h"

namespace marl::win32 {

namespace {

/// The platform's name for the font of its dialogs.
const std::u16string kDialogFont = u"MS Shell Dlg 2";

}  // namespace

COLORREF Resolve(Color color) {
  if (color >= 0) return static_cast<COLORREF>(color);
  return GetSysColor(static_cast<int>(color & 0x7FFFFFFF));
}

HFONT FontCache::Get(const Font& font, int dpi) {
  std::u16string key = font.Name;
  key += u'|';
  for (std::int64_t part : {font.Size, std::int64_t{font.Charset}, std::int64_t{dpi},
                            std::int64_t{font.Bold | font.Italic << 1 | font.Underline << 2}}) {
    const std::string digits = std::to_string(part);
    key.append(digits.begin(), digits.end());
    key += u'|';
  }
  auto& kept = fonts_[key];
  if (!kept) {
    LOGFONTW description = {};
    // Ten-thousandths of a point to pixels; a negative height is that of the characters.
    const double height = static_cast<double>(font.Size) * dpi / 720000.0;
    description.lfHeight = -static_cast<LONG>(std::clamp(height, 1.0, 4000.0) + 0.5);
    description.lfWeight = font.Bold ? FW_BOLD : FW_NORMAL;
    description.lfItalic = font.Italic;
    description.lfUnderline = font.Underline;
    description.lfCharSet = static_cast<BYTE>(font.Charset);
    // As the user has set it: smooth or not, and how.
    description.lfQuality = DEFAULT_QUALITY;
    // Without a name the platform would choose any font of the character set.
    const std::u16string& name = font.Name.empty() ? kDialogFont : font.Name;
    const std::size_t length = std::min<std::size_t>(name.size(), LF_FACESIZE - 1);
    std::copy_n(Wide(name), length, description.lfFaceName);
    kept = UniqueFont(CreateFontIndirectW(&description));
  }
  return kept.get();
}

void CanvasWin32::Fill(const Box& box, Color color) {
  if (box.width <= 0 || box.height <= 0) return;
  const RECT area = {box.left, box.top, box.left + box.width, box.top + box.height};
  SetBkColor(context_, Resolve(color));
  ExtTextOutW(context_, 0, 0, ETO_OPAQUE, &area, nullptr, 0, nullptr);
}

Box CanvasWin32::Needed() const {
  if (surface_) return {area_.left, area_.top, area_.width(), area_.height()};
  RECT clip = {};
  GetClipBox(context_, &clip);
  return {clip.left, clip.top, clip.right - clip.left, clip.bottom - clip.top};
}

void CanvasWin32::Draw(const Picture& picture, int x, int y) {
  if (picture.width <= 0 || picture.height <= 0) return;
  // Only the needed part is copied.
  const Box needed = Needed();
  const int left = std::max(x, needed.left);
  const int top = std::max(y, needed.top);
  const int right = std::min(x + picture.width, needed.left + needed.width);
  const int bottom = std::min(y + picture.height, needed.top + needed.height);
  if (left >= right || top >= bottom) return;
  const int width = right - left;
  const int height = bottom - top;

  const std::uint32_t* const first =
      picture.pixels.data() +
      static_cast<std::size_t>(top - y) * static_cast<std::size_t>(picture.width);
  const auto rowFrom = [&](int line) {
    return first + static_cast<std::size_t>(line) * static_cast<std::size_t>(picture.width) +
           (left - x);
  };
  if (surface_) {
    for (int line = 0; line < height; ++line) {
      BlendPixels(surface_->RowOf(top + line - area_.top) + (left - area_.left), rowFrom(line),
                  static_cast<std::size_t>(width));
    }
    return;
  }
  std::uint32_t common = 0xFF000000;
  for (int line = 0; line < height; ++line) {
    const std::uint32_t* const row = rowFrom(line);
    common = std::accumulate(row, row + width, common, std::bit_and());
  }

  BITMAPINFO info = {};
  info.bmiHeader.biSize = sizeof info.bmiHeader;
  info.bmiHeader.biHeight = -height;
  info.bmiHeader.biPlanes = 1;
  info.bmiHeader.biBitCount = 32;
  if (common == 0xFF000000) {
    // An opaque picture is drawn directly, without a temporary bitmap.
    info.bmiHeader.biWidth = picture.width;
    SetDIBitsToDevice(context_, left, top, static_cast<DWORD>(width), static_cast<DWORD>(height),
                      left - x, 0, 0, static_cast<UINT>(height), first, &info, DIB_RGB_COLORS);
    return;
  }
  info.bmiHeader.biWidth = width;
  void* bits = nullptr;
  const UniqueBitmap bitmap(CreateDIBSection(context_, &info, DIB_RGB_COLORS, &bits, nullptr, 0));
  if (!bitmap) return;
  for (int line = 0; line < height; ++line) {
    std::copy_n(rowFrom(line), width,
                static_cast<std::uint32_t*>(bits) + static_cast<std::size_t>(line) * width);
  }
  const UniqueContext memory(CreateCompatibleDC(context_));
  const HGDIOBJ before = SelectObject(memory.get(), bitmap.get());
  const BLENDFUNCTION over = {AC_SRC_OVER, 0, 255, AC_SRC_ALPHA};
  GdiAlphaBlend(context_, left, top, width, height, memory.get(), 0, 0, width, height, over);
  SelectObject(memory.get(), before);
}

void CanvasWin32::Line(Point from, Point to, Color color) {
  const HGDIOBJ before = SelectObject(context_, GetStockObject(DC_PEN));
  SetDCPenColor(context_, Resolve(color));
  MoveToEx(context_, from.x, from.y, nullptr);
  LineTo(context_, to.x, to.y);
  SelectObject(context_, before);
}

void CanvasWin32::Write(TextView text, const Box& box, const TextStyle& style) {
  if (text.empty()) return;
  const HGDIOBJ before = SelectObject(context_, fonts_.Get(style.font, dpi_));
  SetBkMode(context_, TRANSPARENT);
  UINT flags = style.wrap ? DT_WORDBREAK : 0;
  if (!style.accessKeys) flags |= DT_NOPREFIX;
  if (style.alignment == Alignment::kCenter) flags |= DT_CENTER;
  if (style.alignment == Alignment::kRight) flags |= DT_RIGHT;
  RECT area = {box.left, box.top, box.left + box.width, box.top + box.height};
  const auto* const characters = reinterpret_cast<const wchar_t*>(text.data());
  const int length = static_cast<int>(text.size());
  SetTextColor(context_, Resolve(style.color));
  DrawTextW(context_, characters, length, &area, flags);
  SelectObject(context_, before);
}

}  // namespace marl::win32
