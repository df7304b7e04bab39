#pragma once

#include <cstdint>

#include "platform/forms/Controls.h"

namespace marl {

/// Restricts a field to decimal digits in a range: called at each change, it undoes one that leaves
/// anything else, and restores the selection. An empty field is valid if `allowEmpty` is set.
///
/// The field's `Tag` belongs to the filter: it holds the last valid state as `text|start|length`,
/// and "*" while the filter itself writes into the field. Every intermediate state must be valid,
/// so a number cannot be typed if its first digit is below `minimum`.
void ValidateNumericText(TextBox& field, std::int32_t minimum, std::int32_t maximum,
                         bool allowEmpty);

}  // namespace marl
