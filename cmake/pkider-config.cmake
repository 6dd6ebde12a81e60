include(${CMAKE_CURRENT_LIST_DIR}/pkider-targets.cmake)
