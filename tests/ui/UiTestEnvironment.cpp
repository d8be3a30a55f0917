// One QApplication for every widget test, on the offscreen platform unless the run chose one.
#include <QApplication>

#include <gtest/gtest.h>

#include <memory>

namespace {

class UiTestEnvironment final : public ::testing::Environment {
public:
    void SetUp() override {
        if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
            qputenv("QT_QPA_PLATFORM", "offscreen");
        }
        application_ = std::make_unique<QApplication>(argc_, argv_);
        QApplication::setQuitOnLastWindowClosed(false);
    }
    void TearDown() override { application_.reset(); }

private:
    int argc_ = 1;
    char name_[9] = "ui_tests";
    char* argv_[2] = {name_, nullptr};
    std::unique_ptr<QApplication> application_;
};

const auto* const environment = ::testing::AddGlobalTestEnvironment(new UiTestEnvironment);

} // namespace
