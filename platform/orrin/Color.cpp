#include "platform/orrin/Color.h"

namespace Orrin {

Color::~Color() = default;

} // namespace Orrin
