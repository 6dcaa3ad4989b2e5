#pragma once

#include "catalogue/ProjectVector.h"
#include "contribution/ContributionWeightEnum.h"
#include "platform/forward.h"
#include "platform/identity/AliasAccess.h"
#include "platform/identity/ProjectData.h"
#include "platform/project/NCDataSet.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

class NCBatchModel;

namespace ProjectUtilities {
class DefaultSelection;
}

// One statistic with all its arguments: which vector of the catalogue, from which model or data set, at which
// component, for which variable, observation or batch. A value without numbers of its own; plots and lists are made of
// these.
//
// What is left open stands as -1 (all ones in an unsigned number): a component is then the model's last one, a number
// is what the project's defaults say. A record without a vector asks for nothing: its texts are empty, its numbers 0;
// without a model there are 0 components. Names of members in quotes below are those of saved plots. Not for several
// threads.
class DATASERIES_API ProjectVectorData {
public:
    static constexpr std::uint32_t NotSet = 0xFFFFFFFF;
    static constexpr double NoMultiplier = -99.0;

    // Settings that only some vectors read.
    int batchIx = -1; // 1-based; -1 and -2 the average, 0 the standard deviation of aligned vectors
    bool unscaled = true;
    bool backTransformed = true;
    int selCV = 1; // cross-validation round
    double multiplier1 = NoMultiplier;
    double multiplier2 = NoMultiplier;
    // Linear display transform.
    double scaling = 1.0;
    double offset = 0.0;
    // Groups of a contribution: from and to, as 1-based observation indexes, or as batch names with maturities.
    std::vector<int> obs1;
    std::vector<int> obs2;
    BatchPoints contRef;
    BatchPoints contGroup;
    bool alignedMaturity1 = false;
    bool alignedMaturity2 = false;
    int startLag = 1;
    int endLag = 1;
    int oscComponent = -1;

    ProjectVectorData();
    ProjectVectorData(ProjectVectorData const &other);
    ProjectVectorData &operator=(ProjectVectorData const &other);
    ~ProjectVectorData();

    // The same statistic: vector, source, components, numbers and batch as far as the vector uses them. Units, weights,
    // groups, rounds and display transform take no part. Two records without a vector are equal.
    bool operator==(ProjectVectorData const &other) const;

    // The vector and its source. Null marks an empty specification.
    ProjectVector const *GetProjectVector() const { return m_vector; }
    void SetProjectVector(ProjectVector const *vector);
    // Null for a vector of a data set or the prediction set, and when a data set is chosen.
    ModelInfo const *GetModelInfo() const;
    boost::shared_ptr<ModelInfo const> const &GetModelInfoPtr() const { return m_model; }
    // Takes the place of a data set.
    void SetModelInfoPtr(boost::shared_ptr<ModelInfo const> const &model);
    // 0: none, the model decides.
    int GetDataSet() const { return m_dataset; }
    void SetDataSet(int dataset);
    // The data behind it; empty when there is none.
    boost::shared_ptr<NCDataContainerBase const> GetDataSource(NCProject const &project) const;
    bool IsModelBased() const { return GetModelInfo() != nullptr; }

    // Numbers as they are stored.
    std::uint32_t GetNumberID() const { return m_numberID; }
    void SetNumber(std::uint32_t number) { m_numberID = number; }
    void SetNumberID2(std::uint32_t number) { m_numberID2 = number; }
    void SetPredComponent(int component) { m_predictiveComponent = component; }
    void SetXSideOrthoComponent(int component) { m_xSideComponent = component; }
    void SetYSideOrthoComponent(int component) { m_ySideComponent = component; }
    // A mask of several kinds stores nothing.
    void SetComponent(ProjectVector::ComponentType kind, int component);
    void SetComponent(int component);

