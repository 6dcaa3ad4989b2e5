#pragma once

#include "platform/project/ModelTypeE.h"

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

// What a model is to be fitted to. Variables and observations go by their primary identifiers.
struct ModelRequest {
    enum Scaling { UnitVariance, Centred, Pareto, None };
    // How Q2 judges a component: by rounds that fit all components anew, or, of PCA and PLS, by rounds that fit it to
    // what the components before it leave.
    enum Q2 { FullRounds, DeflatedMatrices };

    ModelTypeE::Model type = ModelTypeE::PCA;
    int dataSet = 1;
    std::vector<std::string> responses = {}; // the Y variables; all others are X variables
    std::vector<std::string> excluded = {};  // variables that are in neither, observations that are left out
    std::map<std::string, VariableTransformation> transformations = {}; // by variable
    // Square and cross terms: each the names of two X variables or more, whose centred and scaled values are
    // multiplied.
    std::vector<std::vector<std::string>> products = {};
    bool squares = false;      // of each X variable
    bool crosses = false;      // of every two of them
    bool localCentring = true; // for the variables that have centre values in the project
    Scaling scaling = UnitVariance;
    std::optional<Scaling> responseScaling = {};  // of Y, where it differs
    std::map<std::string, Scaling> scalings = {}; // of single variables
    // Numbers of components, -1: as many as the fit finds significant. Orthogonal ones count where the type has them.
    int components = -1; // predictive
    int xOrthogonal = -1;
    int yOrthogonal = -1;
    int crossValidationGroups = 7; // 0: no cross-validation
    // The heading of an identifier column: observations with the same text there make a group. Empty: row after row.
    std::string crossValidationIdentifier = {};
    Q2 q2 = FullRounds;
    double alpha = 0.05; // significance level of limits and intervals
};

} // namespace engine
