# A unit is a set of neighbours that share a name. Each unit declares itself with one line,
#
#   orn_unit(geometry/Extent)
#
# which adds the files that are there to the targets that want them:
#
#   Extent.h, or ExtentImp.h      the public headers of orn, unless the unit belongs to the seam or is INSIDE
#   Extent.cpp                    the library
#   ExtentTest.cpp                orn-geometry-test, which sees what an application sees; INSIDE, FAILING: orn-inner-test
#   ExtentInnerTest.cpp           orn-inner-test, which sees the inside and lets calls of the system fail
#   ExtentBench.cpp               a benchmark program of its own
#
# A unit of the seam, os/X, has its source in os/windows/X.cpp and os/posix/X.cpp. Its test goes to orn-inner-test, or with
# CODE_PAGE to orn-code-page-test, which runs in several code pages. It has one only where it has logic of its own: a thin
# call is held by the tests of the unit above it. A unit below, as os/posix/registry/X, has its source beside its header.
# Every other unit needs a test. With FAILING the test goes to orn-inner-test, because it lets calls of the system fail
# between those that succeed. Units that are alike may share one: orn_unit(geometry/Point BY Coordinates) is held by
# geometry/CoordinatesTest.cpp.
#
# With WINDOWS or POSIX, other systems get the header alone.
function(orn_unit unit)
  cmake_parse_arguments(PARSE_ARGV 1 arg "WINDOWS;POSIX;INSIDE;FAILING;CODE_PAGE" "BY" "")
  string(REGEX MATCH "^[^/]+" room "${unit}")
  cmake_path(GET unit FILENAME name)
  set(base "${CMAKE_CURRENT_SOURCE_DIR}/${unit}")
  set(source "${base}.cpp")
  set(test "${base}Test.cpp")
  if(arg_BY)
    cmake_path(REPLACE_FILENAME test "${arg_BY}Test.cpp")
  endif()
  set(needed "${test}")
  if(unit STREQUAL "os/${name}")
    set(source "${CMAKE_CURRENT_SOURCE_DIR}/os/${ORN_OS}/${name}.cpp")
  endif()
  if(room STREQUAL "os")
    set(needed "${source}")
  endif()
  if(NOT EXISTS "${base}.h" AND NOT EXISTS "${base}Imp.h")
    message(FATAL_ERROR "orn_unit(${unit}): there is no ${unit}.h")
  endif()

  if(NOT arg_INSIDE AND NOT room STREQUAL "os")
    target_sources(orn PUBLIC FILE_SET HEADERS FILES "${base}.h")
  endif()
  if((arg_WINDOWS AND NOT WIN32) OR (arg_POSIX AND WIN32))
    return()
  endif()
  if(NOT EXISTS "${needed}")
    message(FATAL_ERROR "orn_unit(${unit}): there is no ${needed}")
  endif()
  if(room STREQUAL "os")
    orn_add("${source}" orn-os orn-failing-os)
    if(arg_CODE_PAGE)
      orn_add("${test}" orn-code-page-test)
    else()
      orn_add("${test}" orn-inner-test)
    endif()
  else()
    orn_add("${source}" orn-objects)
    if(arg_INSIDE OR arg_FAILING)
      orn_add("${test}" orn-inner-test)
    elseif(ORN_TESTS)
      if(NOT TARGET orn-${room}-test)
        orn_test(orn-${room}-test LIBRARIES orn ornmsg orn-test-support)
      endif()
      orn_add("${test}" orn-${room}-test)
    endif()
    orn_add("${base}InnerTest.cpp" orn-inner-test)
  endif()
  if(ORN_BENCHMARKS AND EXISTS "${base}Bench.cpp")
    orn_bench("${base}Bench.cpp")
  endif()
endfunction()

# Adds a file, if it is there, to those of the targets that are.
function(orn_add file)
  foreach(target ${ARGN})
    if(EXISTS "${file}" AND TARGET ${target})
      target_sources(${target} PRIVATE "${file}")
    endif()
  endforeach()
endfunction()
