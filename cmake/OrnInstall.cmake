# Rules for `cmake --install` and CPack: the two libraries, the public headers, the CMake package and the pkg-config
# files. Each finds the others by relative paths, so that the installed tree may be moved. Components: library,
# development, examples, debug.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

if(NOT WIN32)
  set_target_properties(orn ornmsg PROPERTIES INSTALL_RPATH "$ORIGIN")
endif()
set_target_properties(orn-arithmetic PROPERTIES EXPORT_NAME arithmetic)
install(TARGETS orn-arithmetic EXPORT orn-targets)
install(TARGETS orn ornmsg EXPORT orn-targets
  RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT library
  LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT library NAMELINK_COMPONENT development
  ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT development
  FILE_SET HEADERS DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}" COMPONENT development)
install(FILES ${ORN_RUNTIME_DLLS} DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT library)
foreach(dll ${ORN_RUNTIME_DLLS})
  cmake_path(GET dll FILENAME name)
  set(installed "\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_BINDIR}/${name}")
  install(CODE "if(CMAKE_INSTALL_DO_STRIP)
  execute_process(COMMAND \"${CMAKE_STRIP}\" --strip-unneeded \"${installed}\" COMMAND_ERROR_IS_FATAL ANY)
endif()" COMPONENT library)
endforeach()
if(ORN_RUNTIME_DLLS)
  foreach(origin gcc-mingw-w64-x86-64-posix-runtime mingw-w64-x86-64-dev)
    install(FILES "/usr/share/doc/${origin}/copyright" DESTINATION "${CMAKE_INSTALL_DATADIR}/doc/orn"
            RENAME "copyright-${origin}" COMPONENT library OPTIONAL)
  endforeach()
endif()

set(package "${CMAKE_INSTALL_LIBDIR}/cmake/orn")
install(EXPORT orn-targets NAMESPACE orn:: DESTINATION "${package}" COMPONENT development)
configure_package_config_file("${CMAKE_CURRENT_LIST_DIR}/orn-config.cmake.in" "${PROJECT_BINARY_DIR}/orn-config.cmake"
  INSTALL_DESTINATION "${package}" NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file("${PROJECT_BINARY_DIR}/orn-config-version.cmake"
  COMPATIBILITY "${ORN_COMPATIBILITY}")
install(FILES "${PROJECT_BINARY_DIR}/orn-config.cmake" "${PROJECT_BINARY_DIR}/orn-config-version.cmake"
  DESTINATION "${package}" COMPONENT development)

file(RELATIVE_PATH to_prefix "${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig" "${CMAKE_INSTALL_PREFIX}")
string(REGEX REPLACE "/$" "" to_prefix "${to_prefix}")
foreach(library orn ornmsg)
  configure_file("${CMAKE_CURRENT_LIST_DIR}/orn.pc.in" "${PROJECT_BINARY_DIR}/${library}.pc" @ONLY)
  install(FILES "${PROJECT_BINARY_DIR}/${library}.pc" DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig"
          COMPONENT development)
endforeach()

install(FILES "${PROJECT_SOURCE_DIR}/LICENSE" DESTINATION "${CMAKE_INSTALL_DATADIR}/doc/orn" RENAME copyright
        COMPONENT library)
if(TARGET orn-plot)
  if(NOT WIN32)
    file(RELATIVE_PATH to_libraries "${CMAKE_INSTALL_FULL_BINDIR}" "${CMAKE_INSTALL_FULL_LIBDIR}")
    set_target_properties(orn-plot orn-view PROPERTIES INSTALL_RPATH "$ORIGIN/${to_libraries}")
  endif()
  install(TARGETS orn-plot DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT examples)
  install(DIRECTORY "${PROJECT_SOURCE_DIR}/examples/drawings" DESTINATION "${CMAKE_INSTALL_DATADIR}/orn"
          COMPONENT examples)
endif()
if(TARGET orn-view)
  install(TARGETS orn-view DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT examples)
endif()
if(TARGET orn-manuals)
  foreach(program orn-plot orn-view)
    install(FILES "${PROJECT_BINARY_DIR}/manuals/${program}.1" DESTINATION "${CMAKE_INSTALL_MANDIR}/man1"
            COMPONENT examples)
    install(FILES "${PROJECT_BINARY_DIR}/manuals/${program}"
            DESTINATION "${CMAKE_INSTALL_DATADIR}/bash-completion/completions" COMPONENT examples)
  endforeach()
endif()

# The debug information of the stripped DLLs and programs, which name these files.
if(MINGW)
  install(FILES "${CMAKE_CURRENT_LIST_DIR}/windows-contents.txt" DESTINATION . RENAME CONTENTS.txt COMPONENT debug)
endif()
if(MINGW AND CMAKE_BUILD_TYPE STREQUAL "Release")
  set(debug_files "")
  foreach(target orn ornmsg orn-plot orn-view)
    if(TARGET ${target})
      set(file "${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/${target}.debug")
      add_custom_command(OUTPUT "${file}" DEPENDS ${target} VERBATIM
        COMMAND "${CMAKE_OBJCOPY}" --only-keep-debug $<TARGET_FILE:${target}> "${file}"
        COMMAND "${CMAKE_OBJCOPY}" -R .gnu_debuglink "--add-gnu-debuglink=${file}" $<TARGET_FILE:${target}>
        COMMAND "${CMAKE_COMMAND}" -E touch "${file}")
      list(APPEND debug_files "${file}")
    endif()
  endforeach()
  add_custom_target(orn-debug-files ALL DEPENDS ${debug_files})
  install(FILES ${debug_files} DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT debug)
endif()

if(NOT PROJECT_IS_TOP_LEVEL)
  return()
endif()

# One archive a system; Debian's packages are made by debian/rules from the same installation.
set(CPACK_PACKAGE_NAME orn)
set(CPACK_PACKAGE_VENDOR "The developers of orn")
set(CPACK_INSTALL_CMAKE_PROJECTS
  "${PROJECT_BINARY_DIR};orn;library;/" "${PROJECT_BINARY_DIR};orn;development;/")
if(WIN32 AND ORN_EXAMPLES)
  list(APPEND CPACK_INSTALL_CMAKE_PROJECTS
    "${PROJECT_BINARY_DIR};orn;examples;/" "${PROJECT_BINARY_DIR};orn;debug;/")
endif()
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)
if(WIN32)
  set(CPACK_GENERATOR ZIP)
  set(CPACK_PACKAGE_FILE_NAME "orn-${PROJECT_VERSION}-windows-x86_64")
else()
  set(CPACK_GENERATOR TGZ)
  set(CPACK_PACKAGE_FILE_NAME "orn-${PROJECT_VERSION}-linux-${CMAKE_SYSTEM_PROCESSOR}")
endif()
include(CPack)
