#pragma once

#include "engine/statistics/Handlers.h"

namespace engine {

// What a model above others stands on in the end.
struct Resolution {
    // The X terms of the models below, each once, in the order of these models, and then its own terms that are no
    // scores.
    ColumnTerms terms;
    // Coefficients of the model's terms, in workset scale, times this are those of the terms above, in the scale of the
    // worksets below: these terms by the model's. A score t = X w* takes its coefficient to ws w*, where ws is the
    // weight by which the upper model scales t. Exact for complete rows of models with centred X.
    Matrix shares;
};

// A model on no other one stands on its own terms.
Resolution Resolved(ModelView const &model, Subject const &subject);

} // namespace engine
