if(NOT WIN32)
  # POSIX modes and pipes, processes that are killed, and seals that Windows lacks.
  set(system_tests cache/compiled_cache_posix_test.cpp cache/secret_seal_posix_test.cpp)
else()
  set(system_tests "")
endif()
quavin_unit_test(
  engine
  ${system_tests}
  allocation_watch.cpp
  cache/cache_name_test.cpp
  cache/compiled_cache_limit_test.cpp
  cache/compiled_cache_test.cpp
  cache/content_hash_test.cpp
  cache/entry_buffer_test.cpp
  memory_exhaustion_test.cpp
  openvino_tensor_test.cpp
  output_pool_test.cpp
  precision_test.cpp
  secret_allocator_test.cpp)
target_include_directories(quavin_engine_tests PRIVATE "${CMAKE_CURRENT_SOURCE_DIR}/engine")
target_link_libraries(quavin_engine_tests PRIVATE quavin_test_packages)

# The engine folder's sources on an engine that fails on demand. This needs the parts of the
# interface that depend on no runtime, which an installed engine does not provide separately.
if(QUAVIN_ENGINE_IS_ADAPTER)
  target_sources(quavin_engine_tests PRIVATE engine/signed_cache_test.cpp) # other engines need not export networks
  function(quavin_faulty_engine_test target)
    list(TRANSFORM ARGN PREPEND "engine/")
    add_executable(${target} ${ARGN} "${PROJECT_SOURCE_DIR}/tests/support/faulty_engine.cpp"
                             $<TARGET_OBJECTS:quavin_objects> $<TARGET_OBJECTS:quavin_engine_objects>)
    quavin_private_target(${target})
    target_compile_definitions(${target} PRIVATE QUAVIN_BUILDING_LIBRARY)
    target_include_directories(${target} PRIVATE "${CMAKE_CURRENT_SOURCE_DIR}/engine")
    target_link_libraries(${target} PRIVATE quavin_test_packages quavin_internal_headers
                                            quavin_ie_interface)
    quavin_discover_tests(${target} "unit.engine.")
  endfunction()

  quavin_faulty_engine_test(
    quavin_faulty_engine_tests
    allocation_watch.cpp
    engine_info_test.cpp
    engine_options_test.cpp
    faulty_describing_test.cpp
    faulty_diagnostics_test.cpp
    faulty_inference_test.cpp
    faulty_loading_test.cpp
    network_reading_test.cpp
    sealed_package_test.cpp
    weights_mapping_test.cpp)
  quavin_faulty_engine_test(quavin_bare_request_tests bare_request_test.cpp)
  target_sources(quavin_bare_request_tests PRIVATE "${PROJECT_SOURCE_DIR}/tests/support/bare_request.cpp")
endif()

# The library on an engine defined by the test.
add_executable(quavin_second_engine_tests engine/second_engine_test.cpp)
quavin_private_target(quavin_second_engine_tests)
target_link_libraries(quavin_second_engine_tests PRIVATE quavin_test_packages quavin_objects)
quavin_discover_tests(quavin_second_engine_tests "unit.engine.")
