#include "platform/Desktop.h"

#include <new>
#include <stdexcept>

#include "platform/forms/Form.h"

namespace marl {

namespace {

constexpr int kTwipsPerInch = 1440;

int Scale(int value, int factor, int divisor) {
  const std::int64_t product = std::int64_t{value} * factor;
  const std::int64_t half = divisor / 2;
  return static_cast<int>((product >= 0 ? product + half : product - half) / divisor);
}

}  // namespace

PixelTwips Desktop::TwipsPerPixel() const {
  const Size dpi = Dpi();
  return {1.0 * kTwipsPerInch / dpi.width, 1.0 * kTwipsPerInch / dpi.height};
}
int Desktop::PixelsX(int twips) const { return Scale(twips, Dpi().width, kTwipsPerInch); }
int Desktop::PixelsY(int twips) const { return Scale(twips, Dpi().height, kTwipsPerInch); }
int Desktop::TwipsX(int pixels) const { return Scale(pixels, kTwipsPerInch, Dpi().width); }
int Desktop::TwipsY(int pixels) const { return Scale(pixels, kTwipsPerInch, Dpi().height); }
float Desktop::TwipsAtX(int pixels) const { return static_cast<float>(TwipsPerPixel().x * pixels); }
float Desktop::TwipsAtY(int pixels) const { return static_cast<float>(TwipsPerPixel().y * pixels); }

void Desktop::Event(const std::function<void()>& event) {
  if (ended_) return;
  ++depth_;
  try {
    event();
  } catch (const ProcessEnd& end) {
    End(end.exitCode);
  } catch (const RuntimeError& error) {
    MsgBox(error.text(), kCritical, u"Marl");
    End(1);
  } catch (const std::bad_alloc&) {
    EndOutOfMemory();
  } catch (const std::length_error&) {
    EndOutOfMemory();  // a text or list that no memory could hold
  }
  if (--depth_ == 0) closed_.clear();
}

void Desktop::EndOutOfMemory() {
  MsgBox(u"Out of memory", kCritical, u"Marl");
  End(1);
}

void Desktop::End(int exitCode) {
  if (ended_) return;
  ended_ = true;
  exitCode_ = exitCode;
  Ended();
}

}  // namespace marl
