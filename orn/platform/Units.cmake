orn_unit(platform/SystemLibrary)
orn_unit(platform/UUID)
