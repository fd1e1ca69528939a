// Our headers behind macros that the headers of widely used libraries make; compiling is the test.
#define FALSE (0)
#define TRUE (!FALSE)
#define MIN(a, b) ((a) < (b) ? (a) : (b))
#define MAX(a, b) ((a) > (b) ? (a) : (b))
#define ABS(a) ((a) < 0 ? -(a) : (a))
#define CLAMP(x, low, high) ((x) < (low) ? (low) : (x))
#define OK (0)
#define ERR (-1)
#define KEY_CREATE 0611
#define KEY_ENTER 0527

#include <zpbase/config.h>
#include <zpbase/data.h>
#include <zpbase/foundation.h>
#include <zpbase/messages.h>
#include <zpbase/numeric.h>
#include <zpbase/platform.h>
#include <zpbase/store.h>
#include <zpbase/system.h>
#include <zpbase/text.h>

static_assert(TRUE == 1 && FALSE == 0);
