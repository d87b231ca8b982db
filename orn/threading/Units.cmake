orn_unit(threading/CriticalSection)
orn_unit(threading/Lock FAILING)
orn_unit(threading/Waiter BY Scheduler FAILING)
orn_unit(threading/Scheduler FAILING)
orn_unit(threading/DrawThread FAILING)
orn_unit(threading/ThreadName BY Scheduler FAILING)
orn_unit(threading/WindowMessage BY DrawThread FAILING)

# The algorithm inside the lock has no interface of its own to applications.
orn_unit(threading/LockSteps INSIDE)
if(ORN_TESTS AND NOT WIN32 AND NOT ORN_SANITIZERS)
  include("${CMAKE_CURRENT_LIST_DIR}/model/Model.cmake")
endif()
