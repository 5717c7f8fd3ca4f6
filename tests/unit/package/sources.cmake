# Links, pipes, permissions and file limits as POSIX has them.
set(posix_tests "")
if(NOT WIN32)
  set(posix_tests file_utils_posix_test.cpp tar_on_disk_test.cpp tar_write_failures_test.cpp tar_bounded_test.cpp tar_unbounded_failures_test.cpp)
endif()
quavin_unit_test(
  package
  ${posix_tests}
  decryption_arguments_test.cpp
  decryption_lengths_test.cpp
  decryption_overlap_test.cpp
  decryption_test.cpp
  decryption_threads_test.cpp
  encryption_test.cpp
  file_utils_create_delete_test.cpp
  file_utils_invalid_utf8_test.cpp
  file_utils_path_exists_test.cpp
  file_utils_path_text_test.cpp
  file_utils_read_test.cpp
  file_utils_threads_test.cpp
  file_utils_write_test.cpp
  filepath_test.cpp
  manifest_components_test.cpp
  manifest_example_test.cpp
  manifest_feature_block_test.cpp
  manifest_features_test.cpp
  manifest_file_test.cpp
  manifest_identity_test.cpp
  manifest_image_test.cpp
  manifest_nesting_test.cpp
  manifest_path_test.cpp
  manifest_targets_test.cpp
  model_metadata_test.cpp
  model_type_test.cpp
  sized_file_test.cpp
  tar_depth_test.cpp
  tar_entry_path_test.cpp
  tar_extensions_test.cpp
  tar_global_records_test.cpp
  tar_header_test.cpp
  tar_pax_records_test.cpp
  tar_reader_test.cpp
  tar_real_archives_test.cpp
  tar_refused_archives_test.cpp
  tar_refused_names_test.cpp
  tar_secured_test.cpp
  tar_secured_wipe_test.cpp
  tar_unbounded_names_test.cpp
  tar_unbounded_test.cpp
  tar_unbounded_unnoticed_test.cpp
  tar_unsupported_test.cpp
  )
target_link_libraries(quavin_package_tests PRIVATE quavin_test_packages)
