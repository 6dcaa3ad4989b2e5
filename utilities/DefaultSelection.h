#pragma once

#include "platform/export.h"
#include "platform/forward.h"
#include "platform/identity/ColumnTerm.h"

#include <cstdint>
#include <string>
#include <vector>

namespace ProjectUtilities {

// Which item a plot means when its number is not set: the current X term, Y term, observation, variable and batch of a
// project. Kept in the project's settings section "DefaultSelection", and here as a cache. A setter writes both. A
// getter takes the cache, else the section, falls back on the first item when what it found is not there, and fills the
// cache.
//
// Observations and variables go by their numbers in the project, terms by their 1-based position in the model. The
// project is held weakly; every operation throws boost::bad_weak_ptr when it is gone. Not for several threads at once:
// getters write the cache.
class DATASERIES_API DefaultSelection {
public:
    // On the active project. Exception when there is no application object.
    DefaultSelection();
    explicit DefaultSelection(boost::shared_ptr<NCProject> const &project);

    boost::shared_ptr<NCProject> GetProject() const;

    // Empties the cache; the section stays.
    void clear();

    // 1 when the model does not have the current term, which then becomes its first one.
    int GetDefaultXVarIndex(int model) const;
    int GetDefaultYVarIndex(int model) const;
    // Nothing happens for a model that the project does not have.
    void SetDefaultXVarIndex(int model, int index);
    void SetDefaultYVarIndex(int model, int index);
    void SetDefaultXTerm(ColumnTerm const *term);
    void SetDefaultYTerm(ColumnTerm const *term);

    // In the rows of the model, or of the data set when the model is below 1; of the prediction set when `predicted`.
    // NCError when there is no such data set.
    std::uint32_t GetDefaultSelectedObservation(int model, int dataset, bool predicted) const;
    void SetDefaultSelectedObservation(std::uint32_t observation, bool predicted);
    // Of the model's X terms, or of the data set when the model is below 1.
    std::uint32_t GetDefaultSelectedVariable(int model, int dataset, bool predicted) const;
    std::uint32_t GetDefaultSelectedModelVariable(int model) const;
    std::uint32_t GetDefaultSelectedDatasetVariable(int dataset, bool predicted) const;
    void SetDefaultSelectedVariable(std::uint32_t variable);

    // Fills the list and answers its length.
    int GetDefaultSelectedBatches(std::vector<std::string> &batches, bool predicted) const;
    void SetDefaultSelectedBatches(std::vector<std::string> const &batches, bool predicted);
    // The first name; reading it from the section leaves the cache with that name alone.
    std::string GetDefaultSelectedBatch(bool predicted) const;
    // Moves a name to the front of the stored list, or adds it there.
    void SetDefaultSelectedBatch(std::string const &batch, bool predicted);

    // For boost::archive::polymorphic_oarchive and polymorphic_iarchive. The project is not part of it.
    template <typename Archive>
    void save(Archive &archive, unsigned int version) const;
    template <typename Archive>
    void load(Archive &archive, unsigned int version);

private:
    ColumnTerm &CachedTerm(bool ofY) const { return ofY ? m_yTerm : m_xTerm; }
    int GetTermIndex(int model, bool ofY) const;
    void SetTermIndex(int model, int index, bool ofY);
    void SetTerm(ColumnTerm const &term, bool ofY);

    boost::weak_ptr<NCProject> m_project;
    mutable ColumnTerm m_yTerm;
    mutable ColumnTerm m_xTerm;
    mutable std::uint32_t m_observation = 0;
    mutable std::uint32_t m_predSetObservation = 0;
    mutable std::uint32_t m_variable = 0;
    mutable std::vector<std::string> m_batches;
    mutable std::vector<std::string> m_predictionBatches;
};

} // namespace ProjectUtilities
