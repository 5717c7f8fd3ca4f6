quavin_unit_test(
  model
  allocate_inputs_test.cpp
  device_test.cpp
  model_loading_test.cpp
  quavin_model_test.cpp
  verified_load_test.cpp)
