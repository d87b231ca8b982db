orn_unit(platform/DropFiles WINDOWS FAILING)
orn_unit(platform/RegistryKey FAILING)
orn_unit(platform/SystemLibrary)
orn_unit(platform/UUID)
orn_unit(platform/WerRegisteredMemoryBlock FAILING)
orn_unit(platform/WindowsMemoryStatus)

# Reads what data objects deliver, by the same code on every system.
orn_unit(platform/DropLists INSIDE)
