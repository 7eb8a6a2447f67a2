// Decoding of data arrays.
#include "vtu_arrays.h"

#include <algorithm>
#include <charconv>

#include <zlib.h>

#include "text/fields.h"
#include "text/numbers.h"
#include "text/token_input.h"

namespace kvo {

namespace {

constexpr std::uint64_t bestCompression = 1040; // zlib's is 1032 to 1
constexpr std::uint64_t slack = 64;
const char* const zlibName = "vtkZLibDataCompressor";

[[noreturn]] void fail(const VtuArray& array, const VtuEncoding& encoding, const std::string& message)
{
    throw ImportError({encoding.path, array.line}, "array \"" + array.name + "\": " + message);
}

// --- bytes, raw or as base64 ---

int base64Value(char c)
{
    if (c >= 'A' && c <= 'Z') {
        return c - 'A';
    }
    if (c >= 'a' && c <= 'z') {
        return c - 'a' + 26;
    }
    if (isTextDigit(c)) {
        return c - '0' + 52;
    }
    return c == '+' ? 62 : c == '/' ? 63 : -1;
}

// Reads bytes one after the other. Padding in the midst of base64 only ends a group of it: some writers encode the
// header of an array by itself.
class ByteSource
{
public:
    ByteSource(const char* begin, const char* end, bool base64) : p(begin), end(end), base64(base64) {}

    // How many bytes may still come, at most.
    std::uint64_t left() const
    {
        const std::uint64_t rest = static_cast<std::uint64_t>(end - p);
        return base64 ? rest / 4 * 3 + 3 + ready : rest;
    }

    bool read(char* out, std::size_t count)
    {
        if (!base64) {
            if (static_cast<std::size_t>(end - p) < count) {
                return false;
            }
            std::copy(p, p + count, out);
            p += count;
            return true;
        }
        for (; count > 0; --count) {
            if (ready == used && !nextGroup()) {
                return false;
            }
            *out++ = static_cast<char>(group[used++]);
        }
        return true;
    }

private:
    bool nextGroup()
    {
        std::uint32_t bits = 0;
        int digits = 0;
        int padding = 0;
        for (; digits < 4 && p < end; ++p) {
            if (endsToken(*p)) {
                continue;
            }
            const int value = *p == '=' ? 0 : base64Value(*p);
            padding += *p == '=';
            if (value < 0) {
                return false;
            }
            bits = bits << 6 | static_cast<std::uint32_t>(value);
            ++digits;
        }
        group[0] = static_cast<unsigned char>(bits >> 16);
        group[1] = static_cast<unsigned char>(bits >> 8);
        group[2] = static_cast<unsigned char>(bits);
        used = 0;
        ready = 3 - std::min(padding, 3);
        return digits == 4 && ready > 0;
    }

