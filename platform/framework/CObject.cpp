#include "platform/framework/CObject.h"

CObject::~CObject() = default;

CRuntimeClass const* CObject::GetRuntimeClass() const
{
    static constexpr CRuntimeClass record{"CObject"};
    return &record;
}

void CObject::Serialize(CArchive&) {}

void CObject::AssertValid() const {}

void CObject::Dump(CDumpContext&) const {}
