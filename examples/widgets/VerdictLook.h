#pragma once

#include <Verdicts.h>

#include <QIcon>

class QPalette;

// How a verdict looks in the window.

/// The verdict's colour, lightened where the palette is dark.
QColor VerdictColor(TEST_STATUS verdict, QPalette const& palette);
/// A dot of that colour, for views and labels of about `size` pixels.
QIcon VerdictDot(TEST_STATUS verdict, QPalette const& palette, int size);
