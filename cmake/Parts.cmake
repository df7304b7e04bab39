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

# Registers the test program `target` as a whole under its part: unit, contract or desktop.
# Windows programs run under Wine, each on a desktop of its own; those that move a real mouse run
# alone. Further arguments go to the program.
function(marl_test part target)
  set(name ${part})
  if(WIN32 AND CMAKE_SIZEOF_VOID_P EQUAL 8)
    set(name ${part}.win64)
  elseif(WIN32)
    set(name ${part}.win32)
  endif()
  add_dependencies(${part}_parts ${target})
  add_test(NAME ${name} COMMAND ${target} ${ARGN})
  set_tests_properties(${name} PROPERTIES LABELS ${part})
  # The code under test is in libraries, optimised as it ships or watched by sanitizers.
  target_compile_options(${target} PRIVATE -O0 -g0)
  if(WIN32)
    set_tests_properties(${name} PROPERTIES ENVIRONMENT "MARL_WINE_NAME=${name}")
    if(part STREQUAL "desktop")
      set_tests_properties(${name} PROPERTIES RUN_SERIAL ON)
    endif()
  endif()
endfunction()
