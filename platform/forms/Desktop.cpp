#include "platform/forms/Desktop.h"

#include <new>
#include <stdexcept>

#include "platform/ApplicationTitle.h"
#include "platform/forms/Form.h"

namespace marl {

Form* Desktop::TopForm(const Form* except) const {
  for (auto it = forms_.rbegin(); it != forms_.rend(); ++it) {
    if (*it != except && (*it)->Visible() && (*it)->Border != BorderStyle::kNone) return *it;
  }
  return nullptr;
}

Form* Desktop::OwnerFor(const Form& form) const {
  if (form.ShowInTaskbar) return nullptr;
  if (Form* const top = TopForm(&form)) return top;
  // Without an owner a splash would get a nameless button on the taskbar.
  return form.Border == BorderStyle::kNone && !forms_.empty() ? forms_.front() : nullptr;
}

void Desktop::RunEvent(void* event, void (*call)(void* event)) {
  if (ended_) return;
  ++depth_;
  try {
    call(event);
  } catch (const ProcessEnd& end) {
    End(end.exitCode);
  } catch (const EventEnd&) {
    // The object of the event is gone.
  } catch (const RuntimeError& error) {
    Fail(error.text());
  } catch (const std::bad_alloc&) {
    Fail(u"Out of memory");
  } catch (const std::length_error&) {
    Fail(u"Out of memory");  // a text or list too long for memory
  }
  if (--depth_ == 0) closed_.clear();
}

void Desktop::Fail(TextView text) {
  StopEvents(1);
  // Without memory even for the message, the process ends without it.
  try {
    MsgBox(text, kCritical, kApplicationTitle);
  } catch (const std::bad_alloc&) {
  }
  End(1);
}

void Desktop::StopEvents(int exitCode) {
  if (ended_) return;
  ended_ = true;
  exitCode_ = exitCode;
  for (Form* form : forms_) form->OnEnded();
}

void Desktop::End(int exitCode) {
  StopEvents(exitCode);
  if (over_) return;
  over_ = true;
  Ended();
}

void Desktop::EndSession(bool ended) {
  if (!ended) return;
  if (ended_) return End(exitCode_);
  sessionEnds_ = true;
  Event([this] {
    if (!Leave()) throw ProcessEnd{};
  });
}

bool Desktop::Leave() {
  for (Form* form : forms_) {
    if (!form->EndsProgram) continue;
    form->Unload();
    return true;
  }
  return false;
}

}  // namespace marl
