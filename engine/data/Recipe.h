#pragma once

#include "engine/batches/BatchLevelRecipe.h"
#include "engine/models/ModelDefinition.h"
#include "engine/models/OrthogonalCorrection.h"

#include <string>
#include <variant>
#include <vector>

namespace engine {

// How a data set is made of results of models, for a model above them (Wold et al. 1996): a column for each, then
// variables as they are. Its rows are the observations that all these models have.
struct HierarchyRecipe {
    struct Result {
        int model = 0;
        int kind = 0;  // one of VariableInfo::Result
        int place = 0; // of the component or of the term among those of its side, from 1; 0 for a result of all
        bool operator==(Result const &) const = default;
    };
    struct Variable {
        int dataSet = 0;
        int column = 0; // from 0
        bool operator==(Variable const &) const = default;
    };

    std::vector<Result> results;
    std::vector<Variable> variables;

    // The models, each once, in order of appearance.
    std::vector<int> Models() const;

    bool operator==(HierarchyRecipe const &) const = default;
};

// How a data set is cleared of what has nothing to do with Y: an orthogonal signal correction of its X variables
// (OrthogonalCorrection), whose residuals stand in place of them; the other variables are as they are.
struct CorrectionRecipe {
    int dataSet = 0;
    ModelDefinition definition; // names the X and Y variables, their scaling, and the rows that it was made of
    std::vector<double> offsets, weights; // of X terms: x = (value - offset) weight
    OrthogonalCorrection correction;

    bool operator==(CorrectionRecipe const &) const = default;
};

// How rows of a data set are put into wavelet coefficients: neighbouring variables, such as the wavelengths of a
// spectrum, are transformed as a row, padded with zeros, of which some coefficients are kept. The other variables
// follow as they are. Missing cells are read off the line between their neighbours; of a row without any, all is
// missing.
struct CompressionRecipe {
    int dataSet = 0;
    std::vector<int> columns, others; // of the data set, from 0
    int function = 0;                 // a Wavelet::WaveletFunctionType
    int order = 0;
    std::vector<int> kept; // positions of coefficients, from 0, rising
    // The variables hold what the kept coefficients tell of them, in place of the coefficients.
    bool denoised = false;

    bool operator==(CompressionRecipe const &) const = default;
};

// How a derived data set was made.
struct Recipe {
    std::variant<BatchLevelRecipe, HierarchyRecipe, CorrectionRecipe, CompressionRecipe> how;
    // Of rows of a prediction set: the data set that has the same columns for the rows of the models, and the
    // prediction set.
    int trained = 0;
    int predictions = 0;

    template <typename How>
    How const *As() const {
        return std::get_if<How>(&how);
    }

    // The models that it takes results of, each once; and the data set that it is made of, 0 where it is made of
    // models.
    std::vector<int> Models() const;
    int DataSet() const;

    // A binary text with version and checksum. Load throws NCError for a text that Save did not write.
    std::string Save() const;
    static Recipe Load(std::string const &saved);

    bool operator==(Recipe const &) const = default;
};

} // namespace engine
