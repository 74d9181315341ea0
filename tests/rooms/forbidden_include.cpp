#include "shared/text.h"

#include "agent/run_sync.h"
