orn_unit(foundation/Error)
