#pragma once

#include <QIcon>

class QPalette;

// Pictures of this program's own: sharp on every screen and readable on light
// and dark, whatever icons the desktop has.

QIcon ProgramIcon();

enum class ECommandIcon { Folder, Start, Pause, Resume, Abort };
QIcon CommandIcon(ECommandIcon icon, QPalette const& palette);

enum class ERequestIcon { Question, Information, Warning, Error };
QIcon RequestIcon(ERequestIcon icon);
