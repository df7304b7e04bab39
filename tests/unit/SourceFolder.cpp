#include "tests/unit/SourceFolder.h"

namespace marl {

std::filesystem::path SourceFolder() { return MARL_SOURCE_DIR; }

}  // namespace marl
