#pragma once

#include "platform/containers/NCDataMatrix.h"
#include "platform/forward.h"

// What happens to the Y variables of a batch before a model sees them.
class DATASERIES_API BatchPreProcessSegment {
public:
    // `treatment` is one of BatchYVarTreatment.
    explicit BatchPreProcessSegment(int treatment) : m_treatment(treatment) {}

    // One batch: rows are its observations in their order, columns Y variables. Each column is treated on its own;
    // missing values stay missing.
    NCDataMatrix<float> Forward(NCDataMatrix<float> matrix) const;

private:
    int m_treatment;
};

// The way of data from the project to a model.
struct DATASERIES_API PSPipe {
    // The segment of the model's treatment; one that changes nothing for a model that is none of batches, or is not
    // there.
    static BatchPreProcessSegment GetPipeSegment(NCProject const &project, int model);
};
