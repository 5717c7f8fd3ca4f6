#pragma once

#include <gtest/gtest.h>

#include <string>

namespace VelmoraQuavin::testing {

/// Names every case of a parameterised suite after the member `name` of its parameter.
struct CaseName {
    template <typename Parameter>
    std::string operator()(const ::testing::TestParamInfo<Parameter>& info) const {
        return info.param.name;
    }
};

}  // namespace VelmoraQuavin::testing
