# Links, pipes, permissions and file limits as POSIX has them.
set(posix_tests "")
if(NOT WIN32)
  set(posix_tests aes_allocation_failure_test.cpp file_streams_test.cpp native_path_test.cpp confined_directory_test.cpp)
endif()
set(windows_tests "")
if(WIN32)
  set(windows_tests possible_name_windows_test.cpp)
endif()
quavin_unit_test(
  platform
  ${posix_tests}
  ${windows_tests}
  aes_test.cpp
  clock_test.cpp
  file_system_test.cpp
  secure_memory_test.cpp)
target_link_libraries(quavin_platform_tests PRIVATE quavin_test_packages)

# What the system does for tools is no part of the library.
if(QUAVIN_BUILD_TOOLS)
  target_sources(
    quavin_platform_tests
    PRIVATE platform/aes_encryption_test.cpp platform/process_test.cpp)
  if(NOT WIN32)
    target_sources(quavin_platform_tests PRIVATE platform/private_file_test.cpp)
  endif()
  target_link_libraries(quavin_platform_tests PRIVATE quavin_tool_platform_objects)
endif()
