// The message box and the assertion handler where no box can be shown: in
// the core library always, in the full library without a QApplication. Both
// write to stderr and answer "Abbrechen", which ends an assertion.
#include "CrossPlatformApi.h"
#include "KZStringFunctions.h"

#include <gtest/gtest.h>

#include <string>

namespace {

TEST(MessageBoxWithoutGui, ReportsOnStderrInUtf8AndAnswersCancel)
{
    testing::internal::CaptureStderr();
    EXPECT_EQ(CrossPlatformApi::messageBox("gel\xF6scht.", "Planer", 0x36), 2);
    EXPECT_EQ(CrossPlatformApi::messageBox(nullptr, nullptr, 0), 2);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Planer: gel\xC3\xB6scht.\n: \n");
}

// Without a GUI the box answers "cancel", which ends the process with status 99.
TEST(AssertionWithoutGui, CancelEndsTheProcessAndLongPositionsAreCut)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(processAssertion(false, "main.c", 12, "x > 0"), testing::ExitedWithCode(99),
                "ASSERTION: ASSERTION in main.c, line 12.");
    const std::string file(1000, 'f');
    EXPECT_EXIT(processAssertion(false, file.c_str(), 1, nullptr), testing::ExitedWithCode(99),
                "ASSERTION in " + std::string(299, 'f') + "\nAusdruck:"); // no {n}: Windows' gtest regex is simpler
}

} // namespace
