#include <algorithm>
#include <cstring>
#include <fstream>
#include <iterator>
#include <map>
#include <set>
#include <string_view>

#include "tests/desktop/Switchboard.h"

// The files of the program as they were built: their protections, and what they import. Their
// format is that of executable files of Windows (PE/COFF).

namespace marl::desktop {

namespace {

using Names = std::set<std::string>;

/// An executable file. Reading outside of it fails the test and gives zeros.
class Image {
 public:
  explicit Image(const std::wstring& path) {
    std::ifstream file(path.c_str(), std::ios::binary);
    bytes_.assign(std::istreambuf_iterator<char>(file), {});
    header_ = At<IMAGE_DOS_HEADER>(0).e_lfanew;
    const auto first = header_ + sizeof(DWORD) + sizeof(IMAGE_FILE_HEADER) + OptionalSize();
    for (WORD i = 0; i < File().NumberOfSections; ++i) {
      sections_.push_back(At<IMAGE_SECTION_HEADER>(first + i * sizeof(IMAGE_SECTION_HEADER)));
    }
  }

  bool Is64() const { return Magic() == IMAGE_NT_OPTIONAL_HDR64_MAGIC; }
  IMAGE_FILE_HEADER File() const { return At<IMAGE_FILE_HEADER>(header_ + sizeof(DWORD)); }
  /// The two kinds of optional header have the same fields at the same places up to the sizes of
  /// stack and heap, apart from the base.
  IMAGE_OPTIONAL_HEADER32 Optional() const { return At<IMAGE_OPTIONAL_HEADER32>(OptionalPlace()); }
  IMAGE_OPTIONAL_HEADER64 Optional64() const {
    return At<IMAGE_OPTIONAL_HEADER64>(OptionalPlace());
  }
  IMAGE_DATA_DIRECTORY Directory(int index) const {
    return Is64() ? Optional64().DataDirectory[index] : Optional().DataDirectory[index];
  }
  WORD Flags() const { return Optional().DllCharacteristics; }
  const std::vector<IMAGE_SECTION_HEADER>& sections() const { return sections_; }
  bool Contains(std::string_view text) const { return bytes_.find(text) != std::string::npos; }

