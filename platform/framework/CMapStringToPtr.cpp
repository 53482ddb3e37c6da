#include "platform/framework/CMapStringToPtr.h"

CMapStringToPtr::CMapStringToPtr(int blockSize) : CMap(blockSize) {}

CMapStringToPtr::~CMapStringToPtr() = default;
