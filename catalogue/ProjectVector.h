#pragma once

#include "platform/export.h"
#include "platform/forward.h"
#include "platform/identity/ColumnIDs.h"
#include "platform/identity/ProjectData.h"
#include "platform/project/ModelInfo.h"
#include "platform/project/WeightTypeE.h"

#include <list>
#include <string>
#include <utility>
#include <vector>

// One named statistic: `t`, `DModX`, `YPred`, ... An instance is a row of metadata, which tells all that windows need
// to know without knowing a statistic by name, and a factory of the table that the statistic fills for a project.
//
// Every statistic is a class of its own without data of its own, with one static instance (some have several) that
// enters itself in the ProjectVectorHandler while the library loads. Most derive directly from this class; the form
// that OPLS and O2PLS models have of a statistic derives from that statistic. Instances are constant and are compared
// by pointer. See "How to add a statistic" in docs/architecture.md.
class DATASERIES_API ProjectVector {
public:
    // The axis along which the values of a vector lie. The numbers of all enumerations here are saved and are fixed.
    enum VectorTypeEnum : int {
        VectorTypeNone = 0,
        VectorTypeVariablesScores = 1,      // one value for each observation
        VectorTypeObservationsLoadings = 2, // one value for each variable
        VectorTypeComponent = 3,            // one value for each component
        VectorTypeLag = 4,                  // one value for each lag
        VectorTypeAligned = 5,              // one value for each aligned maturity point of a batch
        VectorTypeBatch = 6                 // one value for each batch
    };

    // What a vector reads from, as a bit mask.
    enum DataTypeEnum : int {
        DataTypeNone = 0,
        DataTypeDataSet = 1,
        DataTypePredictionSet = 2,
        DataTypeModel = 4,
        DataTypeAny = 7
    };

    // Kinds of components that a vector is indexed by, as a bit mask.
    enum ComponentType : int {
        ComponentNone = 0,
        ComponentPredictive = 1,
        ComponentXSideOrthogonal = 2,
        ComponentYSideOrthogonal = 4,
        ComponentOSC = 8
    };

    // What the number and the second number of a vector select.
    enum NumberType : int {
        NumberNone = 0,
        NumberObsOrVar = 1, // an observation for loadings, a variable for scores
        NumberYVariable = 2,
        NumberXVariable = 3,
        NumberXAndYVariable = 4,
        NumberComponentRange = 5, // first and last component
        NumberBatch = 6,          // a batch index
        NumberBatchXVariable = 7, // an X variable and a batch index
        NumberBatchYVariable = 8,
        NumberBatchVIPPhase = 9, // a Y variable, and a phase as the second number
        NumberBatchComponentRange = 10,
        NumberBatchIndexOnly = 11,
        NumberIdentifier = 12,    // an identifier column
        NumberBatchVIPSecond = 14 // a phase as the second number
    };

    // As a number of an argument text: no single item.
    static constexpr unsigned long noSingleItem = 0xFFFFFFFF;

    enum ScoreLoadingType : int { NoScoreLoading = 1, Score = 2, Loading = 4, AllScoreLoading = 7 };

    enum ObsOrPredType : int { Observed = 1, Predicted = 2, ObsAndPred = 3 };

    // What an argument text says, as far as the metadata of its vector tell which fields it has.
    struct Arguments {
        std::string source;
        int component = 0;
        int xSide = 0; // of a vector that is indexed by all three kinds of components, as is the next
        int ySide = 0;
        unsigned long number = 0;
        int round = 0;
        bool unscaled = false;
        bool backTransformed = false;
        unsigned long number2 = 0;
        int batch = 0;
        char const *rest = nullptr; // the text behind the fields read, null when it ended with them
    };

    // What the argument text of a contribution says: the groups are 1-based positions among the observations of the
    // workset or of the prediction set, those of the aligned kinds batches with a maturity.
    struct ContributionArguments {
        std::string source;
        std::vector<WeightTypeE::WeightType> weights;
        std::list<int> observations1, observations2;
        std::vector<std::pair<std::string, float>> points1, points2;
        int yVariable = 0;
        std::list<int> components;
    };

    ProjectVector();
    // A probe for searches: everything but these values is 0 or empty. Not registered.
    ProjectVector(VectorTypeEnum type, char const *name, DataTypeEnum dataType, int componentType,
                  NumberType numberType);
    // A copy is not registered.
    ProjectVector(ProjectVector const &) = default;
    ProjectVector &operator=(ProjectVector const &) = default;

