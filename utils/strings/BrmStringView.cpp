// The view's operations for both widths, compiled once into the library.
#include "utils/strings/BrmString.h"

namespace BrmPlatform {

template class BrmStringViewT<char>;
template class BrmStringViewT<wchar_t>;

}  // namespace BrmPlatform
