// FixedSizeMemoryBuf: streams over one fixed block that cannot grow or seek.
#include "KZStringFunctions.h"

#include <gtest/gtest.h>

#include <cstring>
#include <istream>
#include <ostream>
#include <string>

TEST(FixedSizeMemoryBuf, WritesStopAtTheEndOfTheBlock)
{
    char block[6] = "-----";
    FixedSizeMemoryBuf buf(block, 4);
    std::ostream out(&buf);
    out << "abcde";
    EXPECT_TRUE(out.bad());
    EXPECT_EQ(std::string(block, 5), "abcd-");
}

TEST(FixedSizeMemoryBuf, ReadsCallerMemoryThenEndOfFile)
{
    char text[] = "12 34";
    FixedSizeMemoryBuf buf(text, 5);
    std::istream in(&buf);
    int a = 0, b = 0, c = 0;
    in >> a >> b;
    EXPECT_EQ(a, 12);
    EXPECT_EQ(b, 34);
    EXPECT_TRUE(in.eof());
    EXPECT_FALSE(in >> c);
}

TEST(FixedSizeMemoryBuf, EmptyBlocksReadNothingAndTakeNothing)
{
    char byte = 'x';
    FixedSizeMemoryBuf overCaller(&byte, 0);
    FixedSizeMemoryBuf owned(0ul);
    FixedSizeMemoryBuf overNull(nullptr, 100);   // a null block is empty whatever the size
    for (FixedSizeMemoryBuf* buf : {&overCaller, &owned, &overNull}) {
        std::istream in(buf);
        EXPECT_EQ(in.get(), std::char_traits<char>::eof());
        EXPECT_TRUE(in.eof());
        std::ostream out(buf);
        out << 'y';
        EXPECT_TRUE(out.bad());
    }
    EXPECT_EQ(byte, 'x');
}

TEST(FixedSizeMemoryBuf, OwnedBlockReadsBackWhatWasWrittenFromTheStart)
{
    FixedSizeMemoryBuf buf(8ul);
    std::ostream out(&buf);
    std::istream in(&buf);
    out << "ab";
    EXPECT_EQ(in.get(), 'a');
    out << "cdefgh";
    EXPECT_TRUE(out.good());
    std::string rest;
    in >> rest;
    EXPECT_EQ(rest, "bcdefgh");
    out << 'z';
    EXPECT_TRUE(out.bad());
}

TEST(FixedSizeMemoryBuf, SeekingFails)
{
    char text[] = "abc";
    FixedSizeMemoryBuf buf(text, 3);
    std::iostream io(&buf);
    EXPECT_EQ(io.tellg(), std::streampos(-1));
    EXPECT_EQ(io.tellp(), std::streampos(-1));
}