  /// The imported functions of each library, names in lower case for libraries; "#" for an ordinal.
  std::map<std::string, Names> Imports() const {
    std::map<std::string, Names> imports;
    const IMAGE_DATA_DIRECTORY table = Directory(IMAGE_DIRECTORY_ENTRY_IMPORT);
    if (table.VirtualAddress == 0) return imports;
    for (std::size_t at = Place(table.VirtualAddress);; at += sizeof(IMAGE_IMPORT_DESCRIPTOR)) {
      const auto entry = At<IMAGE_IMPORT_DESCRIPTOR>(at);
      if (entry.Name == 0) return imports;
      std::string library = TextAt(Place(entry.Name));
      std::transform(library.begin(), library.end(), library.begin(),
                     [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
      Names& functions = imports[library];
      const std::size_t width = Is64() ? 8 : 4;
      const DWORD list = entry.OriginalFirstThunk ? entry.OriginalFirstThunk : entry.FirstThunk;
      for (std::size_t thunk = Place(list);; thunk += width) {
        const auto value = Is64() ? At<std::uint64_t>(thunk) : At<std::uint32_t>(thunk);
        if (value == 0) break;
        const bool ordinal = (value >> (8 * width - 1)) != 0;
        functions.insert(ordinal ? "#" + std::to_string(value & 0xFFFF)
                                 : TextAt(Place(static_cast<DWORD>(value)) + sizeof(WORD)));
      }
    }
  }

 private:
  template <typename T>
  T At(std::size_t place) const {
    T value = {};
    if (place + sizeof value > bytes_.size()) {
      ADD_FAILURE() << "outside of the file: " << place;
      return value;
    }
    std::memcpy(&value, bytes_.data() + place, sizeof value);
    return value;
  }
  std::string TextAt(std::size_t place) const {
    return place < bytes_.size() ? bytes_.c_str() + place : "";
  }
  /// Where in the file an address of the loaded image is.
  std::size_t Place(DWORD address) const {
    for (const IMAGE_SECTION_HEADER& section : sections_) {
      if (address >= section.VirtualAddress &&
          address - section.VirtualAddress < section.SizeOfRawData) {
        return section.PointerToRawData + (address - section.VirtualAddress);
      }
    }
    return bytes_.size();
  }
  std::size_t OptionalPlace() const {
    return static_cast<std::size_t>(header_) + sizeof(DWORD) + sizeof(IMAGE_FILE_HEADER);
  }
  WORD OptionalSize() const { return File().SizeOfOptionalHeader; }
  WORD Magic() const { return At<WORD>(OptionalPlace()); }

  std::string bytes_;
  LONG header_ = 0;
  std::vector<IMAGE_SECTION_HEADER> sections_;
};

/// The libraries that the program may import: Windows 7 takes them from the system folder whatever
/// lies beside the program (KnownDLLs), and comctl32.dll from the folder of the version that the
/// manifest asks for.
const Names kLibraries = {
    "advapi32.dll", "comctl32.dll", "comdlg32.dll", "gdi32.dll",    "imm32.dll",
    "kernel32.dll", "msvcrt.dll",   "ole32.dll",    "oleaut32.dll", "rpcrt4.dll",
    "setupapi.dll", "shell32.dll",  "shlwapi.dll",  "user32.dll",   "ws2_32.dll",
};

/// The functions that have come after Windows 7 in these libraries and have an import library, and
/// so could be imported by mistake.
constexpr std::string_view kNewer[] = {
    // Windows 8
    "AddDllDirectory",
    "CopyFile2",
    "CreateFile2",
    "GetCurrentThreadStackLimits",
    "GetPointerInfo",
    "GetPointerType",
    "GetProcessMitigationPolicy",
    "GetSystemTimePreciseAsFileTime",
    "PrefetchVirtualMemory",
    "RegisterPointerDeviceNotifications",
    "RemoveDllDirectory",
    "SetDefaultDllDirectories",
    "SetProcessMitigationPolicy",
    "WaitOnAddress",
    "WakeByAddressAll",
    "WakeByAddressSingle",
    "GetProcessInformation",
    "SetProcessInformation",
    "SetThreadInformation",
    "GetThreadInformation",
    "LoadPackagedLibrary",
    "GetFirmwareType",
    "IsNativeVhdBoot",
    // Windows 8.1
    "GetDpiForMonitor",
    "GetProcessDpiAwareness",
    "SetProcessDpiAwareness",
    "LogicalToPhysicalPointForPerMonitorDPI",
    "PhysicalToLogicalPointForPerMonitorDPI",
    // Windows 10
    "AdjustWindowRectExForDpi",
    "AreDpiAwarenessContextsEqual",
    "EnableNonClientDpiScaling",
    "GetAwarenessFromDpiAwarenessContext",
    "GetDialogDpiChangeBehavior",
    "GetDpiForSystem",
    "GetDpiForWindow",
    "GetSystemDpiForProcess",
    "GetSystemMetricsForDpi",
    "GetThreadDpiAwarenessContext",
    "GetThreadDpiHostingBehavior",
    "GetWindowDpiAwarenessContext",
    "GetWindowDpiHostingBehavior",
    "IsWow64Process2",
    "IsValidDpiAwarenessContext",
    "SetDialogControlDpiChangeBehavior",
    "SetDialogDpiChangeBehavior",
    "SetProcessDpiAwarenessContext",
    "SetThreadDescription",
    "GetThreadDescription",
    "SetThreadDpiAwarenessContext",
    "SetThreadDpiHostingBehavior",
    "SystemParametersInfoForDpi",
};

std::wstring BesideTheProgram(const wchar_t* name) {
  return g_programs.marl.substr(0, g_programs.marl.rfind(L'\\') + 1) + name;
}

}  // namespace

TEST(Image, ProgramIsProtectedInEveryWayThatItsFormatKnows) {
  const Image program(g_programs.marl);
  EXPECT_EQ(program.Is64(), sizeof(void*) == 8) << "of the width of the tests";
  const WORD flags = program.Flags();
  EXPECT_TRUE(flags & IMAGE_DLLCHARACTERISTICS_DYNAMIC_BASE) << "ASLR";
  EXPECT_TRUE(flags & IMAGE_DLLCHARACTERISTICS_NX_COMPAT) << "DEP";
  EXPECT_TRUE(flags & IMAGE_DLLCHARACTERISTICS_TERMINAL_SERVER_AWARE);
  EXPECT_FALSE(flags & IMAGE_DLLCHARACTERISTICS_NO_ISOLATION) << "its manifest counts";
  EXPECT_FALSE(program.File().Characteristics & IMAGE_FILE_RELOCS_STRIPPED);
  EXPECT_GT(program.Directory(IMAGE_DIRECTORY_ENTRY_BASERELOC).Size, 0u)
      << "without its table the address cannot be chosen";
  if (program.Is64()) {
    constexpr WORD kHighEntropy = 0x20;
    EXPECT_TRUE(flags & kHighEntropy);
    EXPECT_TRUE(program.File().Characteristics & IMAGE_FILE_LARGE_ADDRESS_AWARE);
    EXPECT_GT(program.Optional64().ImageBase, 0xFFFFFFFFu);
  }
}

TEST(Image, ProgramIsOneOfWindowsSevenWithWindows) {
  const IMAGE_OPTIONAL_HEADER32 header = Image(g_programs.marl).Optional();
  EXPECT_EQ(header.Subsystem, IMAGE_SUBSYSTEM_WINDOWS_GUI);
  EXPECT_EQ(header.MajorSubsystemVersion, 6);
  EXPECT_EQ(header.MinorSubsystemVersion, 1);
  EXPECT_EQ(header.MajorOperatingSystemVersion, 6);
  EXPECT_EQ(header.MinorOperatingSystemVersion, 1);
}

TEST(Image, NoSectionCanBeWrittenAndExecuted) {
  for (const std::wstring& path : {g_programs.marl, BesideTheProgram(L"q17icl.oru")}) {
    const Image image(path);
    EXPECT_FALSE(image.sections().empty());
    for (const IMAGE_SECTION_HEADER& section : image.sections()) {
      const DWORD both = IMAGE_SCN_MEM_WRITE | IMAGE_SCN_MEM_EXECUTE;
      EXPECT_NE(section.Characteristics & both, both)
          << ToUtf8(path) << " " << reinterpret_cast<const char*>(section.Name);
    }
  }
}

// The text is linked only if a protected function refers to it.
TEST(Image, FunctionsWithArraysAreProtected) {
  EXPECT_TRUE(Image(g_programs.marl).Contains("Marl: the stack is damaged"));
  EXPECT_FALSE(Image(BesideTheProgram(L"q17icl.oru")).Contains("Marl: the stack is damaged"));
}

TEST(Image, ProgramImportsOnlyLibrariesOfTheSystemFolder) {
  const std::map<std::string, Names> imports = Image(g_programs.marl).Imports();
  EXPECT_TRUE(imports.contains("kernel32.dll"));
  for (const auto& [library, functions] : imports) {
    // The universal C runtime library, in builds that use it, is a set of names without files.
    if (library.starts_with("api-ms-win-crt-")) continue;
    EXPECT_TRUE(kLibraries.contains(library)) << library;
  }
}

TEST(Image, ProgramImportsNothingThatIsNewerThanWindowsSeven) {
  std::size_t count = 0;
  for (const auto& [library, functions] : Image(g_programs.marl).Imports()) {
    count += functions.size();
    for (const std::string& name : functions) {
      EXPECT_EQ(std::find(std::begin(kNewer), std::end(kNewer), name), std::end(kNewer))
          << library << " " << name;
    }
  }
  EXPECT_GT(count, 100u) << "the table was read";
}

TEST(Image, IconLibraryHasNoCode) {
  const Image library(BesideTheProgram(L"q17icl.oru"));
  EXPECT_EQ(library.Is64(), sizeof(void*) == 8);
  EXPECT_TRUE(library.File().Characteristics & IMAGE_FILE_DLL);
  EXPECT_EQ(library.Optional().AddressOfEntryPoint, 0u);
  EXPECT_TRUE(library.Imports().empty());
  EXPECT_TRUE(library.Flags() & IMAGE_DLLCHARACTERISTICS_DYNAMIC_BASE);
  EXPECT_TRUE(library.Flags() & IMAGE_DLLCHARACTERISTICS_NX_COMPAT);
}

}  // namespace marl::desktop
