#pragma once
// The command identifiers of the menu, the tool bar and the side buttons. Some
// behaviour is computed from them: the language is its entry's id - 112, the
// refresh interval's index its entry's id - 130, and the board transformations
// are told apart by their tool-bar ids.

namespace velkaro::ui {

enum Command : int {
  // Tool bar; buttons 20-26 run the same commands as their menu entries.
  ToolOpen = 20,
  ToolSave = 21,
  ToolPrint = 22,
  ToolImportFen = 23,
  ToolExportFen = 24,
  ToolStopOnFirstSolution = 25,
  ToolSearchMinimumMoves = 26,
  FlipPosition = 27,
  VerticalMirror = 28,
  HorizontalMirror = 29,
  RotateLeft = 30,
  RotateRight = 31,
  MoveUp = 32,
  MoveDown = 33,
  MoveLeft = 34,
  MoveRight = 35,
  LanguageCombo = 36,
  IntervalCombo = 54,

  // Menu.
  Open = 101,
  Save = 102,
  SaveAs = 103,
  ImportFen = 104,
  ExportFen = 105,
  Print = 106,
  Exit = 107,
  SearchMinimumMoves = 111,
  StopOnFirstSolution = 112,
  FirstLanguage = 113,  // Czech; language = id - 112
  LastLanguage = 129,   // Swedish
  FirstInterval = 130,  // "      100 000"; interval index = id - 130
  LastInterval = 134,   // "10 000 000"
  Informations = 141,
  About = 144,

  SideWhite = 159,
  SideBlack = 160,

  // Velkaro's own commands beyond the original menu.
  Undo = 1001,
  Redo = 1002,
  CopySolution = 1003,
  CopyFen = 1004,
  PasteFen = 1005,
  NextProblem = 1006,
  PreviousProblem = 1007,
};

constexpr int languageOfCommand(int id) { return id - 112; }
constexpr int commandOfLanguage(int language) { return language + 112; }
constexpr int intervalIndexOfCommand(int id) { return id - FirstInterval; }

constexpr bool isTransformation(int id) { return id >= FlipPosition && id <= MoveRight; }

// What a running job must not see: anything that changes the problem or the
// options a run has read.
constexpr bool changesTheProblem(int id) {
  return (id >= Open && id <= LastInterval) || isTransformation(id) || id == Undo || id == Redo || id == PasteFen ||
         id == NextProblem || id == PreviousProblem;
}

}  // namespace velkaro::ui
