// Gathers the platform: one header for each area.
#pragma once

#include "platform/application.h"
#include "platform/archive.h"
#include "platform/collections.h"
#include "platform/drawing.h"
#include "platform/exceptions.h"
#include "platform/facts.h"
#include "platform/file.h"
#include "platform/messages.h"
#include "platform/paths.h"
#include "platform/registry.h"
#include "platform/resources.h"
#include "platform/runtime.h"
#include "platform/string.h"
#include "platform/time.h"
#include "platform/types.h"
#include "platform/windows.h"
