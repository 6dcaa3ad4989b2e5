#pragma once

#include "platform/export.h"
#include "platform/forward.h"

class ProjectVectorData;
class SelectDataSeriesData;

namespace DataSeriesUtilities {

// Shows a selection for another model: the same statistics, the same items by their terms and names, components brought
// into range. The selection is not owned.
class DATASERIES_API ModelSwitcher {
public:
    // Whether one specification would still mean something for another model.
    class CheckProjectData {
    public:
        virtual ~CheckProjectData() = default;
        virtual bool operator()(ProjectVectorData const &data) = 0;
    };
    // Brings one specification to another model; false when it cannot be shown there.
    class UpdateProjectData {
    public:
        virtual ~UpdateProjectData() = default;
        virtual bool operator()(ProjectVectorData &data) const = 0;
    };

    explicit ModelSwitcher(SelectDataSeriesData *selection) : m_selection(selection) {}

    // Whether axes in use, series and the vector to correlate with would mean something for the model; false for one
    // that is not fitted. Vectors to subtract and to divide by are not looked at.
    bool CanSwitchModel(int model) const;
    // The selection itself, or a copy that the caller owns, for the model. Null for a model that is not fitted, and
    // when a series, a vector of the transformation or the batches that were selected cannot be shown there; the
    // selection itself then stays as far as it got. An axis that cannot keeps its numbers. Items that were not selected
    // are not selected there either. NCError when there were such and the model has no items.
    SelectDataSeriesData *SwitchModel(int model, bool inPlace);

private:
    SelectDataSeriesData *m_selection;
};

enum DataSeriesChange : int { NotChanged = 0, Changed = 1, NotValid = 2 };

// Brings a selection up to date with a model whose number of components has changed. Series with components that the
// model does not have any more go. Not valid when an axis has such, or no series is left.
DATASERIES_API DataSeriesChange ModelComponentsUpdated(ModelInfo const *info, SelectDataSeriesData *selection);

} // namespace DataSeriesUtilities
