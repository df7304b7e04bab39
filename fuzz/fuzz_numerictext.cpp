#include <string>

#include "network/ValidateNumericText.h"
#include "platform/memory/MemoryDesktop.h"
#include "tests/unit/FuzzTarget.h"

namespace {

using namespace marl;

class NumberForm : public Form {
 public:
  explicit NumberForm(Desktop& desktop) : Form(desktop, "frmNumber") {}
  TextBox field{*this, "txtNumber"};
};

/// True for digits whose value is within the range; an empty text is good on request.
bool IsAllowed(const Text& text, std::int64_t lowest, std::int64_t highest, bool empty) {
  if (text.empty()) return empty;
  std::string digits;
  for (const char16_t unit : text) {
    if (unit < u'0' || unit > u'9') return false;
    if (unit != u'0' || !digits.empty()) digits += static_cast<char>(unit);
  }
  if (digits.size() > 10) return false;
  const std::int64_t value = digits.empty() ? 0 : std::stoll(digits);
  return value >= lowest && value <= highest;
}

}  // namespace

// Any edits of a number field: it takes what is good, and else stays as it was, caret included. The
// first byte chooses the field; each edit is a position, a length, and units up to a NUL.
MARL_FUZZ_TARGET(numerictext) {
  if (size == 0) return;
  const bool port = data[0] % 2 == 0;
  const std::int32_t lowest = port ? 0 : 1;
  const std::int32_t highest = port ? 65536 : 20000;
  MemoryDesktop desktop;
  NumberForm form(desktop);
  TextBox& field = form.field;
  field.Change = [&] { ValidateNumericText(field, lowest, highest, port); };

  Text good;
  std::size_t at = 1;
  while (at + 2 <= size) {
    Text text = field.Text();
    const std::size_t from = data[at++] % (text.size() + 1);
    const std::size_t length = data[at++] % (text.size() - from + 1);
    Text typed;
    while (at < size && data[at] != 0) typed += static_cast<char16_t>(data[at++]);
    ++at;
    text.replace(from, length, typed);
    const Text before = field.Text();
    const int caret = static_cast<int>(from + typed.size());
    desktop.Event([&] { field.UserEdit(text, caret, 0); });
    fuzz::Expect(!desktop.ended(), "no edit fails");
    if (text == before || IsAllowed(text, lowest, highest, port)) {
      fuzz::Expect(field.Text() == text, "a good edit is taken");
      good = text;
    } else {
      fuzz::Expect(field.Text() == good, "a bad edit does not happen");
    }
  }
}
