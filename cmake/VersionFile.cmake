# Reads the version from VERSION.txt, the one place where it stands, and derives the other forms of it:
#   MARL_VERSION_NUMBER   2007.3.0.7044, of the program's resources and manifest and of file names
#   MARL_VERSION_TEXT     "2007 SP3 (Build 7044)", of the splash, the about box and the help
#   MARL_VERSION_PACKAGE  7.3.7044, of the installer packages, whose first two numbers are below 256
# `cmake -P cmake/VersionFile.cmake` prints them, a line each.
file(STRINGS "${CMAKE_CURRENT_LIST_DIR}/../VERSION.txt" MARL_VERSION_NUMBER LIMIT_COUNT 1)
if(NOT MARL_VERSION_NUMBER MATCHES "^2([0-9][0-9][0-9])\\.([0-9]+)\\.([0-9]+)\\.([0-9]+)$")
  message(FATAL_ERROR "VERSION.txt: this is no version: ${MARL_VERSION_NUMBER}")
endif()
set(major "2${CMAKE_MATCH_1}")
set(minor "${CMAKE_MATCH_2}")
set(build "${CMAKE_MATCH_4}")
set(MARL_VERSION_TEXT "${major}")
if(minor)
  string(APPEND MARL_VERSION_TEXT " SP${minor}")
endif()
string(APPEND MARL_VERSION_TEXT " (Build ${build})")
math(EXPR short "${major} - 2000")
if(short GREATER 255 OR minor GREATER 255 OR build GREATER 65535)
  message(FATAL_ERROR "VERSION.txt: an installer package cannot have this version")
endif()
set(MARL_VERSION_PACKAGE "${short}.${minor}.${build}")
if(CMAKE_SCRIPT_MODE_FILE)
  foreach(form NUMBER TEXT PACKAGE)
    execute_process(COMMAND ${CMAKE_COMMAND} -E echo "${MARL_VERSION_${form}}")
  endforeach()
endif()
