orn_unit(foundation/Collection)
orn_unit(foundation/DebuggingLevel)
orn_unit(foundation/Error)
orn_unit(foundation/Handle)
