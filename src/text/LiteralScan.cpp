// Literal search by a three-byte filter: a vector compares the needle's first
// byte at every position of a block, and its middle and last bytes at the
// same positions moved on by length / 2 and length - 1; only positions where
// all three agree are compared in full. The filter throws out nearly every position of ordinary text at a few
// instructions per block, and the text is read once, start to end.
// Every load lies inside the text: the main loop stops where the next block
// would reach past the end, and the last positions are checked by one block
// that ends exactly at the end (or byte by byte when the text is too short);
// with AVX-512 the last block is a masked load instead.
#include "LiteralScan.h"

#include <cstdint>
#include <cstring>

#if defined(__x86_64__) || defined(__i386__)
#define KZ_HAVE_X86_VECTORS 1
#include <immintrin.h>
#endif

namespace kztext {

namespace {

// The candidate at position `at` (its first and last byte already agree).
// Needles are short (a pattern holds at most 127 characters), so a plain loop
// beats a call.
inline bool middleAgrees(const char* at, const char* needle, std::size_t length)
{
    for (std::size_t k = 1; k + 1 < length; ++k)
        if (at[k] != needle[k])
            return false;
    return true;
}

const char* findByBytes(const char* text, std::size_t from, std::size_t lastStart, const char* needle,
                        std::size_t length)
{
    for (std::size_t i = from; i <= lastStart; ++i)
        if (text[i] == needle[0] && text[i + length - 1] == needle[length - 1]
            && middleAgrees(text + i, needle, length))
            return text + i;
    return nullptr;
}

// The leftmost full match among the candidate positions of `mask` (bit k for
// block + k).
inline const char* firstOf(std::uint64_t mask, const char* block, const char* needle, std::size_t length)
{
    for (; mask != 0; mask &= mask - 1) {
        const char* const at = block + __builtin_ctzll(mask);
        if (middleAgrees(at, needle, length))
            return at;
    }
    return nullptr;
}

#if KZ_HAVE_X86_VECTORS

// One vector width's search. Block::width positions per step; `candidates`
// gives the filter's mask for the block at p.
template <class Block>
inline const char* findByBlocks(const char* text, std::size_t size, const char* needle, std::size_t length)
{
    constexpr std::size_t width = Block::width;
    const std::size_t lastStart = size - length; // the last position a match can begin
    const Block filter(needle, length);
    std::size_t i = 0;
    // A block at i reads text[i .. i + length - 1 + width - 1].
    for (; i + width - 1 <= lastStart; i += width)
        if (std::uint64_t mask = filter.candidates(text + i, length))
            if (const char* hit = firstOf(mask, text + i, needle, length))
                return hit;
    if (i > lastStart)
        return nullptr;
    if (lastStart < width - 1)
        return findByBytes(text, i, lastStart, needle, length);
    // One block ending at the end of the text; the positions before i are done.
    const std::size_t j = lastStart - (width - 1);
    const std::uint64_t mask = filter.candidates(text + j, length) & (~std::uint64_t(0) << (i - j));
    return firstOf(mask, text + j, needle, length);
}

struct Sse2Block {
    static constexpr std::size_t width = 16;
    Sse2Block(const char* needle, std::size_t length)
        : first(_mm_set1_epi8(needle[0])), mid(_mm_set1_epi8(needle[length / 2])),
          last(_mm_set1_epi8(needle[length - 1]))
    {
    }
    std::uint64_t candidates(const char* p, std::size_t length) const
    {
        const __m128i a = _mm_cmpeq_epi8(first, _mm_loadu_si128(reinterpret_cast<const __m128i*>(p)));
        const __m128i b = _mm_cmpeq_epi8(mid, _mm_loadu_si128(reinterpret_cast<const __m128i*>(p + length / 2)));
        const __m128i c = _mm_cmpeq_epi8(last, _mm_loadu_si128(reinterpret_cast<const __m128i*>(p + length - 1)));
        return static_cast<unsigned>(_mm_movemask_epi8(_mm_and_si128(_mm_and_si128(a, b), c)));
    }
    __m128i first, mid, last;
};

#define KZ_AVX2 __attribute__((target("avx2")))

struct Avx2Block {
    static constexpr std::size_t width = 32;
    KZ_AVX2 Avx2Block(const char* needle, std::size_t length)
        : first(_mm256_set1_epi8(needle[0])), mid(_mm256_set1_epi8(needle[length / 2])),
          last(_mm256_set1_epi8(needle[length - 1]))
    {
    }
    KZ_AVX2 std::uint64_t candidates(const char* p, std::size_t length) const
    {
        const __m256i a = _mm256_cmpeq_epi8(first, load(p));
        const __m256i b = _mm256_cmpeq_epi8(mid, load(p + length / 2));
        const __m256i c = _mm256_cmpeq_epi8(last, load(p + length - 1));
        return static_cast<std::uint32_t>(_mm256_movemask_epi8(_mm256_and_si256(_mm256_and_si256(a, b), c)));
    }
    KZ_AVX2 static __m256i load(const char* q) { return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(q)); }
    __m256i first, mid, last;
};

// With AVX-512 the last block needs no special case: a masked load reads
// only the bytes inside the text (the others are not touched at all).
#define KZ_AVX512 __attribute__((target("avx512f,avx512bw")))

KZ_AVX512 inline const char* findByMaskedBlocks(const char* text, std::size_t size, const char* needle,
                                                std::size_t length)
{
    constexpr std::size_t width = 64;
    const std::size_t lastStart = size - length;
    const std::size_t middle = length / 2;
    const __m512i first = _mm512_set1_epi8(needle[0]), mid = _mm512_set1_epi8(needle[middle]),
                  last = _mm512_set1_epi8(needle[length - 1]);
    for (std::size_t i = 0; i <= lastStart; i += width) {
        const std::size_t positions = lastStart - i + 1;
        const __mmask64 in = positions >= width ? ~__mmask64(0) : (__mmask64(1) << positions) - 1;
        const __m512i a = _mm512_maskz_loadu_epi8(in, text + i);
        const __m512i b = _mm512_maskz_loadu_epi8(in, text + i + middle);
        const __m512i c = _mm512_maskz_loadu_epi8(in, text + i + length - 1);
        const std::uint64_t mask = _mm512_mask_cmpeq_epi8_mask(
            _mm512_mask_cmpeq_epi8_mask(_mm512_mask_cmpeq_epi8_mask(in, a, first), b, mid), c, last);
        if (mask)
            if (const char* hit = firstOf(mask, text + i, needle, length))
                return hit;
    }
    return nullptr;
}

const char* findSse2(const char* text, std::size_t size, const char* needle, std::size_t length)
{
    return findByBlocks<Sse2Block>(text, size, needle, length);
}

// flatten: the block's AVX2 functions are inlined here, where AVX2 is on.
__attribute__((target("avx2"), flatten)) const char* findAvx2(const char* text, std::size_t size, const char* needle,
                                                              std::size_t length)
{
    return findByBlocks<Avx2Block>(text, size, needle, length);
}

__attribute__((target("avx512f,avx512bw"), flatten)) const char* findAvx512(const char* text, std::size_t size,
                                                                            const char* needle, std::size_t length)
{
    return findByMaskedBlocks(text, size, needle, length);
}

using Finder = const char* (*)(const char*, std::size_t, const char*, std::size_t);

Finder chooseFinder()
{
    __builtin_cpu_init(); // may run before the library's own constructors
    if (__builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512bw"))
        return findAvx512;
    return __builtin_cpu_supports("avx2") ? findAvx2 : findSse2;
}

Finder widestFinder()
{
    static const Finder finder = chooseFinder();
    return finder;
}

#endif

} // namespace

const char* findLiteral(const char* text, std::size_t size, const char* needle, std::size_t length)
{
    if (length == 0 || size < length)
        return length == 0 ? text : nullptr;
    if (length == 1)
        return static_cast<const char*>(std::memchr(text, needle[0], size));
#if KZ_HAVE_X86_VECTORS
    return widestFinder()(text, size, needle, length);
#else
    return findByBytes(text, 0, size - length, needle, length);
#endif
}

bool scanPathAvailable(ScanPath path)
{
    switch (path) {
    case ScanPath::Bytes: return true; // NOLINT(bugprone-branch-clone): a line per path, though two say true
#if KZ_HAVE_X86_VECTORS
    case ScanPath::Sse2: return true;
    case ScanPath::Avx2: return __builtin_cpu_supports("avx2");
    case ScanPath::Avx512: return __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512bw");
#endif
    default: return false;
    }
}

const char* findLiteralOn(ScanPath path, const char* text, std::size_t size, const char* needle, std::size_t length)
{
    if (length == 0 || size < length || !scanPathAvailable(path))
        return length == 0 ? text : nullptr;
    switch (path) {
#if KZ_HAVE_X86_VECTORS
    case ScanPath::Sse2: return findSse2(text, size, needle, length);
    case ScanPath::Avx2: return findAvx2(text, size, needle, length);
    case ScanPath::Avx512: return findAvx512(text, size, needle, length);
#endif
    default: return findByBytes(text, 0, size - length, needle, length);
    }
}

} // namespace kztext
