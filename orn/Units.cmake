# Every unit of the library, a line each.
include("${CMAKE_CURRENT_SOURCE_DIR}/os/Units.cmake")
include("${CMAKE_CURRENT_SOURCE_DIR}/foundation/Units.cmake")
include("${CMAKE_CURRENT_SOURCE_DIR}/text/Units.cmake")
include("${CMAKE_CURRENT_SOURCE_DIR}/threading/Units.cmake")
include("${CMAKE_CURRENT_SOURCE_DIR}/geometry/Units.cmake")
include("${CMAKE_CURRENT_SOURCE_DIR}/transforms/Units.cmake")
include("${CMAKE_CURRENT_SOURCE_DIR}/colour/Units.cmake")
include("${CMAKE_CURRENT_SOURCE_DIR}/events/Units.cmake")
