#pragma once

#include "app/VectorSearch.h"
#include "engine/Project.h"
#include "specification/ProjectVectorData.h"

#include <string>

namespace ProjectUtilities {
class DefaultSelection;
}

// "X-side orthogonal components".
std::string NameOfKind(ProjectVector::ComponentType kind);

// Why a vector gives no data for its arguments ("M1,3,0,0", the text behind its name), as a sentence. Not asked of
// arguments that give some.
std::string ReasonForNothing(engine::Project const &project, ProjectVector const &vector, Source const &source,
                             std::string const &arguments);

// The error that tells it of a text.
NCError GivesNothing(engine::Project const &project, ProjectVector const &vector, Source const &source,
                     std::string const &arguments, std::string const &text);
// The same of a specification, as `text` asked for it.
NCError GivesNothing(engine::Project const &project, std::string const &text, ProjectVectorData const &data,
                     ProjectUtilities::DefaultSelection const &defaults);
