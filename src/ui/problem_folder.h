#pragma once
// Where Velkaro keeps its problems and its settings file: the folder "KVZ"
// beside the program, or, when that cannot be written to (an installed copy),
// "KVZ" in the user's own data folder.

#include <QString>

namespace velkaro::ui {

// The folder, created when it does not exist yet.
QString chooseProblemFolder();

}  // namespace velkaro::ui
