#ifndef VORLANE_VORLANECORE_H
#define VORLANE_VORLANECORE_H

/// \file
/// Everything public, in one include.

/// \namespace Vorlane
/// The library. What it stands on has names of its own: the classes of the framework in the global namespace,
/// the value types in Spatia and Orrin, the primitives of a scene in Lumora.

#include "vorlane/Version.h"
#include "vorlane/colour/ColorMapParameters.h"
#include "vorlane/colour/ColorSpectrumRegistry.h"
#include "vorlane/colour/CustomColorSpectrum.h"
#include "vorlane/colour/NamedColorArrays.h"
#include "vorlane/coordination/AnisotropicDisplacement.h"
#include "vorlane/coordination/CoordinationGeometry.h"
#include "vorlane/coordination/CrossReference.h"
#include "vorlane/curves/Spline.h"
#include "vorlane/foundation/FrameworkSurface.h"
#include "vorlane/foundation/Lifecycle.h"
#include "vorlane/foundation/TypedArrays.h"
#include "vorlane/foundation/ValueTypes.h"
#include "vorlane/numerics/NumericUtils.h"
#include "vorlane/numerics/QuadraticMatrix.h"
#include "vorlane/numerics/RMSBestFitTools.h"
#include "vorlane/numerics/Random.h"
#include "vorlane/numerics/Rational.h"
#include "vorlane/persistence/ArchiveForm.h"
#include "vorlane/persistence/PrimitiveSerializers.h"
#include "vorlane/spatial/NeighborList.h"
#include "vorlane/text/Font.h"
#include "vorlane/text/Pattern.h"
#include "vorlane/text/RomanNumerals.h"
#include "vorlane/text/StringUtils.h"
#include "vorlane/text/UniqueString.h"

#endif
