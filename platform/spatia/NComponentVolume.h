#ifndef VORLANE_PLATFORM_SPATIA_NCOMPONENTVOLUME_H
#define VORLANE_PLATFORM_SPATIA_NCOMPONENTVOLUME_H

/// \file
/// The name of the volumes.

namespace Spatia {

/// A grid of values with several components. It is known here by its name only: pointers to it are passed on,
/// and nobody looks inside.
template <typename Component>
class NComponentVolume;

} // namespace Spatia

#endif
