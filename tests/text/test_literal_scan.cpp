// The matcher's literal search on every path the processor has, held to the
// byte-by-byte path and to std::string::find, with the text placed against
// inaccessible pages so that any read outside it faults.
#include "LiteralScan.h"

#include <gtest/gtest.h>

#ifdef _WIN32
#include <windows.h>
#else
#include <sys/mman.h>
#include <unistd.h>
#endif

#include <cstring>
#include <random>
#include <string>

namespace {

using kztext::ScanPath;

// Room for one text between two inaccessible pages; place() puts a text flush
// against the one behind or the one before it.
class GuardedBuffer {
public:
#ifdef _WIN32
    GuardedBuffer()
    {
        SYSTEM_INFO system;
        ::GetSystemInfo(&system);
        m_page = system.dwPageSize;
        m_base = static_cast<char*>(::VirtualAlloc(nullptr, 3 * m_page, MEM_RESERVE, PAGE_NOACCESS));
        if (m_base && !::VirtualAlloc(m_base + m_page, m_page, MEM_COMMIT, PAGE_READWRITE)) {
            ::VirtualFree(m_base, 0, MEM_RELEASE);
            m_base = nullptr;
        }
    }
    ~GuardedBuffer()
    {
        if (m_base)
            ::VirtualFree(m_base, 0, MEM_RELEASE);
    }
#else
    GuardedBuffer()
    {
        m_page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
        void* all = mmap(nullptr, 3 * m_page, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        m_base = all == MAP_FAILED ? nullptr : static_cast<char*>(all);
        if (m_base) {
            mprotect(m_base, m_page, PROT_NONE);
            mprotect(m_base + 2 * m_page, m_page, PROT_NONE);
        }
    }
    ~GuardedBuffer()
    {
        if (m_base)
            munmap(m_base, 3 * m_page);
    }
#endif
    bool ready() const
    {
        return m_base != nullptr;
    }

    const char* place(const std::string& text, bool againstTheEnd)
    {
        char* const at = againstTheEnd ? m_base + 2 * m_page - text.size() : m_base + m_page;
        std::memcpy(at, text.data(), text.size());
        return at;
    }

private:
    std::size_t m_page = 0;
    char* m_base = nullptr;
};

const char* pathName(ScanPath path)
{
    switch (path) {
    case ScanPath::Sse2: return "Sse2";
    case ScanPath::Avx2: return "Avx2";
    case ScanPath::Avx512: return "Avx512";
    default: return "Bytes";
    }
}

class LiteralScan : public ::testing::TestWithParam<ScanPath> {
protected:
    void SetUp() override
    {
        if (!kztext::scanPathAvailable(GetParam()))
            GTEST_SKIP() << "this processor lacks " << pathName(GetParam());
    }
};

INSTANTIATE_TEST_SUITE_P(Path, LiteralScan,
                         ::testing::Values(ScanPath::Bytes, ScanPath::Sse2, ScanPath::Avx2, ScanPath::Avx512),
                         [](const ::testing::TestParamInfo<ScanPath>& info) { return pathName(info.param); });

// Texts of every length up to a few blocks, needles of 1 to 20 bytes drawn
// from a small alphabet (so partial matches abound), sometimes planted at the
// very start or end, the text against either guard page.
TEST_P(LiteralScan, FindsTheFirstOccurrenceAndReadsOnlyTheText)
{
    GuardedBuffer buffer;
    ASSERT_TRUE(buffer.ready());
    std::mt19937 rng(1212);
    for (int round = 0; round < 20000; ++round) {
        std::string text(rng() % 200, ' '), needle(1 + rng() % 20, ' ');
        for (char& c : text)
            c = "ab\0c"[rng() % 4];
        for (char& c : needle)
            c = "ab\0c"[rng() % 4];
        const unsigned plant = rng() % 4;
        if (plant == 1 && needle.size() <= text.size())
            text.replace(0, needle.size(), needle);
        if (plant == 2 && needle.size() <= text.size())
            text.replace(text.size() - needle.size(), needle.size(), needle);
        const std::size_t want = text.find(needle);
        const bool againstTheEnd = round % 2 == 0;
        const char* const at = buffer.place(text, againstTheEnd);
        const char* const got = kztext::findLiteralOn(GetParam(), at, text.size(), needle.data(), needle.size());
        ASSERT_EQ(got ? static_cast<std::size_t>(got - at) : std::string::npos, want)
            << "needle of " << needle.size() << " in a text of " << text.size();
    }
}

TEST_P(LiteralScan, EmptyNeedleAndShortTexts)
{
    const char text[] = "abc";
    EXPECT_EQ(kztext::findLiteralOn(GetParam(), text, 3, "", 0), text);
    EXPECT_EQ(kztext::findLiteralOn(GetParam(), text, 3, "abcd", 4), nullptr);
    EXPECT_EQ(kztext::findLiteralOn(GetParam(), text, 0, "a", 1), nullptr);
    EXPECT_EQ(kztext::findLiteralOn(GetParam(), text, 3, "bc", 2), text + 1);
}

} // namespace
