quavin_unit_test(c handle_table_test.cpp last_error_test.cpp out_of_memory_test.cpp port_test.cpp)
target_sources(quavin_c_tests PRIVATE engine/allocation_watch.cpp)
target_include_directories(quavin_c_tests PRIVATE "${CMAKE_CURRENT_SOURCE_DIR}/engine")
target_link_libraries(quavin_c_tests PRIVATE quavin_test_packages)
