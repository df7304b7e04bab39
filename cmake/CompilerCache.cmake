# Uses ccache if it is installed. Paths are relative to the checkout, so that checkouts side by side
# share results.
find_program(MARL_CCACHE ccache)
mark_as_advanced(MARL_CCACHE)
if(MARL_CCACHE)
  foreach(language C CXX)
    set(CMAKE_${language}_COMPILER_LAUNCHER
        ${CMAKE_COMMAND} -E env CCACHE_BASEDIR=${PROJECT_SOURCE_DIR} CCACHE_NOHASHDIR=1
        ${MARL_CCACHE})
  endforeach()
endif()

# Precompiles the headers of the C++ library that most sources of a target include, and `ARGN`. Without
# a compiler cache this saves a third of the time; a cache would no longer recognise the sources.
option(MARL_PRECOMPILE "Precompile headers" ON)
function(marl_precompile target)
  if(MARL_PRECOMPILE AND (MARL_MUTATE OR NOT MARL_CCACHE))
    target_precompile_headers(${target} PRIVATE <algorithm> <array> <cmath> <functional> <map> <memory>
                              <optional> <set> <span> <string> <utility> <variant> <vector> ${ARGN})
  endif()
endfunction()
