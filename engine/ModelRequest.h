#pragma once

#include "platform/identity/VarObs.h"
#include "platform/numerics/Wavelet.h"
#include "platform/project/BatchYVarTreatment.h"
#include "platform/project/ModelTypeE.h"
#include "platform/project/PLSTrees.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace engine {

// What is done to the values v of a variable before they are centred and scaled:
//   Log    log10(c1 v + c2)          NegLog       -log10(c1 v + c2)
//   Logit  log10((v - c1)/(c2 - v))  Exponential  exp(c1 v + c2)
//   Power  (c1 v + c2)^c3
// A value outside the domain becomes missing.
struct VariableTransformation {
    enum Kind { None, Log, NegLog, Logit, Exponential, Power };

    Kind kind = None;
    double c1 = 1;
    double c2 = 0;
    double c3 = 1;

    bool operator==(VariableTransformation const &) const = default;
};

// A model of the evolution of batches: of observations against the maturity of their batch, which is the only response
// (Wold et al. 1998b). The data set has an identifier that tells batches, with phases one that tells these.
struct EvolutionRequest {
    std::string phase = {}; // whose observations the model has; empty for whole batches
    BatchYVarTreatment::Treatment treatment = BatchYVarTreatment::None; // of the maturity, batch by batch
    // How batches are laid side by side: read at the same maturities, or each stretched to the same length.
    bool alignByMaturity = false;
    int points = 0; // of an aligned batch; 0 for the median length of the batches
};

// What a data set with one row for each batch is to be made of: of models of the evolution of batches.
struct BatchLevelRequest {
    int model = 0;            // one of them
    bool ofVariables = false; // of their X variables at the aligned points, in place of their scores
    // A data set whose observations are the batches, by name: its variables are initial conditions. 0 for none. A batch
    // that it lacks is looked for in the other data sets and prediction sets, those that come later too.
    int conditions = 0;
};

// What a model above others is to be made of (Wold et al. 1996).
struct HierarchyRequest {
    struct Result {
        int model = 0;
        VariableInfo::Result kind = VariableInfo::Score;
        // Of the component, or of the term among those of its side, from 1; 0 for all of them.
        int place = 0;
    };

    std::vector<Result> results;
    // Variables, by name, that the upper model has as they are, its responses among them. They are looked for in the
    // data sets of the models.
    std::vector<std::string> variables = {};
};

// How rows of a data set are put into wavelet coefficients (Daubechies 1992; Trygg & Wold 1998).
struct CompressionRequest {
    int dataSet = 1;
    std::vector<std::string> excluded = {}; // variables that stay as they are, such as responses
    Wavelet::WaveletFunctionType function = Wavelet::Daubechies;
    int order = 4; // the nearest one that the function has
    int keep = 0;  // how many coefficients, the largest; 0: as many as have `share` of the sum of squares of all
    double share = 0.99;
    // The data set has the variables, less what the other coefficients tell of them, in place of coefficients.
    bool denoise = false;
};

// Lagged terms of X: what a variable was `first` to `last` observations earlier, in the same batch where the data set
// has batches. What stands before the first observation is missing.
struct VariableLags {
    std::string variable; // in X, or a response; empty: each variable that is in X
    int first = 1;        // 1 at least
    int last = 1;

    bool operator==(VariableLags const &) const = default;
};

// What a model is to be fitted to. Variables and observations go by their primary identifiers.
struct ModelRequest {
    enum Scaling { UnitVariance, Centred, Pareto, None };
    // How Q2 judges a component: by rounds that fit all components anew, or, of PCA and PLS, by rounds that fit it to
    // what the components before it leave.
    enum Q2 { FullRounds, DeflatedMatrices };

    ModelTypeE::Model type = ModelTypeE::PCA;
    int dataSet = 1;
    // The Y variables; all others are X variables. Where no variable has the name, it is the heading of an identifier
    // column of the observations: a qualitative variable, which has a 0/1 term for each level, each text there. An
    // observation without text has no value.
    std::vector<std::string> responses = {};
    // In place of responses: the heading of the identifier column that tells the classes which PLS-DA or OPLS is to
    // tell apart.
    std::string classes = {};
    // Headings of identifier columns that X has as qualitative variables. Squares, crosses and lags of all variables
    // leave them out; a single level, such as "colour(red)", can be a factor of a product.
    std::vector<std::string> qualitative = {};
    // Variables that are in neither, observations and, by their names, whole batches that are left out.
    std::vector<std::string> excluded = {};
    std::map<std::string, VariableTransformation> transformations = {}; // by variable
    // Square and cross terms: each the names of two X variables or more, whose centred and scaled values are
    // multiplied.
    std::vector<std::vector<std::string>> products = {};
    bool squares = false;                // of each X variable
    bool crosses = false;                // of every two of them
    std::vector<VariableLags> lags = {}; // which may overlap
    bool localCentring = true;           // for the variables that have centre values in the project
    Scaling scaling = UnitVariance;
    std::optional<Scaling> responseScaling = {};  // of Y, where it differs
    std::map<std::string, Scaling> scalings = {}; // of single variables
    std::map<std::string, double> weights = {};   // of single variables: what their scaled values are multiplied by
    // Blocks of X variables, by their names, which weigh alike however many variables they have: a scaled variable of a
    // block of K is divided by K^(1/4), or hard by K^(1/2) (Westerhuis et al. 1998). Those in none make one more.
    std::map<std::string, std::vector<std::string>> blocks = {};
    bool hardBlocks = false;
    // Numbers of components, -1: as many as the fit finds significant. Orthogonal ones count where the type has them.
    int components = -1; // predictive
    int xOrthogonal = -1;
    int yOrthogonal = -1;
    int crossValidationGroups = 7; // 0: no cross-validation
    // The heading of an identifier column: observations with the same text there make a group. Empty: row after row,
    // or, of a model with lagged terms, as many blocks of neighbours.
    std::string crossValidationIdentifier = {};
    Q2 q2 = FullRounds;
    double alpha = 0.05; // significance level of limits and intervals
    // PLS or OPLS. Cross-validation then leaves out whole batches, unless an identifier says otherwise.
    std::optional<EvolutionRequest> evolution = {};
};

// What orthogonal signal correction is to take off a data set (Wold et al. 1998a).
struct CorrectionRequest {
    int dataSet = 1;
    std::vector<std::string> responses = {}; // the Y variables
    // Variables that are in neither X nor Y, and observations that the correction is not made of. All are in the
    // corrected data set.
    std::vector<std::string> excluded = {};
    ModelRequest::Scaling scaling = ModelRequest::UnitVariance;
    int components = 1;
};

// A tree of PLS models: of all observations, of the two parts that this one is cut into, and so on (Eriksson, Trygg &
// Wold 2009).
struct TreeRequest {
    ModelRequest model; // PLS
    int depth = 3;      // cuts between the model of all observations and those that are cut no more
    // Of the smallest part, two observations are the least.
    PLSTreeProperties properties = {};
};

} // namespace engine
