#include "platform/Desktop.h"

#include "platform/forms/Form.h"

namespace marl {

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
    MsgBox(u"Out of memory", kCritical, u"Marl");
    End(1);
  }
  if (--depth_ == 0) closed_.clear();
}

void Desktop::End(int exitCode) {
  if (ended_) return;
  ended_ = true;
  exitCode_ = exitCode;
  Ended();
}

}  // namespace marl
