# Settings of everything that is built here: language, warnings, floating point, output folders, compiler cache.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
if(PROJECT_IS_TOP_LEVEL)
  set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/bin")
  set(CMAKE_LIBRARY_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/lib")
  set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/lib")
endif()

find_program(ORN_CCACHE ccache)
if(ORN_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  # Paths relative to the checkout, so that every checkout shares one cache.
  set(CMAKE_CXX_COMPILER_LAUNCHER
      "${CMAKE_COMMAND}" -E env "CCACHE_BASEDIR=${PROJECT_SOURCE_DIR}" CCACHE_NOHASHDIR=1 "${ORN_CCACHE}")
endif()

if(WIN32)
  set(ORN_OS windows)
else()
  set(ORN_OS posix)
endif()

if(ORN_SANITIZERS)
  add_compile_options("-fsanitize=${ORN_SANITIZERS}" -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options("-fsanitize=${ORN_SANITIZERS}")
endif()

# Every caller computes with IEEE doubles, and compiles the inline geometry without contracting products and sums.
add_library(orn-arithmetic INTERFACE)
add_library(orn::arithmetic ALIAS orn-arithmetic)
target_compile_features(orn-arithmetic INTERFACE cxx_std_20)
target_compile_options(orn-arithmetic INTERFACE
  $<$<CXX_COMPILER_ID:GNU,Clang,AppleClang>:-ffp-contract=off>
  $<$<CXX_COMPILER_ID:MSVC>:/fp:precise>
  $<$<CXX_COMPILER_ID:MSVC>:/utf-8>)

# Options for this project's own code, which its users do not need.
add_library(orn-strict INTERFACE)
target_compile_options(orn-strict INTERFACE
  $<$<CXX_COMPILER_ID:GNU,Clang,AppleClang>:-Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Wcast-qual
    -Wundef -Wvla -Wformat=2 -Wno-format-nonliteral>
  $<$<AND:$<BOOL:${ORN_WARNINGS_ARE_ERRORS}>,$<CXX_COMPILER_ID:GNU,Clang,AppleClang>>:-Werror>)
# Callers write {L';'} for a format with another delimiter, of which clang warns. Without the second option clang moves a
# division in front of the test that guards it, and the division raises a floating-point exception.
target_compile_options(orn-strict INTERFACE
  $<$<CXX_COMPILER_ID:Clang>:-Wno-braced-scalar-init -ffp-exception-behavior=maytrap>)
if(WIN32)
  target_compile_definitions(orn-strict INTERFACE UNICODE _UNICODE NOMINMAX WIN32_LEAN_AND_MEAN _WIN32_WINNT=0x0601)
endif()

# A new name of the shared object wherever a new version may break programs: until 1.0 with every minor version, from
# then on with every major one. Fixes break none.
if(PROJECT_VERSION_MAJOR EQUAL 0)
  set(ORN_SOVERSION "0.${PROJECT_VERSION_MINOR}")
  set(ORN_COMPATIBILITY SameMinorVersion)
else()
  set(ORN_SOVERSION "${PROJECT_VERSION_MAJOR}")
  set(ORN_COMPATIBILITY SameMajorVersion)
endif()

# Gives a DLL or a program the properties that Windows shows of a file, and a program its icon.
function(orn_describe target description)
  if(WIN32)
    get_target_property(kind ${target} TYPE)
    if(kind STREQUAL "EXECUTABLE")
      set(type 0x1)
      set(file "${target}.exe")
      set(icon "1 ICON \"${PROJECT_SOURCE_DIR}/examples/programs.ico\"\n")
    else()
      set(type 0x2)
      set(file "${target}.dll")
      set(icon "")
    endif()
    configure_file("${PROJECT_SOURCE_DIR}/cmake/version.rc.in" "${CMAKE_CURRENT_BINARY_DIR}/${target}.rc" @ONLY)
    target_sources(${target} PRIVATE "${CMAKE_CURRENT_BINARY_DIR}/${target}.rc")
    if(kind STREQUAL "EXECUTABLE")
      set_source_files_properties("${CMAKE_CURRENT_BINARY_DIR}/${target}.rc" PROPERTIES
        OBJECT_DEPENDS "${PROJECT_SOURCE_DIR}/examples/programs.ico")
    endif()
  endif()
endfunction()
if(WIN32)
  enable_language(RC)
endif()

# The DLLs of the compiler's runtime are shared by the library and its callers, so that exceptions are caught by type
# across the boundary. Copies of them lie beside the programs.
if(MINGW AND PROJECT_IS_TOP_LEVEL)
  foreach(runtime libstdc++-6.dll libgcc_s_seh-1.dll libwinpthread-1.dll)
    execute_process(COMMAND "${CMAKE_CXX_COMPILER}" "-print-file-name=${runtime}"
                    OUTPUT_VARIABLE path OUTPUT_STRIP_TRAILING_WHITESPACE)
    if(NOT IS_ABSOLUTE "${path}")
      find_file(ORN_RUNTIME_${runtime} "${runtime}" PATHS /usr/x86_64-w64-mingw32/lib NO_DEFAULT_PATH)
      set(path "${ORN_RUNTIME_${runtime}}")
    endif()
    if(NOT EXISTS "${path}")
      message(FATAL_ERROR "The compiler's runtime library ${runtime} was not found")
    endif()
    file(COPY "${path}" DESTINATION "${CMAKE_RUNTIME_OUTPUT_DIRECTORY}")
    list(APPEND ORN_RUNTIME_DLLS "${path}")
  endforeach()
endif()
