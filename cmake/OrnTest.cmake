# GoogleTest is built from the system's copy of its sources, for whichever target is being built.
find_path(ORN_GOOGLETEST CMakeLists.txt PATHS /usr/src/googletest NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH REQUIRED)
set(INSTALL_GTEST OFF)
set(CMAKE_WARN_DEPRECATED OFF)
add_subdirectory("${ORN_GOOGLETEST}" "${PROJECT_BINARY_DIR}/googletest" EXCLUDE_FROM_ALL SYSTEM)
foreach(library gtest gtest_main gmock)
  target_compile_options(${library} PRIVATE -O0 -g1)
endforeach()

# One test program, run as one process (under Wine for Windows).
function(orn_test name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LIBRARIES")
  add_executable(${name} ${arg_SOURCES})
  if(ORN_SANITIZERS)
    target_sources(${name} PRIVATE "${PROJECT_SOURCE_DIR}/tests/support/SanitizerOptions.cpp")
  endif()
  target_link_libraries(${name} PRIVATE ${arg_LIBRARIES} orn-strict GTest::gmock GTest::gtest_main)
  # A test is compiled once and run once. Without optimisation it compiles in a fifth of the time, and the inline code of
  # the headers runs as it does in a debug build.
  target_compile_options(${name} PRIVATE -O0 -g1)
  add_test(NAME ${name} COMMAND ${name})
  set_tests_properties(${name} PROPERTIES TIMEOUT 600)
endfunction()
