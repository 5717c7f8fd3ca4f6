# Picks what stands behind the engine interface (inference_engine.hpp) and gives it the name quavin::engine.
#
# installed: a 2019-2020 OpenVINO found by find_package(InferenceEngine)
# adapter:   compat/inference_engine over the maintained OpenVINO runtime
# auto:      the first if it is found, otherwise the second

if(NOT QUAVIN_ENGINE MATCHES "^(auto|installed|adapter)$")
  message(FATAL_ERROR "QUAVIN_ENGINE is \"${QUAVIN_ENGINE}\"; it takes auto, installed or adapter")
endif()

# Later releases carry the same package without the network reader that the engine needs.
function(quavin_check_installed_engine usable)
  set(CMAKE_REQUIRED_LIBRARIES IE::inference_engine)
  check_cxx_source_compiles(
    "#include <inference_engine.hpp>
     int main() { return InferenceEngine::CreateCNNNetReader() == nullptr; }"
    QUAVIN_INSTALLED_ENGINE_HAS_READER)
  set(${usable} "${QUAVIN_INSTALLED_ENGINE_HAS_READER}" PARENT_SCOPE)
endfunction()

set(QUAVIN_ENGINE_IS_ADAPTER TRUE)
if(NOT QUAVIN_ENGINE STREQUAL "adapter")
  find_package(InferenceEngine QUIET)
  if(TARGET IE::inference_engine)
    include(CheckCXXSourceCompiles)
    quavin_check_installed_engine(quavin_installed_engine_usable)
    if(quavin_installed_engine_usable)
      set(QUAVIN_ENGINE_IS_ADAPTER FALSE)
    endif()
  endif()
  if(QUAVIN_ENGINE STREQUAL "installed" AND QUAVIN_ENGINE_IS_ADAPTER)
    message(FATAL_ERROR "No Inference Engine of 2019-2020 with a network reader was found: name its folder of "
                        "InferenceEngineConfig.cmake with -DInferenceEngine_DIR=, or use QUAVIN_ENGINE=adapter")
  endif()
endif()

if(QUAVIN_ENGINE_IS_ADAPTER)
  include(QuavinOpenVINO)
  if(WIN32)
    # As the wheel has them.
    file(GLOB quavin_engine_dlls
         "${OpenVINO_DIR}/../libs/openvino.dll"
         "${OpenVINO_DIR}/../libs/openvino_c.dll"
         "${OpenVINO_DIR}/../libs/openvino_ir_frontend.dll"
         "${OpenVINO_DIR}/../libs/openvino_*_cpu_plugin.dll"
         "${OpenVINO_DIR}/../libs/tbb*.dll")
    if(NOT quavin_engine_dlls)
      message(WARNING "The DLLs of OpenVINO are not where its wheels have them. Name their folder in PATH, or programs "
                      "will not start.")
    endif()
    quavin_put_beside_programs(${quavin_engine_dlls})
  endif()
  add_subdirectory("${PROJECT_SOURCE_DIR}/compat/inference_engine" compat/inference_engine)
  add_library(quavin::engine ALIAS quavin_inference_engine)
  message(STATUS "Engine: adapter over OpenVINO ${OpenVINO_VERSION} (${OpenVINO_DIR})")
else()
  add_library(quavin_installed_engine INTERFACE)
  target_link_libraries(quavin_installed_engine INTERFACE IE::inference_engine)
  # Releases of 2020 mark the network reader as going away.
  target_compile_options(quavin_installed_engine
                         INTERFACE $<IF:$<CXX_COMPILER_ID:MSVC>,/wd4996,-Wno-deprecated-declarations>)
  add_library(quavin::engine ALIAS quavin_installed_engine)
  message(STATUS "Engine: installed Inference Engine (${InferenceEngine_DIR})")
endif()
