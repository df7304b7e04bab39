# The languages of the program, from resources/strings/languages.txt. On Windows each has an object
# library strings_CODE with its texts as a resource. The language "marked" is for tests: the texts
# of the first language, each between marks and at least a third longer. A text that the program
# shows without marks cannot be translated.
set(MARL_LANGUAGE_LIST "${PROJECT_SOURCE_DIR}/resources/strings/languages.txt")
file(STRINGS "${MARL_LANGUAGE_LIST}" lines REGEX "^[A-Za-z]")
list(TRANSFORM lines REPLACE "^([A-Za-z-]+) .*" "\\1" OUTPUT_VARIABLE MARL_LANGUAGES)
list(GET MARL_LANGUAGES 0 MARL_FIRST_LANGUAGE)
set(MARL_TEST_LANGUAGES ${MARL_LANGUAGES} marked)

# marl_mark TEXT VAR: the text between marks, at least a third longer. Three dots or a blank at the end
# stay there.
function(marl_mark text var)
  string(REGEX MATCH "(\\.\\.\\.| )$" tail "${text}")
  string(REGEX REPLACE "(\\.\\.\\.| )$" "" body "${text}")
  string(LENGTH "${text}" length)
  math(EXPR missing "(${length} + 2) / 3 - 10")
  while(missing GREATER 0)
    string(APPEND body " ~~~~")
    math(EXPR missing "${missing} - 5")
  endwhile()
  set(${var} "[!!! ${body} !!!]${tail}" PARENT_SCOPE)
endfunction()

# marl_mark_texts FROM TO: copies a file of texts and marks each text. In a filter for file dialogs the
# names are marked and the patterns are kept.
function(marl_mark_texts from to)
  file(READ "${from}" content)
  # Characters with a meaning in CMake's lists.
  string(REPLACE "\\" "<backslash>" content "${content}")
  string(REPLACE ";" "<semicolon>" content "${content}")
  string(REPLACE "[" "<open>" content "${content}")
  string(REPLACE "]" "<close>" content "${content}")
  string(REGEX MATCHALL "[^\n]+" lines "${content}")
  set(result "")
  foreach(line IN LISTS lines)
    if(NOT line MATCHES "^MARL_STRING\\((.*), \"(.*)\"\\)$")
      message(FATAL_ERROR "${from}: this is no text: ${line}")
    endif()
    set(id "${CMAKE_MATCH_1}")
    string(REPLACE "|" ";" fields "${CMAKE_MATCH_2}")
    set(texts)
    set(is_pattern FALSE)
    foreach(field IN LISTS fields)
      if(NOT is_pattern)
        marl_mark("${field}" field)
      endif()
      list(APPEND texts "${field}")
      list(LENGTH texts count)
      math(EXPR is_pattern "${count} % 2")
    endforeach()
    string(REPLACE ";" "|" texts "${texts}")
    string(APPEND result "MARL_STRING(${id}, \"${texts}\")\n")
  endforeach()
  string(REPLACE "<backslash>" "\\" result "${result}")
  string(REPLACE "<semicolon>" ";" result "${result}")
  string(REPLACE "<open>" "[" result "${result}")
  string(REPLACE "<close>" "]" result "${result}")
  file(CONFIGURE OUTPUT "${to}" @ONLY CONTENT "${result}")
endfunction()

set(first_texts "${PROJECT_SOURCE_DIR}/resources/strings/${MARL_FIRST_LANGUAGE}.inc")
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${MARL_LANGUAGE_LIST}"
             "${first_texts}")
marl_mark_texts("${first_texts}" "${MARL_GENERATED}/resources/strings/marked.inc")

# The texts of all languages, for MemoryStrings.
set(tables "")
set(rows "")
foreach(language IN LISTS MARL_TEST_LANGUAGES)
  string(MAKE_C_IDENTIFIER "${language}" name)
  string(APPEND tables "constexpr Entry k_${name}[] = {\n"
                       "#include \"resources/strings/${language}.inc\"\n};\n")
  string(APPEND rows "    {\"${language}\", k_${name}},\n")
endforeach()
file(CONFIGURE OUTPUT "${MARL_GENERATED}/resources/strings/languages.inc" @ONLY CONTENT
     "${tables}constexpr Language kLanguages[] = {\n${rows}};\n")

if(WIN32)
  foreach(language IN LISTS MARL_TEST_LANGUAGES)
    set(texts "${PROJECT_SOURCE_DIR}/resources/strings/${language}.inc")
    if(language STREQUAL "marked")
      set(texts "${MARL_GENERATED}/resources/strings/${language}.inc")
    endif()
    set(resource "${PROJECT_BINARY_DIR}/strings/${language}.rc")
    file(CONFIGURE OUTPUT "${resource}" @ONLY CONTENT
         "#define MARL_STRINGS \"strings/${language}.inc\"\n#include \"Strings.rc\"\n")
    set_source_files_properties("${resource}" PROPERTIES OBJECT_DEPENDS
      "${PROJECT_SOURCE_DIR}/resources/Strings.rc;${PROJECT_SOURCE_DIR}/resources/strings/ids.h;${texts}")
    add_library(strings_${language} OBJECT EXCLUDE_FROM_ALL "${resource}")
    target_include_directories(strings_${language} PRIVATE "${PROJECT_SOURCE_DIR}/resources"
                                                           "${MARL_GENERATED}/resources")
  endforeach()
endif()
