#pragma once

#include "platform/containers/BoolVector.h"
#include "platform/identity/ColumnIDs.h"
#include "selection/SelectDataSeriesSubject.h"
#include "specification/ProjectVectorData.h"

#include <list>
#include <memory>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace ProjectUtilities {
class DefaultSelection;
}

// The record behind one plot or list: which vectors are shown, as axes and series; along which kind of items; which of
// the items are selected; how the result is transformed, scaled, sorted and limited; and in which project.
//
// An axis is there when the mode says so, and is a counting row when nothing was chosen. Series are a list of any
// length, positions from 1. All vectors run along the same items: those that all of them have, the columns, which are
// found again when they are asked for after a change.
//
// The project is held weakly. A selection belongs to the thread of its window.
class DATASERIES_API SelectDataSeriesData : public SelectDataSeriesSubject {
public:
    // Which axes are in use, as a bit mask.
    enum Mode : int { Normal = 0, AxisX = 1, AxisY = 2, AxisXY = 3 };
    enum SortOrder : int { SortNone = 0, SortAscending = 1, SortDescending = 2 };
    enum ScaleType : int { ScaleNone = 0, ScaleZeroToOne = 1, ScaleMinusOneToOne = 2 };
    // Whether the selection could run on another project.
    enum DataSeriesGlobalType : int {
        GlobalTypeProject = 0,
        GlobalTypeIndependent = 1,
        GlobalTypeIndependentAfterDefaults = 2,
        GlobalTypeUndecided = 3
    };
    // What became of selecting by batch name: nothing; the series show batches and must be changed instead; done.
    enum SelectedType : int { NothingSelected = 0, SeriesHaveBatches = 1, ItemsSelected = 2 };
    // Passed on to the plot; has no meaning here.
    enum AspectRatioType : int {};

    // Overrides of the project's options for this window.
    struct OptionsOverrides {
        float significance = -1.0f; // of the critical distance to the model; -1.0 the model's own

        bool operator==(OptionsOverrides const &) const = default;
    };

    // A key to sort by. Types 0 and 1 refer to the series with number `sortIndex`. A length of -1 is to the end of the
    // label.
    struct SortInfo {
        int sortOrder = 0;
        int sortType = 0;
        int sortIndex = 0;
        int startPos = 0;
        int length = -1;

        bool operator==(SortInfo const &) const = default;
    };

    using SDLimits = std::list<std::pair<float, bool>>;

    static constexpr double NoScale = -99.0;

    // On the active project. Exception when there is no application object.
    SelectDataSeriesData();
    SelectDataSeriesData(boost::shared_ptr<NCProject> const &project, Mode mode,
                         ProjectVector::VectorTypeEnum vectorType, int maxSeries, ProjectVector::ObsOrPredType obsPred);
    SelectDataSeriesData(SelectDataSeriesData const &other);
    // Listeners stay, and the object's own defaults take the other's content.
    SelectDataSeriesData &operator=(SelectDataSeriesData const &other);
    ~SelectDataSeriesData() override;

    // The caller owns the copy.
    SelectDataSeriesData *Copy() const;
    // All but the vectors and the defaults.
    void CopyMembers(SelectDataSeriesData const &other);
    // Axes in use here, series, columns and selected items.
    void CopyVectors(SelectDataSeriesData const &other);

    // Vectors, project, options, transformation, series and selected items are the same; and, for ==, scale, inversion,
    // confidence intervals and header. Series compare as specifications do.
    bool IsDataEqual(SelectDataSeriesData const &other) const;
    bool operator==(SelectDataSeriesData const &other) const;

