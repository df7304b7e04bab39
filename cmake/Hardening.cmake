# The protections of every program and library for Windows, said out loud: a compiler's defaults
# differ from one version to the next. The test desktop/Image checks them in the built files.
#
#   --dynamicbase       loaded at a random address (ASLR); the table of what depends on the address
#                       comes with it
#   --high-entropy-va   one of very many addresses, in 64 bits
#   --nxcompat          data is never executed (DEP)
#   --tsaware           knows that several users may be logged on
#   --*-version 6.1     Windows 7 is the oldest that runs it
add_library(marl_image INTERFACE)
target_link_options(marl_image INTERFACE
  LINKER:--dynamicbase,--nxcompat,--tsaware
  LINKER:--major-os-version=6,--minor-os-version=1
  LINKER:--major-subsystem-version=6,--minor-subsystem-version=1)
if(CMAKE_SIZEOF_VOID_P EQUAL 8)
  target_link_options(marl_image INTERFACE LINKER:--high-entropy-va)
endif()

# An overrun of a local array ends the process before its function returns. What the compiler calls
# for it is our own (platform/win32/StackGuard.cpp), so nothing is passed to the linker.
target_compile_options(marl_flags INTERFACE -fstack-protector-strong)
target_link_libraries(marl_flags INTERFACE marl_image marl_guard)
