#ifndef VORLANE_FOUNDATION_VALUETYPES_H
#define VORLANE_FOUNDATION_VALUETYPES_H

/// \file
/// The value types that the library works on: points and matrices of Spatia, colours, arrays, fonts and text
/// conversion of Orrin. This is the only header of the library that reaches them.

#include "platform/orrin/Color.h"
#include "platform/orrin/ColorArray.h"
#include "platform/orrin/Font.h"
#include "platform/orrin/LegacyArray.h"
#include "platform/orrin/TextConversion.h"
#include "platform/spatia/Matrix3x3.h"
#include "platform/spatia/Matrix4x4.h"
#include "platform/spatia/NComponentVolume.h"
#include "platform/spatia/Point2d.h"
#include "platform/spatia/Point3d.h"

#endif