    // Plain settings.
    Mode GetMode() const { return m_mode; }
    void SetMode(Mode mode) { m_mode = mode; }
    DataSeriesGlobalType GetGlobalType() const { return m_globalType; }
    void SetGlobalType(DataSeriesGlobalType type) { m_globalType = type; }
    ProjectVector::VectorTypeEnum GetVectorType() const { return m_vectorType; }
    ProjectVectorData const &GetXAxis() const { return m_xAxis; }
    ProjectVectorData const &GetYAxis() const { return m_yAxis; }
    ProjectVectorData const &GetSeries(int position) const;
    int NumberOfSeries() const { return static_cast<int>(m_series.size()); }
    int MaximumNumberOfSeries() const { return m_maxSeries; }
    ScaleType GetScaleType() const { return m_scaleType; }
    void SetScaleType(ScaleType type) { m_scaleType = type; }
    ProjectVector::ScoreLoadingType GetScoreLoadingType() const { return m_scoreLoadingType; }
    void SetScoreLoadingType(ProjectVector::ScoreLoadingType type) { m_scoreLoadingType = type; }
    ProjectVector::ObsOrPredType GetDisplayObsPredType() const { return m_obsPredType; }
    void SetObsPredType(ProjectVector::ObsOrPredType type) { m_obsPredType = type; }
    TransformationData const &GetTransformationData() const { return m_transformation; }
    ControlChartData const &GetControlChartData() const { return m_controlChart; }
    bool SupportsTransformation() const { return m_supportsTransformation; }
    void SetSupportsTransformation(bool supports) { m_supportsTransformation = supports; }
    bool IsDisplayDataInverted() const { return m_invertData; }
    void SetDisplayDataInverted(bool invert);
    bool IsLimitsVisible() const { return m_showLimits; }
    void SetLimits(bool visible);
    SDLimits const &GetSDLimitsVec() const { return m_sdLimits; }
    void SetSDLimitsVec(SDLimits const &limits) { m_sdLimits = limits; }
    // Changes of vectors are told to listeners at once.
    bool IsUpdateSelectObjects() const { return m_updateSelectObjects; }
    void SetUpdateSelectObjects(bool update) { m_updateSelectObjects = update; }
    bool UseDefaultSelectObjects() const { return m_useDefaultSelectObjects; }
    void SetUseDefaultSelectObjects(bool use) { m_useDefaultSelectObjects = use; }
    void SetPreferredTitleID(int alias) { m_preferredTitle = alias; }
    std::string const &GetRawHeader() const { return m_rawHeader; }
    void SetRawHeader(std::string const &header, bool useFormattedDefault);
    bool UseFormattedDefault() const { return m_useFormattedDefault; }
    bool &UseConfidenceInterval() { return m_useConfidenceInterval; }
    bool UseConfidenceInterval() const { return m_useConfidenceInterval; }
    OptionsOverrides &GetExtraOptions() { return m_extraOptions; }
    OptionsOverrides const &GetExtraOptions() const { return m_extraOptions; }
    boost::shared_ptr<NCProject> GetProject() const { return m_project.lock(); }
    boost::shared_ptr<ProjectUtilities::DefaultSelection> GetDefaultSelection() const { return m_defaults; }
    void SetAxisAspectRatio(AspectRatioType type, double x, double y, double z);
    AspectRatioType GetAxisAspectRatio(double &x, double &y, double &z) const;
    // The number format of lists ("%g"); through its address a caller may put another one, from malloc, in its place.
    char const *GetNumberFormat() const { return m_numberFormat; }
    char **GetNumberFormatW() { return &m_numberFormat; }

    static char const *FromMode(Mode mode);
    static Mode ToMode(char const *text);
    static char const *FromSortOrder(SortOrder order);
    static SortOrder ToSortOrder(char const *text);
    static char const *FromScaleTypeToString(ScaleType type);
    static ScaleType FromStringToScaleType(char const *text);

    // Project and model.
    // With `init` the axes get their defaults first, in the project held before, and the standard limits are added.
    void SetProject(boost::shared_ptr<NCProject> const &project, bool init);
    // Moves every vector of a model to another one; those of a data set stay. No check that the vector exists there.
    void SetModel(int model);

