orn_unit(threading/CriticalSection)
orn_unit(threading/Lock)

# The algorithm inside the lock has no interface of its own to applications.
set_property(GLOBAL APPEND PROPERTY ORN_INNER_TESTS "${CMAKE_CURRENT_SOURCE_DIR}/threading/LockStepsTest.cpp")
