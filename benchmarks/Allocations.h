#pragma once

/// How many blocks the calling thread has taken from malloc, calloc or realloc so far, whoever
/// asked for them.
unsigned long AllocationsSoFar();
