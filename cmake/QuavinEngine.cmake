# Picks what stands behind the engine interface (inference_engine.hpp) and gives it the name quavin::engine.
#
# installed: a 2019-2020 OpenVINO found by find_package(InferenceEngine)
# adapter:   compat/inference_engine over the maintained OpenVINO runtime
# auto:      the first if it is found, otherwise the second

if(NOT QUAVIN_ENGINE MATCHES "^(auto|installed|adapter)$")
  message(FATAL_ERROR "QUAVIN_ENGINE is \"${QUAVIN_ENGINE}\"; it takes auto, installed or adapter")
endif()

set(QUAVIN_ENGINE_IS_ADAPTER TRUE)
if(QUAVIN_ENGINE STREQUAL "installed")
  find_package(InferenceEngine REQUIRED)
  set(QUAVIN_ENGINE_IS_ADAPTER FALSE)
elseif(QUAVIN_ENGINE STREQUAL "auto")
  find_package(InferenceEngine QUIET)
  if(InferenceEngine_FOUND AND TARGET IE::inference_engine)
    set(QUAVIN_ENGINE_IS_ADAPTER FALSE)
  endif()
endif()

if(QUAVIN_ENGINE_IS_ADAPTER)
  include(QuavinOpenVINO)
  add_subdirectory("${PROJECT_SOURCE_DIR}/compat/inference_engine" compat/inference_engine)
  add_library(quavin::engine ALIAS quavin_inference_engine)
  message(STATUS "Engine: adapter over OpenVINO ${OpenVINO_VERSION} (${OpenVINO_DIR})")
else()
  add_library(quavin_installed_engine INTERFACE)
  target_link_libraries(quavin_installed_engine INTERFACE IE::inference_engine)
  add_library(quavin::engine ALIAS quavin_installed_engine)
  message(STATUS "Engine: installed Inference Engine (${InferenceEngine_DIR})")
endif()
