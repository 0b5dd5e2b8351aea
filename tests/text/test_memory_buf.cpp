// FixedSizeMemoryBuf: streams over one fixed block that cannot grow or seek.
#include "KZStringFunctions.h"

#include <gtest/gtest.h>

#include <istream>
#include <string>

TEST(FixedSizeMemoryBuf, CallerBlockIsReadAndWrittenInPlaceUpToItsEnd)
{
    char block[] = "12 34-";
    FixedSizeMemoryBuf buf(block, 5);
    std::iostream io(&buf);
    EXPECT_EQ(io.tellp(), std::streampos(-1)); // no seeking
    EXPECT_EQ(io.tellg(), std::streampos(-1));
    std::string a, b;
    EXPECT_TRUE(io >> a >> b);
    EXPECT_EQ(a + "/" + b, "12/34");
    EXPECT_TRUE(io.eof());
    io.clear();
    io << "abcdef";
    EXPECT_TRUE(io.bad());
    EXPECT_EQ(std::string(block), "abcde-");
}

TEST(FixedSizeMemoryBuf, EmptyBlocksReadNothingAndTakeNothing)
{
    char byte = 'x';
    FixedSizeMemoryBuf overCaller(&byte, 0), owned(0ul), overNull(nullptr, 100);
    for (FixedSizeMemoryBuf* buf : {&overCaller, &owned, &overNull}) {
        std::iostream io(buf);
        EXPECT_EQ(io.get(), std::char_traits<char>::eof());
        io.clear();
        io << 'y';
        EXPECT_TRUE(io.bad());
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
