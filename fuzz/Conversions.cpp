#include "fuzz/ConversionChecks.h"

#include <string>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    std::string const text(reinterpret_cast<char const*>(data), size);
    VorlaneFuzz::CheckReal(text.c_str());
    VorlaneFuzz::CheckInteger(text.c_str());
    VorlaneFuzz::CheckPoint(text.c_str());
    VorlaneFuzz::CheckEdits(CString(text.data(), static_cast<int>(size)));
    return 0;
}
