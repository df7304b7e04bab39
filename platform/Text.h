#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace marl {

/// Text inside the program: 16-bit units, as in the platform's wide entry points. Conversion to 8
/// bits happens only in a port, to UTF-8 only in the document engine.
using Text = std::u16string;
using TextView = std::u16string_view;

/// Text in the registry and in INI files: bytes in the system's code page.
using NarrowText = std::string;

using Bytes = std::vector<unsigned char>;

}  // namespace marl