    const char* p;
    const char* end;
    bool base64;
    unsigned char group[3] = {};
    int used = 0;
    int ready = 0;
};

std::uint64_t readHeader(ByteSource& source, const VtuArray& array, const VtuEncoding& encoding)
{
    char bytes[8];
    if (!source.read(bytes, static_cast<std::size_t>(encoding.headerBytes))) {
        fail(array, encoding, "its bytes are cut off");
    }
    return encoding.headerBytes == 4 ? numberFromBytes<std::uint32_t>(bytes, encoding.swapped)
                                     : numberFromBytes<std::uint64_t>(bytes, encoding.swapped);
}

std::vector<char> readPlain(ByteSource& source, const VtuArray& array, const VtuEncoding& encoding)
{
    const std::uint64_t count = readHeader(source, array, encoding);
    if (count > source.left()) {
        fail(array, encoding,
             std::to_string(count) + " bytes announced, " + std::to_string(source.left()) + " are there");
    }
    std::vector<char> bytes(static_cast<std::size_t>(count));
    if (!source.read(bytes.data(), bytes.size())) {
        fail(array, encoding, "its bytes are cut off");
    }
    return bytes;
}

// How many blocks, their size, the size of the last one if that is smaller, the compressed size of each, the blocks.
std::vector<char> readCompressed(ByteSource& source, const VtuArray& array, const VtuEncoding& encoding,
                                 std::uint64_t mostBytes)
{
    const std::uint64_t blocks = readHeader(source, array, encoding);
    const std::uint64_t blockBytes = readHeader(source, array, encoding);
    const std::uint64_t lastBytes = readHeader(source, array, encoding);
    if (blocks > source.left() / static_cast<std::uint64_t>(encoding.headerBytes)) {
        fail(array, encoding, std::to_string(blocks) + " blocks announced; the rest of the file cannot hold them");
    }
    std::vector<std::uint64_t> sizes;
    std::uint64_t packed = 0;
    for (std::uint64_t k = 0; k < blocks; ++k) {
        sizes.push_back(readHeader(source, array, encoding));
        packed += std::min(sizes.back(), source.left() + 1);
    }
    // Writers name the size of a full block even where the only one is smaller, or where there is none.
    const std::uint64_t most = packed * bestCompression + slack;
    const std::uint64_t full = blocks - (blocks > 0 && lastBytes != 0);
    if (packed > source.left() || lastBytes > blockBytes || (full > 0 && blockBytes > most / full)) {
        fail(array, encoding, "the sizes of its blocks do not fit the file");
    }
    const std::uint64_t total = full * blockBytes + (blocks > 0 ? lastBytes : 0);
    if (total > mostBytes) {
        fail(array, encoding,
             "its blocks announce " + std::to_string(total) + " bytes, " + std::to_string(mostBytes) + " are needed");
    }
    std::vector<char> bytes;
    std::vector<char> block;
    for (std::uint64_t k = 0; k < blocks; ++k) {
        const std::uint64_t size = k + 1 == blocks && lastBytes != 0 ? lastBytes : blockBytes;
        if (size > sizes[static_cast<std::size_t>(k)] * bestCompression + slack) {
            fail(array, encoding, "the sizes of its blocks do not fit the file");
        }
        block.resize(static_cast<std::size_t>(sizes[static_cast<std::size_t>(k)]));
        bytes.resize(bytes.size() + static_cast<std::size_t>(size));
        uLongf got = static_cast<uLongf>(size);
        Bytef* out = reinterpret_cast<Bytef*>(bytes.data() + bytes.size() - size);
        if (!source.read(block.data(), block.size())) {
            fail(array, encoding, "its bytes are cut off");
        }
        if (uncompress(out, &got, reinterpret_cast<const Bytef*>(block.data()), static_cast<uLong>(block.size())) !=
                Z_OK ||
            got != size) {
            fail(array, encoding, "block " + std::to_string(k + 1) + " of " + std::to_string(blocks) + " is damaged");
        }
    }
    return bytes;
}

std::vector<char> bytesOfArray(const VtuArray& array, const VtuEncoding& encoding, std::uint64_t mostBytes)
{
    const bool appended = array.format == "appended";
    if (appended &&
        (!encoding.appended || array.offset > static_cast<std::uint64_t>(encoding.end - encoding.appended))) {
        fail(array, encoding,
             "its bytes begin at byte " + std::to_string(array.offset) +
                 " of the appended data, which do not reach there");
    }
    ByteSource source(appended ? encoding.appended + array.offset : array.begin, appended ? encoding.end : array.end,
                      !appended || encoding.appendedIsBase64);
    if (encoding.compressor.empty()) {
        return readPlain(source, array, encoding);
    }
    if (encoding.compressor != zlibName) {
        fail(array, encoding, "compressor " + encoding.compressor + " is not known; known is " + zlibName);
    }
    return readCompressed(source, array, encoding, mostBytes);
}

// --- text ---

bool scanValue(const char*& p, const char* end, std::int64_t& value)
{
    const auto result = std::from_chars(p, end, value);
    p = result.ptr;
    return result.ec == std::errc();
}

// "nan" and "inf" are values too: it is for others to refuse them where they matter.
bool scanValue(const char*& p, const char* end, double& value)
{
    const auto result = std::from_chars(p, end, value);
    if (result.ec == std::errc()) {
        p = result.ptr;
        return true;
    }
    return scanReal(p, end, value);
}

template <class Out> std::vector<Out> textValues(const VtuArray& array, const VtuEncoding& encoding)
{
    std::vector<Out> values;
    const char* p = array.begin;
    while (true) {
        p = std::find_if_not(p, array.end, endsToken);
        if (p == array.end) {
            return values;
        }
        const char* start = p;
        Out value = 0;
        if (!scanValue(p, array.end, value) || (p < array.end && !endsToken(*p))) {
            const std::uint32_t line = array.line + static_cast<std::uint32_t>(std::count(array.begin, start, '\n'));
            throw ImportError({encoding.path, line},
                              "array \"" + array.name + "\": no number: \"" +
                                  std::string(start, std::find_if(start, std::min(array.end, start + 30), endsToken)) +
                                  "\"");
        }
        values.push_back(value);
    }
}

template <class Out> std::vector<Out> valuesOf(const VtuArray& array, const VtuEncoding& encoding, std::uint64_t most)
{
    if (!array.known) {
        fail(array, encoding, "the type of its values is not known");
    }
    if (array.format == "ascii") {
        return textValues<Out>(array, encoding);
    }
    if (array.format != "binary" && array.format != "appended") {
        fail(array, encoding, "format \"" + array.format + "\" is not known; known are ascii, binary and appended");
    }
    const std::vector<char> bytes = bytesOfArray(array, encoding, most * bytesOf(array.number));
    std::vector<Out> values;
    appendNumbers(array.number, bytes.data(), bytes.size() / bytesOf(array.number), encoding.swapped, values);
    return values;
}

} // namespace

std::vector<double> vtuReals(const VtuArray& array, const VtuEncoding& encoding, std::uint64_t most)
{
    return valuesOf<double>(array, encoding, most);
}

std::vector<std::int64_t> vtuIntegers(const VtuArray& array, const VtuEncoding& encoding, std::uint64_t most)
{
    return valuesOf<std::int64_t>(array, encoding, most);
}

} // namespace kvo
