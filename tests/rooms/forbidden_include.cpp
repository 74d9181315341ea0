#include "agent/run_sync.h"
