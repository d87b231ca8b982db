orn_unit(geometry/Matrix)
