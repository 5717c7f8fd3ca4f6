quavin_unit_test(text base64_test.cpp der_test.cpp portable_name_test.cpp unicode_test.cpp
                 xml_tags_test.cpp)
# Not part of the library: the adapter and the command line use it.
target_sources(quavin_text_tests PRIVATE "${PROJECT_SOURCE_DIR}/src/text/xml_tags.cpp")
