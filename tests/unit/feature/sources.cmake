quavin_unit_test(
  feature
  feature_accessors_test.cpp
  model_feature_descriptor_test.cpp
  quavin_feature_tensor_test.cpp
  scalar_features_test.cpp
  type_names_test.cpp)