    // Numbers as they are meant. With `resolve` the last component stands as its number; 1 where no model is.
    int GetPredComponent(bool resolve) const;
    int GetXSideOrthoComponent(bool resolve) const;
    int GetYSideOrthoComponent(bool resolve) const;
    int GetComponent(ProjectVector::ComponentType kind, bool resolve) const;
    int GetComponent(bool resolve) const;
    int GetNumberIDComponent() const;
    int GetNumberID2Component() const;
    int GetMaxComponents(ProjectPtr const &project, ProjectVector::ComponentType kind) const;
    int GetMaxComponents(ProjectPtr const &project) const;
    // All ones when the number is open and there are no defaults.
    std::uint32_t GetNumber(ProjectUtilities::DefaultSelection const *defaults) const;
    std::uint32_t GetNumberID2(ProjectUtilities::DefaultSelection const *defaults, bool resolve) const;
    int GetYVar(ProjectUtilities::DefaultSelection const &defaults) const;
    void SetYVar(int yVar) { m_yVar = yVar; }

    // Weights of a contribution. Setting a kind or components drops an explicit list.
    ContributionWeightEnum::WeightType GetWeightType() const { return m_weightType; }
    WeightTypes const &GetWeightTypeVec() const { return m_weights; }
    std::vector<int> const &GetWeightComp() const { return m_components; }
    void SetWeightType(ContributionWeightEnum::WeightType weight);
    void SetWeightComp(std::vector<int> const &components);
    void SetContributionWeight(WeightTypes const &weights, std::vector<int> const &components);
    bool IsYVarContribution() const;

    ProjectData::CoefficientStatus GetCoefficientStatus() const { return m_coefficientStatus; }
    void SetCoefficientStatus(ProjectData::CoefficientStatus status) { m_coefficientStatus = status; }

    // The identifier columns of what the number chooses among: of variables for a row over observations, of
    // observations for one over variables; of the items along the axis themselves where the number is an identifier.
    // None for other axes. Good until the vector or the source changes.
    AliasAccess const &GetUsedAliases(NCProject const &project) const;

    // Chooses what a plot of that axis shows when nobody chose: the vector and its source, with numbers from the
    // project's defaults. An empty record starts anew; one with a vector keeps as much of its source as fits. False
    // when there is nothing to show.
    static bool SetProjectVectorDataDefault(boost::shared_ptr<NCProject> const &project,
                                            ProjectVector::VectorTypeEnum vectorType, ProjectVectorData &data,
                                            ProjectVector::DataTypeEnum dataType, ModelInfo const *model, int dataset,
                                            ProjectVector::ObsOrPredType obsPred);
    // Numbers and batch from the defaults, by the vector's number type. Components stay.
    void SetDefaultNumberID(ProjectUtilities::DefaultSelection const &defaults);

    // The text that the catalogue reads: "t M3,2,0,0"; empty for an empty record. Without defaults an open number stays
    // open.
    std::string ToStdString(ProjectUtilities::DefaultSelection const *defaults) const;
    // "M3", "DS1", "PS", or empty.
    std::string GetDataSourceName() const;
    // The label for the user. `aliasID` is the identifier column that names items; 1 also writes the word for
    // observations. `compact` shortens components. Only a counting row needs no defaults.
    std::string GetFormattedName(ProjectUtilities::DefaultSelection const *defaults, int aliasID, bool compact) const;
    // The same without a prefix (and the point behind it), and with the display transform.
    std::string GetProjectVectorName(ProjectUtilities::DefaultSelection const *defaults, bool removePrefix,
                                     std::string const &prefix, int aliasID, bool compact) const;
    // "Average", "Std.Dev." or the name of the batch.
    std::string GetBatchName(ProjectPtr const &project) const;

    // Whether the numbers still mean something in the project.
    bool CheckNumberIDs(ProjectPtr const &project) const;
    // Whether the numbers of this record can be applied to the other, whether both speak of one set of batches, and
    // whether both can be asked for with one text.
    bool HasEqualNumberArguments(ProjectVectorData const &other) const;
    bool HasEqualBatchArguments(ProjectVectorData const &other) const;
    bool IsJoinableData(ProjectVectorData const &other) const;

