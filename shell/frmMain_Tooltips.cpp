#include "shell/frmMain.h"

#include "support/Numbers.h"

// Balloon tips of the buttons, which are rectangles of the form without windows of their own.

namespace marl {

namespace {

constexpr int kBalloonAlways = 65;
constexpr int kInformationIcon = 1;
constexpr Color kTipText = SystemColor(0x12);
constexpr Color kTipBackground = SystemColor(0x18);
constexpr int kSystemDelay = -1;

}  // namespace

void frmMain::CreateTooltips() {
  for (auto& tooltip : TooltipObjects) {
    tooltip = std::make_unique<clsTooltip>(platform_.tips, desktop());
  }
}

void frmMain::BindTooltips() {
  const PixelTwips pixel = resolution().TwipsPerPixel();
  for (std::size_t i = 0; i < kButtonCount; ++i) {
    if (!TooltipObjects[i]) continue;
    if (!imgRun[i]->Visible() || !TooltipsEnabled) {
      TooltipObjects[i]->Reset();
      continue;
    }
    const Shape& place = *shpRun[i];
    const int left = CLng(place.Left() / pixel.x);
    const int top = CLng(place.Top() / pixel.y);
    const int right = CLng(place.Width() / pixel.x + left - 1);
    const int bottom = CLng(place.Height() / pixel.y + top - 1);
    TooltipObjects[i]->Create(hWnd(), left, top, right, bottom, TooltipTexts[i], kBalloonAlways,
                              false, kInformationIcon,
                              platform_.strings.Get(kCaptionString + static_cast<int>(i)), kTipText,
                              kTipBackground, kSystemDelay, kSystemDelay);
  }
}

}  // namespace marl
