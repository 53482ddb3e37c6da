// The first byte of the input says how the stream gives out its bytes, the bytes up to the next zero byte are
// the delimiters, the rest is the text.

#include "fuzz/ScannerChecks.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    if (size == 0 || size > 4096) {
        return 0;
    }
    constexpr std::size_t steps[] = {0, 1, 2, 7, 100000};
    std::string const input(reinterpret_cast<char const*>(data) + 1, size - 1);
    std::size_t const zero = std::min(input.find('\0'), input.size());
    std::string const delimiters = input.substr(0, zero);
    std::string const text = input.substr(std::min(zero + 1, input.size()));
    VorlaneFuzz::CheckText(CString(text.data(), static_cast<int>(text.size())), delimiters.c_str());
    VorlaneFuzz::CheckStream(text, delimiters, steps[data[0] % 5]);
    return 0;
}
