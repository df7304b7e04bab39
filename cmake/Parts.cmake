# The targets that ./marl asks for by name. Each room adds what it has; an empty one is fine.
#   program      all that lies in the program folder (install component "program")
#   unit_parts contract_parts desktop_parts   the test programs of a part
#   benchmarks   programs bench/bench_NAME
#   fuzzers      programs fuzz/fuzz_NAME
foreach(name program unit_parts contract_parts desktop_parts benchmarks fuzzers)
  add_custom_target(${name})
endforeach()

if(CMAKE_SYSTEM_NAME STREQUAL "Windows" AND NOT CMAKE_HOST_WIN32)
  set(CMAKE_CROSSCOMPILING_EMULATOR "${PROJECT_SOURCE_DIR}/marl;wine")
endif()

# Puts a built program or library into the program folder.
function(marl_ships target)
  add_dependencies(program ${target})
  install(TARGETS ${target} RUNTIME DESTINATION . COMPONENT program
                            LIBRARY DESTINATION . COMPONENT program)
endfunction()

# Sources of the calling folder that are worth the largest code.
function(marl_hot_loops)
  if(NOT MARL_SANITIZE)
    set_property(SOURCE ${ARGN} TARGET_DIRECTORY marl_core APPEND PROPERTY COMPILE_OPTIONS -O3)
  endif()
endfunction()

# The files of a group are compiled together: most of the time goes into templates of the test
# framework that they share. -DMARL_UNITY=OFF compiles each alone. Two files of a group cannot give
# two things in their unnamed namespaces the same name.
function(marl_compile_together group)
  list(TRANSFORM ARGN PREPEND "${CMAKE_CURRENT_SOURCE_DIR}/")
  set_source_files_properties(${ARGN} PROPERTIES UNITY_GROUP ${group})
endfunction()

# How test bodies are compiled: the code under test is in libraries, optimised as it ships or
# watched by sanitizers.
function(marl_test_bodies target)
  # In a file that is included, a class from an unnamed namespace looks like a header's.
  target_compile_options(${target} PRIVATE -O0 -g0 -Wno-subobject-linkage)
  set_target_properties(${target} PROPERTIES UNITY_BUILD ${MARL_UNITY} UNITY_BUILD_MODE GROUP)
endfunction()

# Registers the test program `target` as a whole under its part: unit, contract or desktop.
# Further arguments go to the program.
function(marl_test part target)
  add_dependencies(${part}_parts ${target})
  marl_test_bodies(${target})
  marl_add_run(${part} ${part} ${target} 96 ${ARGN})
endfunction()

# One run of a test program under the name `name` and the width, on a screen of so many dots an inch.
# Windows programs run under Wine, each run on a desktop of its own, and desktop tests on several
# (cmd_desktops, tools/run_tests.sh). On Windows there is one desktop, so whoever moves its mouse runs
# alone.
function(marl_add_run part name target dpi)
  set(command ${target})
  if(WIN32)
    math(EXPR bits "8 * ${CMAKE_SIZEOF_VOID_P}")
    string(APPEND name .win${bits})
    if(part STREQUAL "desktop" AND CMAKE_CROSSCOMPILING)
      set(command "${PROJECT_SOURCE_DIR}/marl" desktops $<TARGET_FILE:${target}>)
    endif()
  endif()
  add_test(NAME ${name} COMMAND ${command} ${ARGN})
  set_tests_properties(${name} PROPERTIES LABELS ${part})
  if(WIN32 AND CMAKE_CROSSCOMPILING)
    set_tests_properties(${name} PROPERTIES
                         ENVIRONMENT "MARL_WINE_NAME=${name};MARL_WINE_DPI=${dpi}")
  endif()
  if(part STREQUAL "desktop")
    # What takes longest begins first.
    set_tests_properties(${name} PROPERTIES COST 1000)
    if(NOT CMAKE_CROSSCOMPILING)
      set_tests_properties(${name} PROPERTIES RUN_SERIAL ON)
    endif()
  endif()
endfunction()
