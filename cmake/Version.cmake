# The files that carry the version (cmake/VersionFile.cmake), in the same folders as in the checkout.
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/VERSION.txt")
set(MARL_GENERATED "${PROJECT_BINARY_DIR}/generated")
foreach(name version.h Marl.manifest)
  configure_file("${PROJECT_SOURCE_DIR}/resources/${name}.in"
                 "${MARL_GENERATED}/resources/${name}" @ONLY)
endforeach()
