// The environment chooses the cipher's path once, at the first cipher call.
// Each case runs in a child process of its own, where no call has been made
// yet (this program makes none outside the children).
#include "KZCrypt.h"
#include "Pinned.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace {

int best()
{
    return rijndaelImplementationAvailable(RIJNDAEL_VAES)       ? RIJNDAEL_VAES
           : rijndaelImplementationAvailable(RIJNDAEL_HARDWARE) ? RIJNDAEL_HARDWARE
                                                                : RIJNDAEL_PORTABLE;
}

int upTo(int wanted)
{
    for (int path = wanted; path > RIJNDAEL_PORTABLE; --path)
        if (rijndaelImplementationAvailable(path))
            return path;
    return RIJNDAEL_PORTABLE;
}

TEST(CipherPathChoice, EnvironmentForcesAPathAtTheFirstCall)
{
    const struct {
        const char* portable;
        const char* implementation;
        int expected;
    } cases[] = {
        {nullptr, nullptr, best()},
        {"1", nullptr, RIJNDAEL_PORTABLE},
        {"0", nullptr, best()}, // "0" does not force
        {nullptr, "0", RIJNDAEL_PORTABLE},
        {nullptr, "1", upTo(RIJNDAEL_HARDWARE)},
        {nullptr, "2", upTo(RIJNDAEL_VAES)},
        {nullptr, "7", best()},        // not a path: ignored
        {"1", "2", RIJNDAEL_PORTABLE}, // the portable switch wins
    };
    for (const auto& c : cases) {
        EXPECT_EXIT(
            {
                kzbs_test::setEnvironment("KZ_AES_PORTABLE", c.portable);
                kzbs_test::setEnvironment("KZ_AES_IMPLEMENTATION", c.implementation);
                std::exit(rijndaelImplementation() == c.expected ? 0 : 1);
            },
            ::testing::ExitedWithCode(0), "")
            << (c.portable ? c.portable : "-") << " " << (c.implementation ? c.implementation : "-");
    }
}

TEST(CipherPathChoice, AskingForAMissingPathTakesTheBestBelowIt)
{
    EXPECT_EXIT(
        {
            bool ok = rijndaelSetImplementation(RIJNDAEL_VAES) == upTo(RIJNDAEL_VAES)
                      && rijndaelSetImplementation(RIJNDAEL_HARDWARE) == upTo(RIJNDAEL_HARDWARE)
                      && rijndaelSetImplementation(RIJNDAEL_PORTABLE) == RIJNDAEL_PORTABLE
                      && rijndaelSetImplementation(5) == RIJNDAEL_PORTABLE;
            std::exit(ok ? 0 : 1);
        },
        ::testing::ExitedWithCode(0), "");
}

} // namespace
