#pragma once

#include <string>
#include <vector>

#include "platform/forms/Form.h"

namespace marl {

/// The texts of a form on the Windows desktop that do not fit their controls, or its title bar, as
/// "control: text, needs W by H and has W by H" in pixels. Fields are not checked: they scroll.
std::vector<std::string> CutOff(const Form& form);

}  // namespace marl
