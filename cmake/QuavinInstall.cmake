# Headers, library and CMake package; and the OpenVINO runtime beside the library where it came from
# the cache, since it is installed nowhere else.

include(CMakePackageConfigHelpers)

set(quavin_package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/quavin_on_device_sdk")
set(quavin_runtime_dir "${CMAKE_INSTALL_LIBDIR}/quavin")

install(
  TARGETS quavin_on_device_sdk
  EXPORT quavin_on_device_sdk_targets
  LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}"
  ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}"
  RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}")
install(DIRECTORY "${PROJECT_SOURCE_DIR}/include/quavin" DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}"
        FILES_MATCHING PATTERN "*.h")
install(EXPORT quavin_on_device_sdk_targets NAMESPACE quavin:: DESTINATION "${quavin_package_dir}")

configure_package_config_file(
  "${PROJECT_SOURCE_DIR}/cmake/quavin_on_device_sdk-config.cmake.in"
  "${PROJECT_BINARY_DIR}/quavin_on_device_sdk-config.cmake" INSTALL_DESTINATION "${quavin_package_dir}")
write_basic_package_version_file("${PROJECT_BINARY_DIR}/quavin_on_device_sdk-config-version.cmake"
                                 COMPATIBILITY SameMinorVersion)
install(FILES "${PROJECT_BINARY_DIR}/quavin_on_device_sdk-config.cmake"
              "${PROJECT_BINARY_DIR}/quavin_on_device_sdk-config-version.cmake"
        DESTINATION "${quavin_package_dir}")

if(QUAVIN_ENGINE_IS_ADAPTER AND QUAVIN_OPENVINO_FROM_CACHE)
  option(QUAVIN_INSTALL_RUNTIME "Install the OpenVINO runtime from the cache beside the library" ON)
endif()
if(QUAVIN_INSTALL_RUNTIME)
  # The C interface, the runtime, what reads networks, the CPU device and the threads under it.
  get_filename_component(quavin_openvino_libs "${OpenVINO_DIR}/../libs" ABSOLUTE)
  file(GLOB quavin_runtime_files
       "${quavin_openvino_libs}/libopenvino.so*"
       "${quavin_openvino_libs}/libopenvino_c.so*"
       "${quavin_openvino_libs}/libopenvino_ir_frontend.so*"
       "${quavin_openvino_libs}/libopenvino_*_cpu_plugin.so*"
       "${quavin_openvino_libs}/libtbb.so*"
       "${quavin_openvino_libs}/libtbbmalloc.so*"
       "${quavin_openvino_libs}/libtbbbind*.so*"
       "${quavin_openvino_libs}/libhwloc.so*")
  install(FILES ${quavin_runtime_files} DESTINATION "${quavin_runtime_dir}")
  set_target_properties(quavin_on_device_sdk PROPERTIES INSTALL_RPATH "$ORIGIN;$ORIGIN/quavin")
else()
  set_target_properties(quavin_on_device_sdk PROPERTIES INSTALL_RPATH "$ORIGIN" INSTALL_RPATH_USE_LINK_PATH
                                                                                   ON)
endif()
