#ifndef VORLANE_PLATFORM_FRAMEWORK_CMAPSTRINGTOPTR_H
#define VORLANE_PLATFORM_FRAMEWORK_CMAPSTRINGTOPTR_H

/// \file
/// The framework's map from texts to addresses.

#include "platform/framework/CMap.h"
#include "platform/framework/CString.h"

/// A map from a text to a `void*`, with the operations and the order of CMap. It owns the texts, not what the
/// addresses point to.
class VORLANE_PLATFORM_EXPORT CMapStringToPtr : public CMap<CString, char const*, void*, void*>
{
public:
    /// An empty map that takes memory for `blockSize` entries at a time.
    explicit CMapStringToPtr(int blockSize = 10);
    ~CMapStringToPtr() override;
};

#endif
