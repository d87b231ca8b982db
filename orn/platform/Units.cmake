orn_unit(platform/DropFiles WINDOWS)
orn_unit(platform/RegistryKey)
orn_unit(platform/SystemLibrary)
orn_unit(platform/UUID)
orn_unit(platform/WerRegisteredMemoryBlock)
orn_unit(platform/WindowsMemoryStatus)

# Reads what data objects deliver, by the same code on every system.
orn_unit(platform/DropLists INSIDE)
