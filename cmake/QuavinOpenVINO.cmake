# Finds the OpenVINO runtime: the one that the user names (OpenVINO_DIR or OpenVINO_ROOT, as variables or in the
# environment, or CMAKE_PREFIX_PATH), or else the pinned one in the cache, which scripts/fetch_openvino.py fills once.

set(QUAVIN_OPENVINO_FROM_CACHE FALSE)
if(CMAKE_PREFIX_PATH)
  find_package(OpenVINO QUIET COMPONENTS Runtime PATHS ${CMAKE_PREFIX_PATH} NO_DEFAULT_PATH)
endif()
if(NOT OpenVINO_DIR
   AND NOT OpenVINO_ROOT
   AND NOT DEFINED ENV{OpenVINO_DIR}
   AND NOT DEFINED ENV{OpenVINO_ROOT})
  # Not the Python of an active virtual environment: it may lack pip.
  set(Python3_FIND_VIRTUALENV STANDARD)
  set(quavin_fetch_options "")
  if(CMAKE_CROSSCOMPILING)
    string(TOLOWER "${CMAKE_SYSTEM_NAME}-${CMAKE_SYSTEM_PROCESSOR}" quavin_system)
    set(quavin_fetch_options --system ${quavin_system})
  endif()
  find_package(Python3 REQUIRED COMPONENTS Interpreter)
  execute_process(
    COMMAND "${Python3_EXECUTABLE}" "${PROJECT_SOURCE_DIR}/scripts/fetch_openvino.py" ${quavin_fetch_options}
    OUTPUT_VARIABLE quavin_openvino_package
    OUTPUT_STRIP_TRAILING_WHITESPACE
    RESULT_VARIABLE quavin_fetch_result)
  if(NOT quavin_fetch_result EQUAL 0)
    message(FATAL_ERROR "The OpenVINO runtime is not in the cache and could not be fetched. "
                        "Name an installed one with -DOpenVINO_DIR=<folder of OpenVINOConfig.cmake>.")
  endif()
  set(QUAVIN_OPENVINO_FROM_CACHE TRUE)
  set(OpenVINO_DIR "${quavin_openvino_package}")
endif()
find_package(OpenVINO REQUIRED COMPONENTS Runtime)
if(QUAVIN_OPENVINO_FROM_CACHE)
  # Not cached, so that a later -DOpenVINO_DIR or a new pin takes effect.
  unset(OpenVINO_DIR CACHE)
endif()
