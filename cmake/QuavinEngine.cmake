# Picks the implementation of the engine interface (inference_engine.hpp) and names it quavin::engine.
#
# installed: a 2019-2020 OpenVINO found by find_package(InferenceEngine)
# adapter:   compat/inference_engine over the maintained OpenVINO runtime
# auto:      the first if it is found and usable, otherwise the second

if(NOT QUAVIN_ENGINE MATCHES "^(auto|installed|adapter)$")
  message(FATAL_ERROR "QUAVIN_ENGINE is \"${QUAVIN_ENGINE}\"; it must be auto, installed or adapter")
endif()

# quavin_check_installed_engine(<problem>): sets <problem> to the reason why the engine found cannot be used, or to
# the empty string if it can. Later releases provide the same package without the network reader.
function(quavin_check_installed_engine problem)
  set(source "${PROJECT_BINARY_DIR}/CMakeFiles/quavin_installed_engine.cpp")
  file(
    WRITE "${source}"
    "#include <inference_engine.hpp>
     int main() {
         InferenceEngine::details::shared_from_irelease(InferenceEngine::CreateDefaultAllocator());
         return InferenceEngine::CreateCNNNetReader() == nullptr;
     }")
  try_compile(
    linked "${PROJECT_BINARY_DIR}" "${source}"
    LINK_LIBRARIES ${quavin_installed_engine_libraries}
    OUTPUT_VARIABLE output CXX_STANDARD 17)
  set(usable ${linked})
  unset(linked CACHE) # so that configuring again in the right environment can succeed
  set(found "")
  if(NOT usable)
    string(REGEX MATCHALL "[^\n]*(error|undefined|not found|missing)[^\n]*" lines "${output}")
    list(JOIN lines "\n  " found)
    string(PREPEND found "  ")
  endif()
  set(${problem} "${found}" PARENT_SCOPE)
endfunction()

set(quavin_engine_advice
    "It must be a release from 2019 up to 2020.3, which has a network reader. Its libraries find each other through "
    "the environment that the release's own setupvars.sh sets: source it before configuring, building and running.")
list(JOIN quavin_engine_advice "" quavin_engine_advice)

set(QUAVIN_ENGINE_IS_ADAPTER TRUE)
if(NOT QUAVIN_ENGINE STREQUAL "adapter")
  find_package(InferenceEngine QUIET)
  set(quavin_engine_problem "")
  if(TARGET IE::inference_engine)
    # From 2020.2 on, part of the interface is in a second library, which the first does not link.
    set(quavin_installed_engine_libraries IE::inference_engine)
    if(TARGET IE::inference_engine_legacy)
      list(APPEND quavin_installed_engine_libraries IE::inference_engine_legacy)
    endif()
    quavin_check_installed_engine(quavin_engine_problem)
    if(quavin_engine_problem STREQUAL "")
      set(QUAVIN_ENGINE_IS_ADAPTER FALSE)
    endif()
  elseif(InferenceEngine_DIR)
    set(quavin_engine_problem "  its package is incomplete: ${InferenceEngine_NOT_FOUND_MESSAGE}")
  endif()
  if(NOT quavin_engine_problem STREQUAL "")
    set(quavin_engine_problem
        "The Inference Engine in ${InferenceEngine_DIR} cannot be used:\n${quavin_engine_problem}\n${quavin_engine_advice}")
    if(QUAVIN_ENGINE STREQUAL "auto")
      message(WARNING "${quavin_engine_problem} The adapter takes its place; use -DQUAVIN_ENGINE=adapter to silence "
                      "this warning.")
    else()
      message(FATAL_ERROR "${quavin_engine_problem}")
    endif()
  elseif(QUAVIN_ENGINE STREQUAL "installed" AND QUAVIN_ENGINE_IS_ADAPTER)
    message(FATAL_ERROR "No Inference Engine was found. Source the setupvars.sh of its installation or name the folder of "
                        "InferenceEngineConfig.cmake with -DInferenceEngine_DIR=, or use QUAVIN_ENGINE=adapter. "
                        "${quavin_engine_advice}")
  endif()
endif()

if(QUAVIN_ENGINE_IS_ADAPTER)
  include(QuavinOpenVINO)
  if(WIN32)
    # In the layout of the wheel.
    file(GLOB quavin_engine_dlls
         "${OpenVINO_DIR}/../libs/openvino.dll"
         "${OpenVINO_DIR}/../libs/openvino_c.dll"
         "${OpenVINO_DIR}/../libs/openvino_ir_frontend.dll"
         "${OpenVINO_DIR}/../libs/openvino_*_cpu_plugin.dll"
         "${OpenVINO_DIR}/../libs/tbb12.dll"
         "${OpenVINO_DIR}/../libs/tbbbind_*.dll"
         "${OpenVINO_DIR}/../libs/tbbmalloc.dll")
    if(NOT quavin_engine_dlls)
      message(WARNING "The DLLs of OpenVINO are not where its wheels have them. Add their folder to PATH, or programs "
                      "will not start.")
    endif()
    quavin_put_beside_programs(${quavin_engine_dlls})
  endif()
  add_subdirectory("${PROJECT_SOURCE_DIR}/compat/inference_engine" compat/inference_engine)
  add_library(quavin::engine ALIAS quavin_inference_engine)
  message(STATUS "Engine: adapter over OpenVINO ${OpenVINO_VERSION} (${OpenVINO_DIR})")
else()
  add_library(quavin_installed_engine INTERFACE)
  target_link_libraries(quavin_installed_engine INTERFACE ${quavin_installed_engine_libraries})
  # Releases of 2020 mark the network reader as deprecated.
  target_compile_options(quavin_installed_engine
                         INTERFACE $<IF:$<CXX_COMPILER_ID:MSVC>,/wd4996,-Wno-deprecated-declarations>)
  add_library(quavin::engine ALIAS quavin_installed_engine)
  message(STATUS "Engine: installed Inference Engine (${InferenceEngine_DIR})")
endif()
