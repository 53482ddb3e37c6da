#include "platform/orrin/Font.h"

namespace Orrin {

Font::~Font() = default;

Font Font::DefaultFont()
{
    return AfxWithMemoryException([] { return Font(L"Arial", 12); });
}

} // namespace Orrin
