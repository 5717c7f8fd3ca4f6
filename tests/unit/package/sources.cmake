if(WIN32)
  set(system_tests path/file_utils_windows_test.cpp archive/tar_unbounded_failures_windows_test.cpp
                   archive/tar_write_failures_windows_test.cpp)
else()
  # POSIX links, pipes, permissions and file size limits.
  set(system_tests
      path/file_utils_posix_test.cpp archive/tar_bounded_posix_test.cpp archive/tar_on_disk_posix_test.cpp
      archive/tar_unbounded_failures_posix_test.cpp archive/tar_write_failures_posix_test.cpp)
endif()
quavin_unit_test(
  package
  ${system_tests}
  archive/archived_package_test.cpp
  archive/tar_bounded_test.cpp
  archive/tar_depth_test.cpp
  archive/tar_entry_path_test.cpp
  archive/tar_extensions_test.cpp
  archive/tar_global_records_test.cpp
  archive/tar_header_test.cpp
  archive/tar_on_disk_test.cpp
  archive/tar_pax_records_test.cpp
  archive/tar_reader_test.cpp
  archive/tar_real_archives_test.cpp
  archive/tar_refused_archives_test.cpp
  archive/tar_refused_names_test.cpp
  archive/tar_secured_test.cpp
  archive/tar_secured_wipe_test.cpp
  archive/tar_unbounded_failures_test.cpp
  archive/tar_unbounded_names_test.cpp
  archive/tar_unbounded_test.cpp
  archive/tar_unbounded_unnoticed_test.cpp
  archive/tar_unsupported_test.cpp
  archive/tar_write_failures_test.cpp
  manifest/manifest_components_test.cpp
  manifest/manifest_diagnostics_test.cpp
  manifest/manifest_digest_test.cpp
  manifest/manifest_document_test.cpp
  manifest/manifest_example_test.cpp
  manifest/manifest_feature_block_test.cpp
  manifest/manifest_features_test.cpp
  manifest/manifest_file_test.cpp
  manifest/manifest_identity_test.cpp
  manifest/manifest_in_memory_test.cpp
  manifest/manifest_image_test.cpp
  manifest/manifest_nesting_test.cpp
  manifest/manifest_path_test.cpp
  manifest/manifest_targets_test.cpp
  manifest/model_metadata_test.cpp
  manifest/model_type_test.cpp
  path/file_utils_create_delete_test.cpp
  path/file_utils_invalid_utf8_test.cpp
  path/file_utils_path_exists_test.cpp
  path/file_utils_path_text_test.cpp
  path/file_utils_read_test.cpp
  path/file_utils_threads_test.cpp
  path/file_utils_write_test.cpp
  path/filepath_test.cpp
  path/package_path_test.cpp
  path/path_arguments_test.cpp
  path/path_cases.cpp
  path/path_cases_lengths.cpp
  path/path_cases_names.cpp
  path/path_cases_system.cpp
  path/path_cases_test.cpp
  path/path_cases_text.cpp
  path/path_outcome.cpp
  secured/decryption_arguments_test.cpp
  secured/decryption_lengths_test.cpp
  secured/decryption_overlap_test.cpp
  secured/decryption_test.cpp
  secured/decryption_threads_test.cpp
  secured/encryption_test.cpp
  secured/package_keys_test.cpp
  signature/ecdsa_signature_test.cpp
  signature/public_key_test.cpp
  signature/trusted_keys_test.cpp
  signature/verify_signature_test.cpp
  source/memory_source_test.cpp
  source/network_components_test.cpp
  source/signed_directory_test.cpp
  source/signed_source_test.cpp
  source/sized_file_test.cpp)
target_link_libraries(quavin_package_tests PRIVATE quavin_test_packages)

# Signing is for the tools, and not part of the library.
if(QUAVIN_BUILD_TOOLS)
  target_sources(quavin_package_tests PRIVATE package/signature/signing_test.cpp
                                              "${PROJECT_SOURCE_DIR}/src/package/signature/signing.cpp")
  target_link_libraries(quavin_package_tests PRIVATE quavin_tool_platform_objects)
endif()
