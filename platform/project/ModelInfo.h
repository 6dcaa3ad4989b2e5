#pragma once

#include "platform/forward.h"
#include "platform/project/ModelTypeE.h"

#include <iosfwd>
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
    int phaseGroup = 0;        // models made together, one for each phase, share this number; 0 for others
    // By what contributions to a predicted response are weighted: 1 by w*, of OPLS and O2PLS models by p; 2 by p where
    // the type tells a class of an OPLS or O2PLS model (bits from 256 on that equal 1280); all else by coefficients.
    int responseWeighting = 0;

    int SizeComponents() const { return predictiveComponents + xSideOrthogonalComponents + ySideOrthogonalComponents; }
    int SizePredictiveComponents() const { return predictiveComponents; }
    int SizeXSideOrthogonalComponents() const { return xSideOrthogonalComponents; }
    int SizeYSideOrthogonalComponents() const { return ySideOrthogonalComponents; }

    // The class or phase at a 1-based position, empty outside.
    std::string GetClassPhaseName(int position) const;
    bool IsBatchLevelModel(ProjectPtr const &project) const;

    bool operator==(ModelInfo const &) const = default;
};

// Binary form. Reading throws VqStreamError when the stream is damaged, and then leaves the info as it was.
DATASERIES_API std::ostream &operator<<(std::ostream &stream, ModelInfo const &info);
DATASERIES_API std::istream &operator>>(std::istream &stream, ModelInfo &info);
