orn_unit(platform/UUID)
