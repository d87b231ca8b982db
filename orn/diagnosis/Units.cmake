orn_unit(diagnosis/DebugStream)
orn_unit(diagnosis/TypedPointer)
