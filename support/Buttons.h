#pragma once

namespace marl {

/// Number of buttons of the switchboard, for everything that has one element per button. The
/// buttons themselves are in shell/SwitchboardModel.cpp.
inline constexpr int kButtonCount = 18;

}  // namespace marl
