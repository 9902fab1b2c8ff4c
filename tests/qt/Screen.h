#pragma once

#include <QApplication>
#include <QDir>
#include <QWidget>

#include <gtest/gtest.h>

#include <memory>

namespace zv::test {

/// Keeps what a window shows in the folder ZV_PICTURES, where there is one.
inline void picture(QWidget& window, const std::string& name)
{
    QApplication::processEvents();
    if (const QString folder = qEnvironmentVariable("ZV_PICTURES"); !folder.isEmpty()) {
        EXPECT_TRUE(window.grab().save(QDir(folder).filePath(QString::fromStdString(name + ".png"))));
    }
}

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
