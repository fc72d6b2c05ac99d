#include "tests/support/Drive.h"
