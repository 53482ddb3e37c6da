#include "platform/framework/CStringArray.h"

CStringArray::~CStringArray() = default;
