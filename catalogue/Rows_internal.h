#pragma once

#include "catalogue/ProjectVector.h"

// Short names for the metadata of a vector, so that a family's file reads as a table.
namespace rows {

constexpr auto Scores = ProjectVector::VectorTypeVariablesScores;
constexpr auto Loadings = ProjectVector::VectorTypeObservationsLoadings;

constexpr auto Model = ProjectVector::DataTypeModel;

constexpr auto AnyModel = ModelTypeE::Any;
constexpr auto WithY = ModelTypeE::WithY;
constexpr auto AnyOPLS = ModelTypeE::AnyOPLS;
constexpr auto OnlyPCA = ModelTypeE::PCA;

constexpr auto NoComponent = ProjectVector::ComponentNone;
constexpr auto Predictive = ProjectVector::ComponentPredictive;
constexpr auto XSide = ProjectVector::ComponentXSideOrthogonal;
constexpr auto YSide = ProjectVector::ComponentYSideOrthogonal;

constexpr bool Displayable = true;
constexpr bool Hidden = false;

constexpr int NoContribution = 0;
constexpr int ScoreContribution = 1;

// All observations of a workset or prediction set, instead of those of one batch.
constexpr int AllBatches = -1;

} // namespace rows
