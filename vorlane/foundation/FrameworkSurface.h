#ifndef VORLANE_FOUNDATION_FRAMEWORKSURFACE_H
#define VORLANE_FOUNDATION_FRAMEWORKSURFACE_H

/// \file
/// What the library takes from its framework: exceptions, text, containers and the archive. This is the only
/// header of the library that reaches the framework.

#include "platform/framework/AfxExceptions.h"

#endif
