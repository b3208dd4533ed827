#pragma once
// The progress panel's texts, made from a job's numbers: the window and the
// command line show the same.

#include <cstdint>
#include <string>

#include "core/notation.h"
#include "jobs/job.h"

namespace velkaro::jobs {

// "%02d:%02d:%02d".
std::string clockText(std::int64_t elapsedMs);

// " %s %s": billions and remainder grouped by threes, the remainder padded to
// nine digits once billions exist ("  1 234", " 3 000 001 234").
std::string testedMovesText(const BigCount& count);

// Moves per second, deliberately coarse: whole moves per millisecond first,
// then times 1000, plus the billions' share; grouped by threes.
std::string speedText(const BigCount& count, std::int64_t elapsedMs);

// The same per whole second, as the placement search shows it.
std::string speedPerSecondText(const BigCount& count, std::int64_t elapsedMs);

// The "Analysing moves:" display of a tick; empty when it shows no line.
core::CurrentLineText lineText(const Progress& progress, core::Notation& notation);

}  // namespace velkaro::jobs
