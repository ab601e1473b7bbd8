#include <stdexcept>
#include <vector>

#include <gtest/gtest.h>

#include "common/Notify.h"

namespace {

using namespace halNotify;

class NotifyTest : public testing::Test {
  protected:
    void TearDown() override {
        setNotifyHandler(Handler());
        setNotifyLevel(Warning);
    }
};

TEST_F(NotifyTest, SendsToTheHandlerOfTheSeverityWhatIsEnabled) {
    std::vector<std::string> errors;
    std::vector<std::string> others;
    setNotifyHandler([&](Severity, const std::string& text) { others.push_back(text); });
    setNotifyHandler(Error, [&](Severity, const std::string& text) { errors.push_back(text); });

    notify(Error) << "line: " << 1234567 << ' ' << 0.5;
    notify(Warning) << "careful";
    notify(Info) << "dropped";
    setNotifyLevel(Info);
    notify(Info) << "shown";
    notify(static_cast<Severity>(99)) << "no severity";

    EXPECT_EQ(errors, std::vector<std::string>{"line: 1234567 0.5"});
    EXPECT_EQ(others, (std::vector<std::string>{"careful", "shown"}));
    EXPECT_TRUE(isNotifyEnabled(Always));
    EXPECT_FALSE(isNotifyEnabled(Debug));
}

TEST_F(NotifyTest, WritesWarningsAndWorseToStandardErrorWithoutAHandler) {
    setNotifyLevel(Debug);
    testing::internal::CaptureStderr();
    notify(Warning) << "seen";
    notify(Info) << "unseen";
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "seen\n");
}

TEST_F(NotifyTest, SurvivesAHandlerThatThrowsOrReplacesItself) {
    setNotifyHandler([](Severity, const std::string&) { throw std::runtime_error("broken"); });
    notify(Error) << "a";
    int count = 0;
    setNotifyHandler(Error, [&count](Severity, const std::string&) {
        ++count;
        setNotifyHandler(Error, Handler([](Severity, const std::string&) {}));
        ++count;
    });
    notify(Error) << "b";
    notify(Error) << "c";
    EXPECT_EQ(count, 2);
}

}  // namespace
