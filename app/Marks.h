#pragma once

#include "engine/Project.h"

#include <vector>

// What is marked in a project: MarkedColumnIDsManager::Instance() holds it while a command runs, the project's settings
// between commands. Marks are of one kind at a time: observations, variables (or terms), or batches.

// Makes the project the active one, and its marks those of the manager, without the items that are not there any more.
// Marks that are damaged are told on standard error, and are none.
void ReadMarks(boost::shared_ptr<engine::Project> const &project);

// Keeps what the manager holds in the project, which is open to be written, in the place of what was kept. NCError when
// it can't be kept.
void WriteMarks(boost::shared_ptr<engine::Project> const &project);

// Which of the items are marked, one entry for each; empty when none is. A variable is found in each term that has it
// as a factor, a batch in each of its observations.
std::vector<bool> MarkedAmong(ColumnIDs const &items);