    // Vectors. A position outside is misuse (NCInternalError) unless the operation says otherwise. Changing one marks
    // the columns as out of date and, where asked for, tells the listeners.
    // False, and nothing else, when the limit is reached. With `intersect` the columns are cut down to common ones at
    // once. NCError for a record without a vector.
    bool AddSeries(ProjectVectorData const &series, bool intersect);
    // Before a position; no limit applies.
    void InsertSeries(int position, ProjectVectorData const &series);
    // Also drops the sort keys that refer to series. False for a position outside.
    bool RemoveSeries(int position);
    void SetSeries(int position, ProjectVectorData const &series);
    void SetXAxis(ProjectVectorData const &axis);
    void SetYAxis(ProjectVectorData const &axis);
    // Drops the series beyond; a negative number is no limit.
    void SetMaximumNumberOfSeries(int number);
    void SetVectorType(ProjectVector::VectorTypeEnum type);
    // No series, axes without vector, no sort keys, no columns.
    void Clear();
    // The axes in use, X first, and the series.
    std::vector<ProjectVectorData const *> VectorsInUse() const;
    // One text of the catalogue for each vector or run of series that one text can ask for, appended to the list.
    void ToStdVectorString(std::list<std::string> &texts) const;

    // Columns and selected items. Found again when they are out of date; null when there are none.
    ColumnIDs const *GetColumnIDs() const;
    BoolVector const &GetSelectObjects() const;
    void SetColumnIDs(ColumnIDs const *columns);
    void ClearColumnIDs();
    void SetSelectObjects(BoolVector const &objects) { m_selectObjects = objects; }
    int NumSelectObjects() const;
    void SetIsDirty() { m_dirty = true; }
    void ClearDirty() { m_dirty = false; }

    // Sort keys; positions from 0.
    void AddSorting(SortInfo const &sorting);
    void ClearSorting();
    void GetSorting(int index, SortInfo &sorting) const;
    int NumberOfSortings() const { return static_cast<int>(m_sortings.size()); }

    void SetTransformationData(TransformationData const &transformation);
    void SetControlChartData(ControlChartData const &chart);

    // Batches among the items.
    // Selects the observations of batches by 1-based number; with `keepPhase` only those of the phase of the first item
    // selected before.
    void SelectBatches(std::vector<int> const &batches, bool keepPhase);
    SelectedType SelectBatches(std::vector<std::string> const &names);
    // An empty batch is the first one, an empty phase the whole batch.
    void SetSelectedBatchAndPhase(char const *batch, char const *phase);
    // Batches all of whose items are selected. True when it is one phase of one batch instead.
    bool GetSelectedBatches(std::vector<int> &batches) const;
    void GetSelectedBatches(std::vector<std::string> &names) const;
    // Exactly one whole batch, or one whole phase of it, is selected.
    bool HasSingleBatchAndPhase(std::string &batch, std::string &phase) const;

    // What all vectors have in common; -1 when they differ.
    int GetSeriesModel() const;
    int GetCurrentModel() const;
    int GetCurrentDataSet() const;
    // -2 none, -1 the prediction set, 0 mixed, else the data set.
    int GetOriginalDataset() const;
    bool HasOnlyNumVectors() const;
    ProjectVector::ObsOrPredType GetObsPredType() const;
    ProjectVector::ObsOrPredType GetSeriesObsPredType() const;
    bool HasPredictedVectors() const;
    bool HasOneTypeOfContribTypes() const;
    // All series have the vector, and the model, of the first one.
    bool HasEqualVectors() const;
    bool HasEqualDataSource(std::string &name) const;
    // The identifier column for titles.
    int GetPreferredTitleID(bool raw) const;
    void AddToWindowTitle(std::string &title) const;

