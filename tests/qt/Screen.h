#pragma once

#include <QApplication>

#include <gtest/gtest.h>

#include <memory>

namespace zv::test {

/// The application around all tests, on a screen that nobody sees.
class Screen final : public testing::Environment {
public:
    void SetUp() override
    {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        application_ = std::make_unique<QApplication>(argc_, argv_);
    }
    void TearDown() override { application_.reset(); }

private:
    int argc_ = 1;
    char name_[8] = "test_qt";
    char* argv_[2] = {name_, nullptr};
    std::unique_ptr<QApplication> application_;
};

inline testing::Environment* const screen =
    testing::AddGlobalTestEnvironment(std::make_unique<Screen>().release());

} // namespace zv::test