    // Takes the object out of the registry, if it is there.
    virtual ~ProjectVector();
    virtual std::string GetLongName() const;
    // Whether the vector has anything to show in this project, for this model, for this data set (1-based).
    virtual bool IsValidProject(ProjectPtr project) const;
    virtual bool IsValidModel(NCProject const &project, ModelInfo const &model) const;
    virtual bool IsValidDataset(NCProject const &project, int dataset) const;
    virtual int GetComponentType() const;
    // What it is, when to look at it, its units; empty for placeholders.
    virtual std::string GetHelpString() const;
    // The table that the argument text asks for: one row or several, one column for each item. Null when there is no
    // data for the arguments, which is no failure. `args` is the text from the source on: "M1,1,0,0".
    virtual TablePtr CreateVectorRaw(ProjectPtr project, char const *args) const;
    // The same with the four common arguments read. `number` is 32 bits wide, all ones meaning "no single item".
    virtual TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long number,
                                  int round) const;
    // The identity of exactly the columns that the same arguments give in CreateVectorRaw, without reading the numbers.
    virtual ColumnIDs CreateColumnIDsRaw(ProjectPtr project, char const *args) const;
    // Must be overridden where it can be reached: throws NCInternalError.
    virtual ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int component,
                                      unsigned long number) const;
    // An index or identifier, good for an X axis but no signal.
    virtual bool IsNumVectorLike() const;
    virtual bool IsSourceOfVariationVector() const;
    // The values may be dates.
    virtual bool SupportDateTime() const;
    virtual bool IsT2RangeVector() const;
    // The argument text has two multipliers of the standard deviation.
    virtual bool HasMultiplier() const;
    // The argument text has a coefficient status.
    virtual bool HasResolvableCoefficients() const;
    // For vectors of two components: the kind of the first (1) or the second (2).
    virtual ComponentType GetDoubleCompComponentType(int which) const;

    char const *GetName() const { return m_name.c_str(); }
    VectorTypeEnum GetType() const { return m_type; }
    DataTypeEnum GetDataType() const { return m_dataType; }
    ModelTypeE::Model GetModelType() const { return m_modelType; }
    NumberType GetNumberType() const { return m_numberType; }
    ScoreLoadingType GetScoreLoadingType() const { return m_scoreLoadingType; }
    ObsOrPredType GetObsPredType() const { return m_obsPredType; }
    // The lowest component number that the vector accepts; -1 when it takes none.
    int GetFirstComponent() const { return m_firstComponent; }
    bool IsDisplayable() const { return m_isDisplayable; }
    bool IsNumVector() const { return m_isNumVector; }
    bool IsContribution() const { return m_isContribution; }
    // Its groups are points of aligned batches.
    bool IsAlignedContribution() const { return m_contributionKind >= 5 && m_contributionKind <= 7; }
    bool IsImpulseResponseVector() const { return m_isImpulseResponseVector; }
    bool NeedsValidationRounds() const { return m_needsValidationRounds; }
    bool OnlyCrossValidated() const { return m_onlyCrossValidated; }
    bool UseUnscalingTransform() const { return m_useUnscalingTransform; }
    // What contribution the vector can start: 0 none, 1 score, 2 predicted response, 3 X distance, 4 Y distance.
    int GetContributionSource() const { return m_contributionSource; }
    // What contribution the vector is: 0 none, 1 score, 3 X distance, 4 Y distance, 5 to 7 the same of aligned batches.
    int GetContributionKind() const { return m_contributionKind; }
    // Cumulative over components of that kind: a new specification takes the model's last one and follows the model.
    bool PredictiveComponentDefaultsToLast() const { return m_predictiveComponentDefaultsToLast; }
    bool YOrthoComponentDefaultsToLast() const { return m_yOrthoComponentDefaultsToLast; }

    bool UseModel() const { return (m_dataType & DataTypeModel) != 0; }
    bool IsXVector() const;
    bool IsYVector() const;
    bool UseNumberID2() const;
    bool UseBatchIx() const;
    // Indexed by components of exactly one kind.
    bool HasOneComponent() const;
    // Coefficients for centred and scaled data, by name.
    bool IsCenteredAndScaled() const;

    // Of three component numbers, and of a model's component counts, the one for a single kind; 0 for any other mask.
    static int SelectComponent(ComponentType kind, int predictive, int xSide, int ySide);
    static int SelectMaxComponents(ComponentType kind, ModelInfo const &model);

    // Reads the common fields and those of the groups that this vector has, up to the batch index. False when the text
    // ends before a group that the vector needs.
    bool ReadArguments(char const *args, Arguments &arguments) const;

    // Reads the text of a contribution. False when it ends before the weights.
    bool ReadContribution(char const *args, ContributionArguments &contribution) const;

    // The terms of a model that the number of the arguments names. For a vector with Y variables alone that is one Y
    // term, and NCError when there is no such term. For others it is the X term with the number or, when the number
    // stands for no single item, those of the list behind the arguments; numbers that no term has are left out.
    ColumnTerms NamedTerms(NCProject const &project, int model, Arguments const &arguments) const;
    // The terms that the number of an X variable counts: those of X or, for a vector over lags, the mothers of those
    // that are lagged. None for a model that the project does not have.
    ColumnTerms XTermsOf(NCProject const &project, int model) const;
    // The number of the text, or the list that trails it where that is the largest one.
    static std::list<int> NamedNumbers(Arguments const &arguments);

    // The number in a source text: "M12" is model 12, "DS3" data set 3; -1 when the text is no such source.
    static int GetModelNumber(ProjectPtr const &project, char const *source);
    static int GetModelNumber(ProjectPtr const &project, std::string const &source);
    static int GetDataSetNumber(ProjectPtr const &project, char const *source);

    // Texts of the enumerations. An unknown value has the empty text; an unknown text reads as 1.
    static char const *FromVectorTypeEnum(VectorTypeEnum type);
    static VectorTypeEnum ToVectorTypeEnum(char const *text);
    static std::string FromVectorTypeEnumGui(VectorTypeEnum type);
    static VectorTypeEnum ToVectorTypeEnumGui(char const *text);
    static char const *FromScoreLoadingType(ScoreLoadingType type);
    static ScoreLoadingType ToScoreLoadingType(char const *text);
    static char const *FromObsOrPredType(ObsOrPredType type);
    static ObsOrPredType ToObsOrPredType(char const *text);

