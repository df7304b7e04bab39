#pragma once

#include <filesystem>

namespace marl {

/// The checkout that the tests were built from.
std::filesystem::path SourceFolder();

}  // namespace marl
