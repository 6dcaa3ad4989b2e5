#pragma once

#include "navigation/DataSeriesChecker.h"
#include "platform/export.h"
#include "platform/forward.h"
#include "selection/SelectDataSeriesData.h"

// The next and the previous one: functors that move the specifications of a selection one step along one kind of item.
// Each specification moves by itself; one that stands at the end, or that steps over something else, stays. Listeners
// are told of each that moves. Errors of the data layer pass; what moved before stays moved.
namespace DataSeriesUtilities {

// The parts of a selection that move, as a bit mask; whether an axis is in use is not asked.
using CheckType = DataSeriesChecker::CheckType;

// A component of the kinds `type`. Behind the last one, the upper limit, comes a state of its own: the last component
// of whatever the model will have, -1; one of a correction has none. A limit of -1 is what the model has.
// The vectors that a transformation subtracts and divides by move along, both or none.
class DATASERIES_API SelectNextComponent {
public:
    SelectNextComponent(ProjectVector::ComponentType type, bool axisOnly, int upperLimit = -1)
        : m_type(type), m_axisOnly(axisOnly), m_upperLimit(upperLimit) {}
    void operator()(SelectDataSeriesData &selection) const;

private:
    bool NextComponent(ProjectPtr const &project, ProjectVectorData &data) const;

    ProjectVector::ComponentType m_type;
    bool m_axisOnly;
    int m_upperLimit;
};

// Down to the lower limit, -1: the first component of the vector. Out of the last state the step goes to
// `stepFromLast`, -1: to the one before the model's last.
class DATASERIES_API SelectPrevComponent {
public:
    SelectPrevComponent(ProjectVector::ComponentType type, bool axisOnly, int lowerLimit = -1, int stepFromLast = -1)
        : m_type(type), m_axisOnly(axisOnly), m_lowerLimit(lowerLimit), m_stepFromLast(stepFromLast) {}
    void operator()(SelectDataSeriesData &selection) const;

private:
    bool PrevComponent(ProjectPtr const &project, ProjectVectorData &data) const;

    ProjectVector::ComponentType m_type;
    bool m_axisOnly;
    int m_lowerLimit;
    int m_stepFromLast;
};

// A variable of a data set or the prediction set, in its order. `axisOnly` moves the X axis alone, else all series
// move.
class DATASERIES_API SelectNextVariable {
public:
    explicit SelectNextVariable(bool axisOnly) : m_axisOnly(axisOnly) {}
    void operator()(SelectDataSeriesData &selection) const;

private:
    bool m_axisOnly;
};

class DATASERIES_API SelectPrevVariable {
public:
    explicit SelectPrevVariable(bool axisOnly) : m_axisOnly(axisOnly) {}
    void operator()(SelectDataSeriesData &selection) const;

private:
    bool m_axisOnly;
};

// An observation of a data set, the prediction set, a model or the rows predicted on it. An open number stays.
class DATASERIES_API SelectNextObservation {
public:
    explicit SelectNextObservation(bool axisOnly) : m_axisOnly(axisOnly) {}
    void operator()(SelectDataSeriesData &selection) const;

private:
    bool m_axisOnly;
};

class DATASERIES_API SelectPrevObservation {
public:
    explicit SelectPrevObservation(bool axisOnly) : m_axisOnly(axisOnly) {}
    void operator()(SelectDataSeriesData &selection) const;

private:
    bool m_axisOnly;
};

// An X term of the model or, with a list, the next column of the list that is a term: counted from `position` where
// that is 1 or more, else from the column of the present term. Of the Y axis the X axis becomes the moved one.
class DATASERIES_API SelectNextXVar {
public:
    SelectNextXVar(CheckType parts, ColumnIDs const *list, int position)
        : m_parts(parts), m_list(list), m_position(position) {}
    void operator()(SelectDataSeriesData &selection) const;

private:
    CheckType m_parts;
    ColumnIDs const *m_list;
    int m_position;
};

// The same back; the Y axis has none, and a vector over lags steps over all X terms. Where the present term is not in
// the list, the last column of it comes.
class DATASERIES_API SelectPrevXVar {
public:
    SelectPrevXVar(CheckType parts, ColumnIDs const *list, int position)
        : m_parts(parts), m_list(list), m_position(position) {}
    void operator()(SelectDataSeriesData &selection) const;

private:
    CheckType m_parts;
    ColumnIDs const *m_list;
    int m_position;
};

// A Y term, as the number of a vector or as the response that weighs a contribution. An open number of a vector stays.
class DATASERIES_API SelectNextYVar {
public:
    SelectNextYVar(CheckType parts, ColumnIDs const *list) : m_parts(parts), m_list(list) {}
    void operator()(SelectDataSeriesData &selection) const;

private:
    CheckType m_parts;
    ColumnIDs const *m_list;
};

// The Y axis has none.
class DATASERIES_API SelectPrevYVar {
public:
    SelectPrevYVar(CheckType parts, ColumnIDs const *list) : m_parts(parts), m_list(list) {}
    void operator()(SelectDataSeriesData &selection) const;

private:
    CheckType m_parts;
    ColumnIDs const *m_list;
};

// The batch of each series that shows one or, where none of those over observations does, the batches selected among
// the items. Nothing happens where the items are neither observations nor aligned points, or a transformation has put
// others in their place.
class DATASERIES_API SelectNextBatch {
public:
    void operator()(SelectDataSeriesData &selection) const;
};

class DATASERIES_API SelectPrevBatch {
public:
    void operator()(SelectDataSeriesData &selection) const;
};

} // namespace DataSeriesUtilities
