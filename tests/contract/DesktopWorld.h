#pragma once

#include <cstdint>
#include <memory>

#include "platform/forms/Form.h"
#include "tests/contract/Backends.h"

namespace marl {

std::unique_ptr<Desktop> NewDesktop(Backend backend);

/// A test that shows a dialog of the platform over a loaded form.
class DialogTest : public BackendTest {
 protected:
  DialogTest() { form->Load(); }
  ~DialogTest() override { form->Unload(); }

  std::unique_ptr<Desktop> desktop = NewDesktop(GetParam());
  std::unique_ptr<Form> form = std::make_unique<Form>(*desktop, "frmAny");
};

#ifdef _WIN32
/// Presses OK, or Cancel, in each dialog of this thread that is visible while it lives.
class DialogAnswer {
 public:
  explicit DialogAnswer(bool accept);
  ~DialogAnswer();
  DialogAnswer(const DialogAnswer&) = delete;
  DialogAnswer& operator=(const DialogAnswer&) = delete;

 private:
  std::uintptr_t timer_;
};
#endif

}  // namespace marl
