include(${CMAKE_CURRENT_LIST_DIR}/ZelvoraDependencies.cmake)
include(${CMAKE_CURRENT_LIST_DIR}/ZelvoraSDKTargets.cmake)
