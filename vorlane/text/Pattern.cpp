#include "vorlane/text/Pattern.h"

namespace Vorlane {

template class Pattern<CString>;

} // namespace Vorlane
