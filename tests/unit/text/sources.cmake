quavin_unit_test(text portable_name_test.cpp unicode_test.cpp xml_tags_test.cpp)
