#pragma once

#include "platform/ModelTypeE.h"
#include "platform/forward.h"

#include <string>
#include <vector>

// What windows and statistics need to know of a model without holding it. A plain value; a default-constructed one
// stands for rows that belong to no model.
class DATASERIES_API ModelInfo {
public:
    int number = -1;
    std::string name;
    std::string title;
    ModelTypeE::Model type = ModelTypeE::None;
    int sizeXVariables = 0;
    int sizeYVariables = 0;
    int sizeObservations = 0;
    int predictiveComponents = 0;
    int xSideOrthogonalComponents = 0;
    int ySideOrthogonalComponents = 0;
    bool fitted = false;
    bool crossValidated = false;
    bool hasLaggedVariables = false;
    bool hasDateTime = false; // a variable of the model holds dates or times
    bool isBatchModel = false;
    bool isBatchLevel = false; // one row for each batch
    std::vector<std::string> classOrPhaseNames;
    std::vector<int> dataSets; // the data sets that the rows come from

    int SizeComponents() const { return predictiveComponents + xSideOrthogonalComponents + ySideOrthogonalComponents; }
    int SizePredictiveComponents() const { return predictiveComponents; }
    int SizeXSideOrthogonalComponents() const { return xSideOrthogonalComponents; }
    int SizeYSideOrthogonalComponents() const { return ySideOrthogonalComponents; }

    // The class or phase at a 1-based position, empty outside.
    std::string GetClassPhaseName(int position) const;
    bool IsBatchLevelModel(ProjectPtr const &project) const;
};
