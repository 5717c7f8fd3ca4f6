# The libraries that are called besides the engine; docs/dependencies.md tells why each is there.

find_package(RapidJSON QUIET)
if(NOT RapidJSON_FOUND AND NOT RAPIDJSON_INCLUDE_DIRS)
  find_path(RAPIDJSON_INCLUDE_DIRS rapidjson/document.h REQUIRED)
endif()
find_path(QUAVIN_UTFCPP_INCLUDE_DIR utf8.h PATH_SUFFIXES utf8cpp REQUIRED)
find_package(OpenSSL REQUIRED COMPONENTS Crypto)
find_package(Threads REQUIRED)
if(QUAVIN_BUILD_TOOLS)
  find_path(QUAVIN_CLI11_INCLUDE_DIR CLI/CLI.hpp REQUIRED)
endif()
