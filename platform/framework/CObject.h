#ifndef VORLANE_PLATFORM_FRAMEWORK_COBJECT_H
#define VORLANE_PLATFORM_FRAMEWORK_COBJECT_H

/// \file
/// The root class of the framework's arrays and maps.

#include "platform/Export.h"

class CArchive;
class CDumpContext;

/// The record of a class at run time. Nothing asks for more than its existence.
struct CRuntimeClass
{
    char const* m_name; ///< the name of the class
};

/// The root of the arrays and maps: virtual slots for a class record, archiving and diagnosis. An object of a
/// derived class is copied by operations of its own only.
class VORLANE_PLATFORM_EXPORT CObject
{
public:
    /// The record of CObject, here and in every class that has no record of its own.
    virtual CRuntimeClass const* GetRuntimeClass() const;

    virtual ~CObject();

    /// Stores the object into `archive` or loads it, by the archive's mode; a plain CObject has no content.
    virtual void Serialize(CArchive& archive);

    /// For diagnosis; these do nothing.
    virtual void AssertValid() const;
    virtual void Dump(CDumpContext& context) const;

    CObject(CObject const&) = delete;
    CObject& operator=(CObject const&) = delete;

protected:
    CObject() = default;
};

#endif
