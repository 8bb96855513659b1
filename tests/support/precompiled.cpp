// Carries the precompiled headers of the tests.
#include "tests/support/precompiled.h"
