#include <zpbase/foundation.h>
int GPObject::Load(CString const &){return 0;} int GPObject::Store(CString const &){return 0;}
int GPObArray::Load(CString const &){return 0;} int GPObArray::Store(CString const &){return 0;}
int GPObList::Load(CString const &){return 0;} int GPObList::Store(CString const &){return 0;}
