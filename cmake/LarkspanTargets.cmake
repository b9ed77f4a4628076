# larkspan_library(NAME SOURCES ... LINK ...): a static library of this project. Headers are included as
# "folder/Name.h" from the root of src/.
function(larkspan_library name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINK" ${ARGN})
  add_library(${name} STATIC ${ARG_SOURCES})
  target_include_directories(${name} PUBLIC "${CMAKE_SOURCE_DIR}/src")
  target_link_libraries(${name} PUBLIC larkspan_flags ${ARG_LINK})
endfunction()

# larkspan_test(NAME [GUI] [LABELS ...] SOURCES ... LINK ...): one GoogleTest program; each of its tests
# becomes a CTest entry. GUI programs run on the offscreen platform whatever the environment says.
function(larkspan_test name)
  cmake_parse_arguments(ARG "GUI" "TIMEOUT" "SOURCES;LINK;LABELS" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_include_directories(${name} PRIVATE "${CMAKE_SOURCE_DIR}/tests")
  if(ARG_GUI)
    target_link_libraries(${name} PRIVATE larkspan_test_main_gui ${ARG_LINK})
  else()
    target_link_libraries(${name} PRIVATE larkspan_test_main_core ${ARG_LINK})
  endif()
  if(NOT ARG_TIMEOUT)
    set(ARG_TIMEOUT 120)
  endif()
  # An empty value would take the next word for its own, so LABELS stands there only where there is one.
  set(labels)
  if(ARG_LABELS)
    set(labels LABELS "${ARG_LABELS}")
  endif()
  gtest_discover_tests(${name}
    DISCOVERY_TIMEOUT 600
    DISCOVERY_MODE PRE_TEST
    PROPERTIES TIMEOUT ${ARG_TIMEOUT}
               ENVIRONMENT QT_QPA_PLATFORM=offscreen
               ${labels})
endfunction()
include(GoogleTest)
