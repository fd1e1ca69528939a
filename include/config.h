// The system's configuration: the settings store, the preferences that are kept in memory, every fixed name, the registered
// application messages, the labels of engineering units and the table of resource strings.
#pragma once

#include "platform/types.h"
#include "well_known_names.h"

// Length of GetTruncateSuffix in characters.
ZP_API int GetTruncateSuffixLength();
