# The model of the lock, checked by the model checker. Each scene must come to an end; where the cure is taken out, threads
# must go round without end, or the model would prove nothing.
find_program(ORN_SPIN spin REQUIRED)

function(orn_model name)
  add_test(NAME "lock-model-${name}"
    COMMAND "${CMAKE_CURRENT_SOURCE_DIR}/threading/model/check" "${PROJECT_BINARY_DIR}/model/${name}" ${ARGN})
  set_tests_properties("lock-model-${name}" PROPERTIES TIMEOUT 300)
endfunction()

foreach(scene RANGE 1 2)
  orn_model(${scene} ends -DSCENE=${scene})
endforeach()
orn_model(1-going-round loops -DSCENE=1 -DGOING_ROUND)
