#pragma once

#include "platform/Text.h"
#include "resources/version.h"  // written by the build

namespace marl {

/// The version as text.
constexpr TextView kVersion = u"" MARL_VERSION;

}  // namespace marl
