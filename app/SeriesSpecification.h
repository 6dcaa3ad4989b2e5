#pragma once

#include "app/VectorSearch.h"
#include "engine/Project.h"
#include "specification/ProjectVectorData.h"

#include <optional>
#include <string>

namespace ProjectUtilities {
class DefaultSelection;
}

// How a vector is written by a person: a name, what it is about, and where it comes from, of which all but the name may
// be left out: "t", "t:2", "YPred:octane", "XVar:1100nm@M2", "VarDS:octane@DS1". A name may hold "@" ("XVar:p@25C");
// one that ends like a source has a source behind it ("XVar:p@M2@M1"). What it is about is a component (or a
// range, "T2Range:1-3"), a variable, an observation or an identifier column, whatever the vector asks for; a vector
// that asks for two takes both, "XVarPred:1100nm:2".
struct VectorText {
    std::string whole;
    std::string name;
    std::optional<std::string> argument;
    std::optional<std::string> source; // "M2", "DS1" or "PS"
};
VectorText ReadVectorText(std::string const &text);

// The axis on which the vector exists, observations first. Errors as below.
ProjectVector::VectorTypeEnum FindAxis(engine::Project const &project, VectorText const &text);

// The specification that the text asks for; what it leaves open comes from the project's defaults: the source is the
// active model, then the first data set, then the prediction set; a component is the first one, or the last one of what
// adds up over components. NCError that names what is not there.
ProjectVectorData Specify(boost::shared_ptr<engine::Project> const &project, VectorText const &text,
                          ProjectVector::VectorTypeEnum axis, ProjectUtilities::DefaultSelection const &defaults);

// The specification of a vector of a source that leaves everything to the defaults.
ProjectVectorData DefaultSpecification(ProjectVector const &vector, Source const &source,
                                       ProjectUtilities::DefaultSelection const &defaults);

// The number of a variable or observation by its primary identifier, and that of an identifier column by its heading.
std::optional<std::uint32_t> ItemOfName(VarObs const &list, std::string const &name);
std::optional<std::uint32_t> IdentifierNamed(VarObs const &list, std::string const &heading);

// The same of the items of a project. NCError when there is none.
std::uint32_t VariableNumber(engine::Project const &project, std::string const &name);
std::uint32_t ObservationNumber(engine::Project const &project, std::string const &name);
