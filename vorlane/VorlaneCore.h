#ifndef VORLANE_VORLANECORE_H
#define VORLANE_VORLANECORE_H

/// \file
/// Everything public, in one include.

#include "vorlane/Version.h"
#include "vorlane/coordination/CoordinationGeometry.h"
#include "vorlane/foundation/FrameworkSurface.h"
#include "vorlane/foundation/Lifecycle.h"
#include "vorlane/foundation/TypedArrays.h"
#include "vorlane/foundation/ValueTypes.h"

#endif
