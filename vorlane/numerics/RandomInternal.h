#ifndef VORLANE_NUMERICS_RANDOMINTERNAL_H
#define VORLANE_NUMERICS_RANDOMINTERNAL_H

#include "vorlane/numerics/Random.h"

namespace Vorlane {

/// The generator of all sequences that are not given one. A load-time object, both seeds 1.
extern RandomInteger defaultGenerator;

} // namespace Vorlane

#endif
