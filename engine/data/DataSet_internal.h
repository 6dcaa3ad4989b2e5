#pragma once

#include "engine/ProjectFile.h"
#include "engine/data/Recipe.h"
#include "engine/models/Workset.h"
#include "platform/identity/ColumnIDs.h"
#include "platform/project/NCDataSet.h"
#include "platform/storage/XercesXMLSection.h"

#include <boost/make_shared.hpp>

#include <map>
#include <mutex>
#include <optional>
#include <unordered_map>

namespace engine {

// The settings of a project that tell which identifier columns hold batches and phases, and which variables dates: for
// each role the names.
constexpr char const *roleSection = "ObservationRoles";
constexpr char const *batchRole = "Batch";
constexpr char const *phaseRole = "Phase";
constexpr char const *dateTimeRole = "DateTime"; // variables
std::unique_ptr<XercesXMLSection> ReadRoles(ProjectFile const &file);
std::vector<std::string> HeadingsOf(ConfigurationSection const &roles, char const *role);
// Nothing happens for an empty heading.
void AddRole(ConfigurationSection &roles, char const *role, std::string const &heading);

// Of a derived data set.
Recipe RecipeOf(ProjectFile const &file, int dataSet);

// The settings that tell which batches of a data set are still running.
std::string RunningSection(int dataSet);
constexpr char const *runningKey = "Batches";

// The project's lists of variables and observations: those of all data sets, each primary identifier once, with batches
// once in each batch. Within one data set a repeated identifier stands for a further item. Qualitative variables are
// items of their own, each behind the variables of the data sets that were there when it was first asked for, so that
// the numbers of items stay when more of either come.
class ItemLists {
public:
    NCVariables variables;
    NCObservations observations;
    std::map<int, std::vector<std::uint32_t>> variablesOf;    // of a data set: the item of each column
    std::map<int, std::vector<std::uint32_t>> observationsOf; // and of each row

    explicit ItemLists(ProjectFile const &file);
    ~ItemLists();

    // The data sets have changed. The lists stay where they are, for those who hold on to them.
    void Refresh(ProjectFile const &file);
    // Lists what the file has anew when they are next refreshed: changes of it have been taken back.
    void StartAnew();

    // The level as a term. NCError when no model of the project has it.
    ColumnTerm TermOf(Level const &level) const;

private:
    class Growth;

    // The first of them is the default time variable.
    void MarkDates(std::vector<std::string> const &names);
    // Notes where the variables of a derived data set come from.
    void MarkSources(Recipe const &recipe, std::vector<TextColumn> const &columns,
                     std::vector<std::uint32_t> const &items);
    void MarkResults(std::vector<HierarchyRecipe::Result> const &results, std::vector<std::uint32_t> const &items);
    void MarkBatchLevel(std::vector<TextColumn> const &columns, std::vector<std::uint32_t> const &items);

    std::map<std::string, std::uint32_t> m_qualitative; // items by heading
    // What is needed to add a data set to the lists; kept while the file may get more.
    std::unique_ptr<Growth> m_growth;
};

// The aliases of a list as they are for some of its items. Which of them are numbers is found out when it is first
// asked.
class ItemAliases {
public:
    template <typename Items>
    AliasAccess const &Of(VarObs const &list, Items const &items) const {
        if (!m_aliases)
            m_aliases = AliasAccess(list).Of(items);
        return *m_aliases;
    }

private:
    mutable std::optional<AliasAccess> m_aliases;
};

// A data set of the file. Columns are read when they are first asked for.
class DataSet final : public NCDataSet, public SourceColumns {
public:
    DataSet(ProjectFile const &file, DataSetRecord record, ItemLists const &items, ProjectPtr const &project);

    DataSetRecord const &Record() const { return m_record; }

    ProjectPtr GetProject() const override { return m_project.lock(); }
    int GetNumber() const override { return m_record.number; }
    std::string GetName() const override { return m_record.name; }
    ObservationInfos const &GetObservations() const override { return m_observations; }
    std::vector<std::uint32_t> const &GetVariables() const override { return m_variables; }
    NCDataVector<float> GetVariable(std::uint32_t variable) const override;
    std::span<double const> GetDates(std::uint32_t variable) const override;
    double GetFirstDay() const override { return FirstDay(Dates()); }
    NCDataVector<float> GetObservation(std::uint32_t observation) const override;
    AliasAccess GetObservationAliases() const override {
        return m_observationAliases.Of(m_items.observations, m_observations);
    }
    AliasAccess GetVariableAliases() const override { return m_variableAliases.Of(m_items.variables, m_variables); }

    // By column of the data set, from 0. Several threads may ask at once.
    std::span<float const> Values(int column) const override { return Stored(column).Values(); }
    // Copies share the elements.
    NCDataVector<float> const &Stored(int column) const;
    std::string Name(int column) const override;

    // The observations as the columns of a table.
    ColumnIDs const &ObservationColumns() const { return m_observationColumns; }

    boost::shared_ptr<OSCModel const> GetOSCModel() const override {
        return MadeAs<CorrectionRecipe>() ? boost::make_shared<OSCModel const>() : nullptr;
    }

    // How it was made; nothing for one that was imported.
    std::optional<Recipe> const &MadeBy() const;
    // Null for one that was made in another way.
    template <typename How>
    How const *MadeAs() const {
        return MadeBy() ? MadeBy()->As<How>() : nullptr;
    }

    // The texts of the observations under a heading, nothing when the data set has no such column. Headings of batches
    // stand for each other, and so do those of phases.
    std::optional<TextColumn> Identifier(std::string const &heading) const;

    ItemLists const &Items() const { return m_items; }

    // The batches that are still running.
    std::vector<std::string> const &Running() const;

    // The variables that hold dates.
    std::vector<DateColumn> const &Dates() const;

    // The column of a variable of the project, nothing when the data set does not have it.
    std::optional<int> ColumnOf(std::uint32_t variable) const;

private:
    ProjectFile const &m_file;
    DataSetRecord m_record;
    ItemLists const &m_items;
    boost::weak_ptr<NCProject const> m_project;
    ObservationInfos m_observations;
    ColumnIDs m_observationColumns;
    std::vector<std::uint32_t> m_variables;
    ItemAliases m_observationAliases, m_variableAliases;
    std::unordered_map<std::uint32_t, int> m_columns;
    mutable std::mutex m_reading;
    mutable std::unordered_map<int, NCDataVector<float>> m_values;
    mutable std::optional<std::vector<DateColumn>> m_dates;
    mutable std::optional<Recipe> m_recipe;
    mutable std::optional<std::vector<std::string>> m_running;
};

} // namespace engine
