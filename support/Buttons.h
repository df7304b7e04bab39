#pragma once

namespace marl {

/// Buttons of the switchboard. All that has one of something for each button takes its length from
/// here. Their table is in shell/SwitchboardModel.cpp.
inline constexpr int kButtonCount = 18;

}  // namespace marl
