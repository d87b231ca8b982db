orn_unit(platform/SystemLibrary)
orn_unit(platform/UUID)
orn_unit(platform/WerRegisteredMemoryBlock)
orn_unit(platform/WindowsMemoryStatus)
