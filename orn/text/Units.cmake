orn_unit(text/CodePoint)
orn_unit(text/Encoding)
orn_unit(text/Printf)