    // The saved form, by the keys that members are named after; nothing for an empty record. Model and data set are
    // kept by their numbers, points of batches with six digits.
    void WriteSection(ConfigurationSection *section) const;
    // Looks the vector up anew in the project as it is now, and lowers components to those that are there. With
    // `activeModel` the project's active model takes the place of the stored one. Reads older files too. False when a
    // required key is missing; ReadVectorException for what this project or model cannot show, NCError for a model, a
    // data set or numbers that are not there. After either the record is of no use.
    bool ReadSection(ProjectPtr const &project, ConfigurationSection *section, bool activeModel);

    // For boost::archive::polymorphic_oarchive and polymorphic_iarchive: the section as one text, read in the active
    // project. A text that is none, or lacks a key, loads as an empty record; errors as in ReadSection.
    template <typename Archive>
    void save(Archive &archive, unsigned int version) const;
    template <typename Archive>
    void load(Archive &archive, unsigned int version);

private:
    struct StoredVector {
        std::string name;
        ProjectVector::VectorTypeEnum type;
        ProjectVector::DataTypeEnum data;
    };

    // What stands in for a vector or a model that is not there: nothing is selected, and there are no components.
    ProjectVector const &Vector() const;
    ModelInfo const &Model() const;
    bool IsPureDataSource() const;
    bool HasComponents() const; // of a model: not of a data source
    int GetModelNumber() const; // 0 without model
    int Resolved(int component, bool resolve, int (ModelInfo::*last)() const) const;
    int ComponentField(ProjectVector::ComponentType kind) const;
    int MaxOfPair(int which) const; // components of the first or second kind of a pair; 0 without model
    std::uint32_t DefaultNumber(ProjectUtilities::DefaultSelection const &defaults) const;
    bool HasSameSource(ProjectVectorData const &other) const;
    bool CheckObservationOrVariable(ProjectPtr const &project) const;
    bool CheckBatch(ProjectPtr const &project) const;
    bool CheckBatchID(ProjectPtr const &project, boost::shared_ptr<NCBatchModel const> const &batchModel) const;
    bool CheckPhase(ProjectPtr const &project) const;
    bool HasEqualComponents(ProjectVectorData const &other) const;
    // Parts of ReadSection; false when a key is missing.
    bool ReadSource(ProjectPtr const &project, ConfigurationSection const &section, StoredVector const &stored,
                    bool activeModel);
    bool ReadModelVector(ProjectPtr const &project, ConfigurationSection const &section, StoredVector const &stored,
                         bool activeModel);
    bool ReadCorrectionComponent(NCProject const &project, ConfigurationSection const &section);
    bool ReadComponents(ConfigurationSection const &section);
    bool ReadArguments(ProjectPtr const &project, ConfigurationSection const &section);
    bool ReadContribution(ConfigurationSection const &section);
    void ReadPoints(ConfigurationSection const &section);
    void LowerWeightComponents();
    void WriteContributionVector(ConfigurationSection *section, char const *key, BatchPoints const &points) const;
    void ReadContributionVector(ConfigurationSection const *section, char const *key, BatchPoints &points) const;

    ContributionWeightEnum::WeightType m_weightType = ContributionWeightEnum::Normalized;
    WeightTypes m_weights;
    std::vector<int> m_components;
    ProjectVector const *m_vector = nullptr;
    boost::shared_ptr<ModelInfo const> m_model;
    int m_dataset = 0;
    std::uint32_t m_numberID = NotSet;
    std::uint32_t m_numberID2 = NotSet;
    int m_predictiveComponent = -1;
    int m_xSideComponent = -1;
    int m_ySideComponent = -1;
    int m_yVar = 0;
    ProjectData::CoefficientStatus m_coefficientStatus = ProjectData::Default;
    mutable std::optional<AliasAccess> m_aliases;
};
