// Gathers the platform: one header for each area.
#pragma once

#include "platform/archive.h"
#include "platform/collections.h"
#include "platform/exceptions.h"
#include "platform/file.h"
#include "platform/runtime.h"
#include "platform/string.h"
#include "platform/types.h"
