#pragma once

#include "platform/export.h"
#include "platform/forward.h"

#include <string>

class ProjectionModel;
class ProjectVector;
class SelectDataSeriesData;

// Names of vectors that are another form of a vector: its correlation with the variables, or the jack-knife standard
// error of it.
namespace DataSeriesUtilities {

// Loadings and scores as correlations between scores and variables: "p(corr)" of "p".
class DATASERIES_API CorrelationScaleChecker {
public:
    static bool IsCorrelationScaledVector(char const *name);
    // A name that has no such form is the answer itself; that of a counting row is "Num". "p(corr)" also serves "w*",
    // and "pc(corr)" also "w*c"; back they are "p" and "pc".
    static std::string ToNonCorr(char const *name);
    static std::string ToCorr(char const *name);

    // The correlation-scaled loading that goes with what the selection shows: "po(corr)" where its first vector with
    // components is indexed by those orthogonal on the X side; else "p(corr)" for a model without Y, "pq(corr)" for one
    // with orthogonal components, "pc(corr)" for others. Null when the model has no such vector.
    static ProjectVector const *DefaultLoadingCorr(ModelInfo const &model, SelectDataSeriesData const *selection);
    // What can stand in for a correlation-scaled loading: "pc(corr)" for "pq(corr)" and "po(corr)", "p(corr)" for
    // "pc(corr)". Null for others, and when the model has no such vector.
    static ProjectVector const *GetAltCorr(ProjectVector const *vector, ModelInfo const &model);
};

// There is a vector, and all are correlation-scaled; counting rows don't count.
DATASERIES_API bool IsCorrelationScaled(SelectDataSeriesData const *selection);
// The same with counting rows, which are not.
DATASERIES_API bool IsPurelyCorrelationScaled(SelectDataSeriesData const *selection);

// The name of the jack-knife standard error of a vector; empty where it has none.
DATASERIES_API std::string ToSEVector(char const *name);
// The name is that of such a standard error.
DATASERIES_API bool IsCVSEVector(char const *name);
// Degrees of freedom of that standard error after so many components; -99.0 for any other vector.
DATASERIES_API double GetDF(char const *name, ProjectionModel const &model, int component);

} // namespace DataSeriesUtilities
