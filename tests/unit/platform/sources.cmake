if(WIN32)
  set(system_tests
      aes_memory_windows.cpp
      aes_windows_test.cpp
      confined_directory_windows_test.cpp
      file_streams_windows_test.cpp
      file_system_windows_test.cpp
      input_file_windows_test.cpp
      mapped_file_windows_test.cpp
      pending_file_windows_test.cpp
      private_file_windows_test.cpp
      wide_path_windows_test.cpp)
else()
  # POSIX links, pipes and permissions, and cryptography for which there is no use on Windows.
  set(system_tests
      aes_gcm_posix_test.cpp
      aes_memory_posix.cpp
      confined_directory_posix_test.cpp
      hkdf_posix_test.cpp
      input_file_posix_test.cpp
      mapped_file_posix_test.cpp
      native_path_posix_test.cpp
      new_name_posix_test.cpp
      pending_file_posix_test.cpp
      private_file_posix_test.cpp)
endif()
quavin_unit_test(
  platform
  ${system_tests}
  aes_allocation_failure_test.cpp
  aes_test.cpp
  clock_test.cpp
  confined_directory_test.cpp
  directory_listing_test.cpp
  ecdsa_test.cpp
  file_streams_test.cpp
  file_system_test.cpp
  input_file_test.cpp
  mapped_file_test.cpp
  message_digest_test.cpp
  private_file_test.cpp
  secure_memory_test.cpp)
target_link_libraries(quavin_platform_tests PRIVATE quavin_test_packages)

# Platform code for the tools is not part of the library.
if(QUAVIN_BUILD_TOOLS)
  target_sources(
    quavin_platform_tests
    PRIVATE platform/aes_encryption_test.cpp platform/child_process_test.cpp
            platform/ecdsa_signing_test.cpp platform/loaded_libraries_test.cpp platform/process_test.cpp)
  if(WIN32)
    target_sources(
      quavin_platform_tests PRIVATE platform/access_list_windows_test.cpp
                                     platform/ecdsa_signing_windows_test.cpp platform/process_windows_test.cpp)
  else()
    target_sources(
      quavin_platform_tests
      PRIVATE platform/ecdsa_signing_posix_test.cpp platform/process_posix_test.cpp
              platform/signature_allocation_failure_posix_test.cpp
              "${PROJECT_SOURCE_DIR}/src/package/signature/signing.cpp")
  endif()
  target_link_libraries(quavin_platform_tests PRIVATE quavin_tool_platform_objects)
endif()

# The library with system cryptography that fails on demand.
if(WIN32)
  add_executable(quavin_faulty_cng_tests platform/aes_memory_windows.cpp platform/faulty_cng_windows.cpp
                                         platform/faulty_cng_windows_test.cpp)
  quavin_private_target(quavin_faulty_cng_tests)
  target_link_libraries(quavin_faulty_cng_tests PRIVATE quavin_test_packages quavin_objects
                                                        quavin_engine_objects)
  quavin_discover_tests(quavin_faulty_cng_tests "unit.platform.")
endif()
