orn_unit(colour/Colour)
orn_unit(colour/ContextGdiplus)
orn_unit(colour/DIBitmap)
