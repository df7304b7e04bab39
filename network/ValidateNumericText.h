#pragma once

#include <cstdint>

#include "platform/forms/Controls.h"

namespace marl {

/// Keeps a field to decimal digits in a range: called at each change, it takes back one that would
/// leave anything else, and the selection with it. An empty field is good when `allowEmpty` is set.
///
/// The field's `Tag` belongs to the filter: the last good state as `text|start|length`, and "*"
/// while the filter itself writes into the field. A number with a first digit below `minimum`
/// cannot be typed, since every step on the way has to be good.
void ValidateNumericText(TextBox& field, std::int32_t minimum, std::int32_t maximum,
                         bool allowEmpty);

}  // namespace marl
