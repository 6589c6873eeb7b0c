# A folder is a target, and a target sees the headers of only those folders that it links: each
# library publishes its folder alone, through a tree of links below the build folder. An include that
# crosses a layer the wrong way does not find its file.
#
# tarnwick_library(NAME SOURCES file... [DEPENDS public libraries...] [PRIVATE libraries...])
function(tarnwick_publish_folder name)
  file(RELATIVE_PATH folder "${CMAKE_SOURCE_DIR}" "${CMAKE_CURRENT_SOURCE_DIR}")
  set(tree "${CMAKE_BINARY_DIR}/include/${name}")
  get_filename_component(parent "${tree}/${folder}" DIRECTORY)
  file(MAKE_DIRECTORY "${parent}")
  file(CREATE_LINK "${CMAKE_CURRENT_SOURCE_DIR}" "${tree}/${folder}" SYMBOLIC)
  get_target_property(type ${name} TYPE)
  if(type STREQUAL "INTERFACE_LIBRARY")
    target_include_directories(${name} INTERFACE "${tree}")
  else()
    target_include_directories(${name} PUBLIC "${tree}")
  endif()
endfunction()

function(tarnwick_library name)
  cmake_parse_arguments(ARG "" "" "SOURCES;DEPENDS;PRIVATE" ${ARGN})
  add_library(${name} STATIC ${ARG_SOURCES})
  target_link_libraries(${name} PUBLIC ${ARG_DEPENDS} PRIVATE tarnwick_options ${ARG_PRIVATE})
  tarnwick_publish_folder(${name})
endfunction()

# tarnwick_test(NAME SOURCES file... DEPENDS libraries... [LABELS label...])
# One executable a subject; its cases are found by ctest one by one.
function(tarnwick_test name)
  cmake_parse_arguments(ARG "" "" "SOURCES;DEPENDS;LABELS" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE tarnwick_options ${ARG_DEPENDS} GTest::gmock
                        GTest::gtest_main)
  gtest_discover_tests(${name} TEST_PREFIX "${name}." DISCOVERY_TIMEOUT 60
                       PROPERTIES TIMEOUT 120 LABELS "${ARG_LABELS}")
endfunction()
