#pragma once

#include <BaseUtilities/CFormatInfo.h>
#include <BaseUtilities/TEST_STATUS.h>

/// How a verdict is shown, by whatever front end.
CFormatInfo VerdictFormat(TEST_STATUS verdict);
