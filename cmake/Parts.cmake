# The targets that ./marl builds by name. Each folder adds its own; a target may be empty.
#   program      everything in the program folder (install component "program")
#   unit_parts contract_parts desktop_parts   the test programs of a part
#   benchmarks   programs bench/bench_NAME
#   fuzzers      programs fuzz/fuzz_NAME
foreach(name program unit_parts contract_parts desktop_parts benchmarks fuzzers)
  add_custom_target(${name})
endforeach()

if(CMAKE_SYSTEM_NAME STREQUAL "Windows" AND NOT CMAKE_HOST_WIN32)
  set(CMAKE_CROSSCOMPILING_EMULATOR "${PROJECT_SOURCE_DIR}/marl;wine")
endif()

# Adds a program or library to the program folder.
function(marl_ships target)
  add_dependencies(program ${target})
  install(TARGETS ${target} RUNTIME DESTINATION . COMPONENT program
                            LIBRARY DESTINATION . COMPONENT program)
endfunction()

# Sources of the calling folder that are compiled for speed, not size. With sanitizers the best level
# is -O2: -O3 takes much longer to compile. Functions of these sources that are marked gnu::cold are
# compiled for size all the same.
function(marl_hot_loops)
  set(level -O3)
  if(MARL_SANITIZE)
    set(level -O2)
  endif()
  set_property(SOURCE ${ARGN} TARGET_DIRECTORY marl_core APPEND PROPERTY COMPILE_OPTIONS ${level})
endfunction()

# Compiles the files of a group together (unity build), because most of the time goes into templates
# of the test framework that they share. -DMARL_UNITY=OFF compiles each alone. In a group, names in
# unnamed namespaces must be unique.
function(marl_compile_together group)
  list(TRANSFORM ARGN PREPEND "${CMAKE_CURRENT_SOURCE_DIR}/")
  set_source_files_properties(${ARGN} PROPERTIES UNITY_GROUP ${group})
endfunction()

# Links a test program. On Windows quickly: test bodies have tens of thousands of small sections, for
# which GNU ld takes the square of their number, a minute for a program of 64 bits; LLVM's linker takes
# a second. The program that ships is linked by GNU ld.
#
# Natively with the libraries in front of the test bodies: of the C++ library's templates that both of
# them contain, the linker takes the first, and those of test bodies are neither optimised nor sanitized.
find_program(MARL_LLD ld.lld)
mark_as_advanced(MARL_LLD)
function(marl_link_test target)
  if(WIN32 AND NOT CMAKE_HOST_WIN32 AND MARL_LLD)
    target_link_options(${target} PRIVATE "SHELL:-wrapper ${PROJECT_SOURCE_DIR}/cmake/lld.sh")
  elseif(NOT WIN32 AND NOT APPLE AND NOT MARL_MUTATE)
    target_link_options(${target} PRIVATE
      "LINKER:--whole-archive,$<TARGET_FILE:marl_memory>,$<TARGET_FILE:marl_core>,--no-whole-archive")
  endif()
endfunction()

# Compiles test bodies without optimisation and sanitizers: the code under test is in libraries,
# which are optimised as shipped or built with sanitizers.
function(marl_test_bodies target)
  # In a unity build a class in an unnamed namespace looks like one in a header.
  target_compile_options(${target} PRIVATE -O0 -g0 -Wno-subobject-linkage)
  set_target_properties(${target} PROPERTIES UNITY_BUILD ${MARL_UNITY} UNITY_BUILD_MODE GROUP)
endfunction()

# Sources of the calling folder's test program that are optimised all the same: they go over every
# pixel.
function(marl_over_pixels)
  set_property(SOURCE ${ARGN} APPEND PROPERTY COMPILE_OPTIONS -O2)
endfunction()

# Registers the whole test program `target` under its part: unit, contract or desktop. Further
# arguments are passed to the program.
function(marl_test part target)
  add_dependencies(${part}_parts ${target})
  marl_test_bodies(${target})
  marl_link_test(${target})
  marl_add_run(${part} ${part} ${target} 96 ${ARGN})
endfunction()

# Adds a run of a test program, named `name` plus the bitness, on a screen of `dpi`. Windows
# programs run under Wine, each run on its own desktop, and desktop tests on several (cmd_desktops,
# tools/run_tests.sh). On Windows there is one desktop, so tests that move its mouse run alone.
function(marl_add_run part name target dpi)
  set(command ${target})
  if(WIN32)
    math(EXPR bits "8 * ${CMAKE_SIZEOF_VOID_P}")
    string(APPEND name .win${bits})
    if(part STREQUAL "desktop" AND CMAKE_CROSSCOMPILING)
      set(runner desktops)
      if(name MATCHES "^locales")
        set(runner locales)
      endif()
      set(command "${PROJECT_SOURCE_DIR}/marl" ${runner} $<TARGET_FILE:${target}>)
    endif()
  endif()
  add_test(NAME ${name} COMMAND ${command} ${ARGN})
  set_tests_properties(${name} PROPERTIES LABELS ${part})
  if(WIN32 AND CMAKE_CROSSCOMPILING)
    set_tests_properties(${name} PROPERTIES
                         ENVIRONMENT "MARL_WINE_NAME=${name};MARL_WINE_DPI=${dpi}")
  endif()
  # The longest runs start first, so that short ones fill the end; those that cannot be shared out
  # to several desktops before the others.
  set(cost 100)
  if(name MATCHES "^contract\\.")
    set(cost 1000)
  elseif(name MATCHES "^desktop\\.")
    set(cost 500)
  elseif(name MATCHES "^(desktop|locales)")
    set(cost 300)
  elseif(name MATCHES "^unit")
    set(cost 200)
  endif()
  set_tests_properties(${name} PROPERTIES COST ${cost})
  if(part STREQUAL "desktop")
    if(NOT CMAKE_CROSSCOMPILING)
      set_tests_properties(${name} PROPERTIES RUN_SERIAL ON)
    endif()
  endif()
endfunction()