    // The saved form of a plot, without the selected items, except that of one batch or one phase of it. With
    // `activeModel` a reader takes its project's active model in place of those stored.
    void WriteSection(ConfigurationSection *section, bool activeModel) const;
    // Looks all vectors up anew in the project that this selection has. A series that the project cannot show is left
    // out without a word, and so are those above the limit. False, and the selection is cleared, when a key that is
    // needed is missing or no series is left. The errors of an axis and of the vectors of the transformation pass, and
    // leave the selection cleared. Settings beyond the vectors stay as they are when their keys are missing; a number
    // format that is none for one floating-point number is not taken.
    bool ReadSection(ConfigurationSection *section);

    // For boost::archive::polymorphic_oarchive and polymorphic_iarchive: section, selected items and defaults. What
    // ReadSection refuses loads as an empty selection, and what follows in the archive is read all the same.
    template <typename Archive>
    void save(Archive &archive, unsigned int version) const;
    template <typename Archive>
    void load(Archive &archive, unsigned int version);

private:
    bool UsesX() const { return (m_mode & AxisX) != 0; }
    bool UsesY() const { return (m_mode & AxisY) != 0; }
    ProjectUtilities::DefaultSelection const *Defaults() const { return m_defaults.get(); }
    void Announce();
    void AddProjectData(ProjectVectorData const &data, bool intersect);
    void InitializeColumnIDs() const;
    void InitVectors();
    void InitAxis(ProjectVectorData &axis, int dataset);
    void AddDefaultSDLimits();
    void CorrectNumVectors();
    // Parts of ReadSection; false when what they need is missing.
    bool ReadContents(ConfigurationSection &section);
    bool ReadKind(ConfigurationSection const &section, bool &activeModel);
    bool ReadAxis(ConfigurationSection &section, char const *name, bool isUsed, bool activeModel,
                  ProjectVectorData &axis) const;
    bool ReadAllSeries(ConfigurationSection &section, bool activeModel);
    bool ReadTransformation(ConfigurationSection &section, bool activeModel);
    void ReadDisplay(ConfigurationSection &section);
    void SetDefaultLags(TransformationData &transformation) const;
    void SelectAll() const;
    ColumnIDs const &Columns() const; // none when there are none, and without project
    ObservationInfos Rows() const;    // the observations behind the columns
    // Of a list of any length that was set, those flags that stand for rows.
    std::span<bool const> FlagsOf(ObservationInfos const &rows) const;

    Mode m_mode = Normal;
    DataSeriesGlobalType m_globalType = GlobalTypeUndecided;
    ProjectVectorData m_xAxis;
    ProjectVectorData m_yAxis;
    std::vector<ProjectVectorData> m_series;
    ProjectVector::VectorTypeEnum m_vectorType = ProjectVector::VectorTypeNone;
    boost::weak_ptr<NCProject> m_project;
    mutable BoolVector m_selectObjects;
    mutable std::unique_ptr<ColumnIDs> m_columns;
    int m_maxSeries = -1;
    bool m_updateSelectObjects = false;
    mutable bool m_dirty = false;
    ProjectVector::ScoreLoadingType m_scoreLoadingType = ProjectVector::AllScoreLoading;
    ScaleType m_scaleType = ScaleNone;
    ProjectVector::ObsOrPredType m_obsPredType = ProjectVector::ObsAndPred;
    mutable TransformationData m_transformation;
    bool m_supportsTransformation = true;
    ControlChartData m_controlChart;
    bool m_invertData = false;
    char *m_numberFormat;
    OptionsOverrides m_extraOptions;
    bool m_useConfidenceInterval = false;
    std::string m_rawHeader;
    std::vector<SortInfo> m_sortings;
    AspectRatioType m_aspectRatio{};
    double m_xScale = NoScale;
    double m_yScale = NoScale;
    double m_zScale = NoScale;
    int m_preferredTitle = -1;
    bool m_useDefaultSelectObjects = true;
    bool m_showLimits = true;
    SDLimits m_sdLimits;
    bool m_useFormattedDefault = false;
    boost::shared_ptr<ProjectUtilities::DefaultSelection> m_defaults;
};
