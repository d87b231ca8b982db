# The model of the lock, checked by the model checker. Each scene must hold; where a cure is taken out, the scenes that
# need it must lose a wake-up, or the model would prove nothing.
find_program(ORN_SPIN spin REQUIRED)

function(orn_model name)
  add_test(NAME "lock-model-${name}"
    COMMAND "${CMAKE_CURRENT_SOURCE_DIR}/threading/model/check" "${PROJECT_BINARY_DIR}/model/${name}" ${ARGN})
  set_tests_properties("lock-model-${name}" PROPERTIES TIMEOUT 300)
endfunction()

foreach(parking EPOCH SEMAPHORE)
  foreach(scene RANGE 1 8)
    orn_model(${parking}-${scene} holds safety -D${parking} -DSCENE=${scene})
  endforeach()
  foreach(scene 7 8)
    orn_model(${parking}-${scene}-uncured loses safety -D${parking} -DSCENE=${scene} -DUNCURED)
  endforeach()
endforeach()
foreach(scene 1 2 4 5)
  orn_model(EPOCH-${scene}-uncured loses safety -DEPOCH -DSCENE=${scene} -DUNCURED)
endforeach()
foreach(scene 1 2 7 8)
  orn_model(EPOCH-${scene}-ends holds progress -DEPOCH -DSCENE=${scene})
  orn_model(SEMAPHORE-${scene}-ends holds progress -DSEMAPHORE -DSCENE=${scene})
endforeach()
orn_model(SEMAPHORE-7-going-round loops progress -DSEMAPHORE -DGOING_ROUND -DSCENE=7)
