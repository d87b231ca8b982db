orn_unit(platform/DropFiles WINDOWS)
orn_unit(platform/RegistryKey)
orn_unit(platform/SystemLibrary)
orn_unit(platform/UUID)
orn_unit(platform/WerRegisteredMemoryBlock)
orn_unit(platform/WindowsMemoryStatus)

# What data objects deliver is read by the same code on every system, which has no interface to applications.
set_property(GLOBAL APPEND PROPERTY ORN_INNER_TESTS "${CMAKE_CURRENT_SOURCE_DIR}/platform/DropListsTest.cpp")
