#pragma once

#include <gtest/gtest.h>

#include <memory>

#include "quavin/client.h"

namespace VelmoraQuavin {

/// Switches the process-wide client off before and after each test.
class ClientFixture : public ::testing::Test {
protected:
    ClientFixture() { QuavinClient::terminate(); }
    ~ClientFixture() override { QuavinClient::terminate(); }

    static QuavinConfig configOf(const std::shared_ptr<ILogProcessor>& logger) {
        QuavinConfig config;
        config.SetLogger(logger);
        return config;
    }
};

}  // namespace VelmoraQuavin
