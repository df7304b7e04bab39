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
