orn_unit(threading/CriticalSection)
orn_unit(threading/Lock)
orn_unit(threading/Waiter)
orn_unit(threading/Scheduler)
orn_unit(threading/DrawThread)
orn_unit(threading/ThreadName)
orn_unit(threading/WindowMessage)

# The algorithm inside the lock has no interface of its own to applications.
orn_unit(threading/LockSteps INSIDE)
if(ORN_TESTS AND NOT WIN32 AND NOT ORN_SANITIZERS)
  include("${CMAKE_CURRENT_LIST_DIR}/model/Model.cmake")
endif()
