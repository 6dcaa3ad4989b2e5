#pragma once

#include "engine/LocalCentring.h"
#include "engine/ProjectFile.h"
#include "engine/batches/BatchLayout.h"
#include "engine/models/ModelDefinition.h"

#include <unordered_map>

namespace engine {

// The columns or rows of a data set by their primary identifiers.
class NameList {
public:
    explicit NameList(PackedTexts const &names);

    // Their places, from 0; null for an identifier that is not there.
    std::vector<int> const *Find(std::string const &name) const;

private:
    std::unordered_map<std::string, std::vector<int>> m_places;
};

// The texts of a data set's observations in the identifier column with that heading; nothing, or NCError, when it has
// none.
std::optional<TextColumn> FindIdentifier(ProjectFile const &file, DataSetRecord const &record,
                                         std::string const &heading);
TextColumn IdentifierNamed(ProjectFile const &file, DataSetRecord const &record, std::string const &heading);

// The batches of a data set; nothing where no identifier tells them.
std::optional<BatchLayout> FindLayout(ProjectFile const &file, DataSetRecord const &record);

Transformation TransformationOf(VariableTransformation const &transformation);

// Puts the names of a request into columns and rows of its data set. NCError for a name that is not there.
ModelDefinition DefinitionOf(ModelRequest const &request, ProjectFile const &file);

// The centre values that the project keeps; no variables when there are none.
LocalCentring ReadCentring(ProjectFile const &file);
void StoreCentring(ProjectFile &file, LocalCentring const &centring);
LocalCentring GroupMeans(ProjectFile const &file, GroupMeansRequest const &request);

} // namespace engine
