#pragma once
// The tool bar's icons, drawn as vector shapes so that they stay sharp at any
// size and screen density.

#include <QIcon>

namespace velkaro::ui {

// The icon of a tool-bar command (ToolOpen ... MoveRight).
QIcon toolIcon(int command);

}  // namespace velkaro::ui
