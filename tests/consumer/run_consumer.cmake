# Configures, builds and runs one of the consumer projects from scratch.

set(work "${CONSUMER_WORK_DIR}/${CONSUMER}")
file(REMOVE_RECURSE "${work}")
file(MAKE_DIRECTORY "${work}")

function(run)
  list(JOIN ARGV " " command)
  message(STATUS "${command}")
  execute_process(COMMAND ${ARGV} RESULT_VARIABLE result)
  if(NOT result EQUAL 0)
    message(FATAL_ERROR "failed (${result}): ${command}")
  endif()
endfunction()

set(flags "")
if(SANITIZE)
  set(flags "-fsanitize=address,undefined -fno-sanitize-recover=all")
endif()
if(TOOLCHAIN_FILE)
  set(toolchain "-DCMAKE_TOOLCHAIN_FILE=${TOOLCHAIN_FILE}")
else()
  set(toolchain "-DCMAKE_CXX_COMPILER=${CXX_COMPILER}")
endif()
set(options
    -G "${GENERATOR}" "-DCMAKE_BUILD_TYPE=${BUILD_TYPE}" ${toolchain}
    "-DCMAKE_CXX_COMPILER_LAUNCHER=${CXX_COMPILER_LAUNCHER}" "-DCMAKE_CXX_FLAGS=${flags}")

if(CONSUMER STREQUAL "installed")
  run("${CMAKE_COMMAND}" --install "${QUAVIN_BINARY_DIR}" --config "${BUILD_TYPE}" --prefix
      "${work}/first")
  # Moved, so that nothing can depend on the path it was installed to.
  file(RENAME "${work}/first" "${work}/prefix")
  file(GLOB headers RELATIVE "${work}/prefix/include" "${work}/prefix/include/*")
  if(NOT headers STREQUAL "quavin")
    message(FATAL_ERROR "more than the public headers were installed: ${headers}")
  endif()
  if(EXISTS "${work}/prefix/lib/libquavin_on_device_sdk.dll.a")
    foreach(suffix lib def)
      if(NOT EXISTS "${work}/prefix/lib/quavin_on_device_sdk.${suffix}")
        message(FATAL_ERROR "quavin_on_device_sdk.${suffix}, for Microsoft's linker, was not installed")
      endif()
    endforeach()
  endif()
  run("${PYTHON}" -B "${CONSUMER_SOURCE_DIR}/check_installed_pages.py" "${work}/prefix")
  list(APPEND options "-DCMAKE_PREFIX_PATH=${work}/prefix")
else()
  # Warnings as errors, so that ccache knows these compilations from the build around this test.
  list(APPEND options "-DQUAVIN_SOURCE_DIR=${QUAVIN_SOURCE_DIR}" "-DQUAVIN_ENGINE=${QUAVIN_ENGINE}"
       -DQUAVIN_WARNINGS_AS_ERRORS=ON)
  if(OPENVINO_DIR)
    list(APPEND options "-DOpenVINO_DIR=${OPENVINO_DIR}")
  endif()
  if(INFERENCE_ENGINE_DIR)
    list(APPEND options "-DInferenceEngine_DIR=${INFERENCE_ENGINE_DIR}")
  endif()
endif()

run("${CMAKE_COMMAND}" -S "${CONSUMER_SOURCE_DIR}/${CONSUMER}" -B "${work}/build" ${options})
run("${CMAKE_COMMAND}" --build "${work}/build" --config "${BUILD_TYPE}" --parallel 2)
find_program(consumer_program NAMES predict_twice predict_twice.exe PATHS "${work}/build" "${work}/build/${BUILD_TYPE}"
             NO_DEFAULT_PATH REQUIRED)
# Next to the program, as a Windows developer ships them.
get_filename_component(folder "${consumer_program}" DIRECTORY)
file(GLOB libraries "${work}/prefix/bin/*.dll")
if(libraries)
  file(COPY ${libraries} DESTINATION "${folder}")
endif()
# The system's libcrypto is not built for the emulated processor.
if(EMULATOR AND IS_DIRECTORY "${LIBRARY_PATH}")
  set(ENV{LD_LIBRARY_PATH} "${LIBRARY_PATH}")
endif()
run(${EMULATOR} "${consumer_program}" "${CONSUMER_SOURCE_DIR}/package")
