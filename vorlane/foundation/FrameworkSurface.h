#ifndef VORLANE_FOUNDATION_FRAMEWORKSURFACE_H
#define VORLANE_FOUNDATION_FRAMEWORKSURFACE_H

/// \file
/// What the library takes from its framework: exceptions, text, containers and the archive. This is the only
/// header of the library that reaches the framework.

#include "platform/framework/AfxExceptions.h"
#include "platform/framework/CArchive.h"
#include "platform/framework/CArray.h"
#include "platform/framework/CFile.h"
#include "platform/framework/CMap.h"
#include "platform/framework/CMapStringToPtr.h"
#include "platform/framework/CObject.h"
#include "platform/framework/CString.h"
#include "platform/framework/CStringArray.h"
#include "platform/framework/ElementTransfer.h"
#include "platform/framework/FileExceptions.h"
#include "platform/framework/LittleEndian.h"

#endif
