// The libFuzzer target of one format, which the build names.
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "read_input.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    static const kvo::DeckFormat* const format = kvo::findDeckFormat(KVO_FUZZ_FORMAT);
    if (!format) {
        std::fprintf(stderr, "no format %s\n", KVO_FUZZ_FORMAT);
        std::abort();
    }
    readInput(*format, reinterpret_cast<const char*>(bytes), size);
    return 0;
}
