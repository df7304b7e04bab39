# The version is set in one place, the project in CMakeLists.txt: the program's resources and
# manifest, the splash and the about box (resources/version.h) and the names of the archives use it.
set(MARL_VERSION_TEXT "${PROJECT_VERSION_MAJOR}")
if(PROJECT_VERSION_MINOR)
  string(APPEND MARL_VERSION_TEXT " SP${PROJECT_VERSION_MINOR}")
endif()
string(APPEND MARL_VERSION_TEXT " (Build ${PROJECT_VERSION_TWEAK})")

# Generated files, in the same folders as in the checkout.
set(MARL_GENERATED "${PROJECT_BINARY_DIR}/generated")
foreach(name version.h Marl.manifest)
  configure_file("${PROJECT_SOURCE_DIR}/resources/${name}.in"
                 "${MARL_GENERATED}/resources/${name}" @ONLY)
endforeach()
