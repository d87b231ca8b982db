orn_unit(diagnosis/DebugStream FAILING)
orn_unit(diagnosis/TypedPointer)
