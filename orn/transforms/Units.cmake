orn_unit(transforms/AffineTransform)
orn_unit(transforms/ArcMapping)
orn_unit(transforms/Composition BY Transform)
orn_unit(transforms/NonUniformTransform BY AffineTransform)
orn_unit(transforms/PerspectiveTransform)
orn_unit(transforms/PointMapping)
orn_unit(transforms/Transform)
orn_unit(transforms/UniformTransform BY AffineTransform)

# Programs are built at this level, too, where the compiler looks at the class of a transform at each step of a loop.
if(ORN_BENCHMARKS)
  orn_bench("${CMAKE_CURRENT_SOURCE_DIR}/transforms/PointMappingBench.cpp" O2)
endif()
