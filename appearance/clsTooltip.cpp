#include "appearance/clsTooltip.h"

#include "platform/forms/Control.h"
#include "platform/forms/Form.h"

namespace marl {

namespace {

constexpr int kAlwaysTip = 1;
constexpr int kNoPrefix = 2;
constexpr int kBalloon = 64;
constexpr int kLastIcon = 3;
constexpr std::uintptr_t kAutoPop = 2;
constexpr std::uintptr_t kInitial = 3;
constexpr Color kTipText = SystemColor(0x12);
constexpr Color kTipBackground = SystemColor(0x18);
constexpr TextView kLineBreak = u"\r\n";

Text ReplaceAll(TextView text, TextView what, TextView with) {
  Text result;
  for (std::size_t at = 0;;) {
    const std::size_t found = text.find(what, at);
    result += text.substr(at, found - at);
    if (found == TextView::npos) return result;
    result += with;
    at = found + what.size();
  }
}

}  // namespace

clsTooltip::clsTooltip(TipWindows& tips, const Desktop& desktop) : tips_(tips), desktop_(desktop) {
  tips_.InitCommonControls();
}

clsTooltip::~clsTooltip() { Reset(); }

void clsTooltip::Reset() {
  if (window_ != 0) {
    tips_.Destroy(window_);
    window_ = 0;
  }
  style_ = -1;
}

WindowHandle clsTooltip::Create(WindowHandle parent, int left, int top, int right, int bottom,
                                TextView text, int Style, bool Centered, int Icon, TextView title,
                                Color ForeCol, Color BackCol, int HoverTime, int PopupTime) {
  Reset();
  tool_.hwnd = parent;
  const bool styleAllowed = (Style & ~(kAlwaysTip | kBalloon)) == 0;
  if (!styleAllowed || Icon < 0 || Icon > kLastIcon) return 0;

  tool_.cbSize = kToolInfoSize;
  tool_.uFlags = kToolSubclass | (Centered ? std::uint32_t{kToolCenterTip} : 0u);
  tool_.uId = 0;
  tool_.rect = {left, top, right, bottom};
  tool_.hinst = tips_.Instance();
  title_ = title;
  if (initialTitle_.empty()) initialTitle_ = title_;

  tool_.lpszText = ReplaceAll(text, u"|", kLineBreak);
  // A tip without a title has a single line.
  if (title_.empty()) tool_.lpszText = ReplaceAll(tool_.lpszText, kLineBreak, u" ");
  if (initialText_.empty()) initialText_ = tool_.lpszText;

  const auto resolve = [this](Color color) {
    return color < 0 ? desktop_.SystemColorValue(color & 0x7FFFFFFF) : color;
  };
  foreCol_ = resolve(ForeCol);
  backCol_ = resolve(BackCol);
  if (foreCol_ == backCol_) {
    // References to system colours, which the platform accepts too.
    foreCol_ = kTipText;
    backCol_ = kTipBackground;
  }
  style_ = Style;
  icon_ = Icon;
  hoverTime_ = HoverTime;
  popupTime_ = PopupTime;

  window_ = tips_.CreateTip(static_cast<std::uint32_t>(style_ | kNoPrefix), parent);
  tips_.SetTopmost(window_);
  const auto unsignedColor = [](Color color) {
    return std::uintptr_t{static_cast<std::uint32_t>(color)};
  };
  tips_.Send(window_, kTipAddTool, 0, tool_);
  tips_.Send(window_, kTipSetTitle, static_cast<std::uintptr_t>(icon_), title_);
  tips_.Send(window_, kTipSetTextColor, unsignedColor(foreCol_), std::intptr_t{0});
  tips_.Send(window_, kTipSetBackColor, unsignedColor(backCol_), std::intptr_t{0});
  tips_.Send(window_, kTipSetDelayTime, kInitial, std::intptr_t{hoverTime_});
  tips_.Send(window_, kTipSetDelayTime, kAutoPop, std::intptr_t{popupTime_});
  return window_;
}

WindowHandle clsTooltip::CreateForControl(const Control& control, TextView text, int Style,
                                          bool Centered, int Icon, TextView title, Color ForeCol,
                                          Color BackCol, int HoverTime, int PopupTime) {
  const FormPeer* const peer = control.form().peer();
  const WindowHandle window = peer ? peer->HandleOf(control) : 0;
  if (window == 0) return 0;
  PixelRect area;
  tips_.ClientRect(window, area);
  return Create(window, area.left, area.top, area.right, area.bottom, text, Style, Centered, Icon,
                title, ForeCol, BackCol, HoverTime, PopupTime);
}

}  // namespace marl
