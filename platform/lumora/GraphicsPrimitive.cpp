#include "platform/lumora/GraphicsPrimitive.h"

namespace Lumora {

GraphicsPrimitive::~GraphicsPrimitive() = default;

} // namespace Lumora
