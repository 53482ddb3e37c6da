#ifndef VORLANE_PLATFORM_FRAMEWORK_CSTRINGARRAY_H
#define VORLANE_PLATFORM_FRAMEWORK_CSTRINGARRAY_H

/// \file
/// The framework's array of texts.

#include "platform/framework/CArray.h"
#include "platform/framework/CString.h"

/// A growable array of texts, with the operations of CArray. In an archive: the count, then each text.
class VORLANE_PLATFORM_EXPORT CStringArray : public CArray<CString, CString const&>
{
public:
    CStringArray() = default;
    ~CStringArray() override;
};

#endif
