set(system_tests "")
if(WIN32)
  set(system_tests log_processor_file_system_windows_test.cpp)
endif()
quavin_unit_test(
  core
  ${system_tests}
  byte_traits_test.cpp
  debug_log_format_test.cpp
  default_log_chain_test.cpp
  diagnostics_test.cpp
  exceptions_test.cpp
  log_processor_container_test.cpp
  log_processor_file_system_test.cpp
  log_processor_formatter_test.cpp
  log_processor_ostream_test.cpp
  logging_hub_history_test.cpp
  logging_hub_test.cpp
  report_at_exit_test.cpp
  report_test.cpp
  secure_wipe_test.cpp
  sized_block_test.cpp
  status_from_exception_test.cpp
  status_test.cpp
  stream_steps_test.cpp
  text_test.cpp
  version_test.cpp)