protected:
    // Fills the metadata (the long name is the name) and registers the object. Called once by a constructor, which then
    // sets what is left; lookups see that too, as they read members only when asked.
    void Init(char const *name, VectorTypeEnum type, DataTypeEnum dataType, ModelTypeE::Model modelType,
              int componentType, NumberType numberType, ScoreLoadingType scoreLoadingType, ObsOrPredType obsPredType,
              bool isDisplayable);

    // A list of the one Y term at a 1-based index. NCError when the model has no Y or no such term.
    static ColumnTerms GetYColumnTerm(NCProject const &project, int model, unsigned int index);

    // Parsers of the argument text: numbers in decimal, separated by single commas, in a fixed order. Each reads its
    // fields from the start of its text and returns the position of the text behind them, or -1 when the text ended
    // with them. No text is wrong: what does not read as a number is 0, and where the text is too short the search for
    // the next field starts at the beginning of the text again.

    // Source, component, number, cross-validation round.
    int Parse(char const *args, std::string &source, int &component, unsigned long &number, int &round) const;
    // The same with one component of each kind.
    int ParseAllComponents(char const *args, Arguments &arguments) const;
    // Two flags, true only for exactly 1: the first field is `unscaled`.
    int ParseScaleTransform(char const *args, bool &backTransformed, bool &unscaled) const;
    // Weights, two groups of observations, a response, components. Weights and components are appended, the groups
    // replaced. Always -1.
    int ParseContribution(char const *args, std::vector<WeightTypeE::WeightType> &weights, std::list<int> &group1,
                          std::list<int> &group2, int &yVariable, std::list<int> &components) const;
    // The same for points of aligned batches, "name$,maturity" each; all lists are appended to. Always -1.
    int ParseALContribution(char const *args, std::vector<WeightTypeE::WeightType> &weights,
                            std::vector<std::pair<std::string, float>> &group1,
                            std::vector<std::pair<std::string, float>> &group2, int &yVariable,
                            std::list<int> &components) const;
    int ParseBatchIx(char const *args, int &batch) const;
    static int ParseInteger(char const *args, int &value);
    int ParseSecondNumber(char const *args, unsigned long &number) const;
    // Every field to the end of the text, appended; an empty text gives one 0.
    static void ParseIntegerList(std::string const &args, std::list<int> &values);
    // Numbers as long as a comma follows, appended.
    static void ParseIntList(char const *args, std::list<unsigned long> &values);

    int m_contributionSource = 0;
    int m_contributionKind = 0;
    bool m_predictiveComponentDefaultsToLast = false;
    bool m_yOrthoComponentDefaultsToLast = false;
    std::string m_name;
    std::string m_longName;
    VectorTypeEnum m_type = VectorTypeNone;
    DataTypeEnum m_dataType = DataTypeNone;
    int m_componentType = ComponentNone;
    NumberType m_numberType = NumberNone;
    ScoreLoadingType m_scoreLoadingType{};
    ObsOrPredType m_obsPredType{};
    bool m_useUnscalingTransform = false;
    bool m_needsValidationRounds = false;
    bool m_isNumVector = false;
    bool m_isContribution = false;
    bool m_onlyCrossValidated = false;
    int m_firstComponent = 1;
    bool m_isImpulseResponseVector = false;
    ModelTypeE::Model m_modelType = ModelTypeE::None;
    bool m_isDisplayable = false;
};

// Whether the vector is one of the limits of a batch control chart, made of the average and the standard deviation over
// all batches (`tstddev`, `XVarstddev`, ...); false for null.
DATASERIES_API bool IsAvgStdDevVector(ProjectVector const *vector);
