#include "catalogue/ProjectVector.h"

#include "catalogue/ProjectVectorHandler.h"
#include "platform/project/NCProject.h"
#include "platform/text/Exception.h"
#include "platform/text/Translate.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <utility>

namespace {

template <typename Value>
struct NamedValue {
    Value value;
    char const *text;
};

constexpr NamedValue<ProjectVector::VectorTypeEnum> vectorTypes[] = {
    {ProjectVector::VectorTypeNone, "None"},
    {ProjectVector::VectorTypeVariablesScores, "Variables and Scores"},
    {ProjectVector::VectorTypeObservationsLoadings, "Observations and Loadings"},
    {ProjectVector::VectorTypeComponent, "F(Component)"},
    {ProjectVector::VectorTypeLag, "F(Lag)"},
    {ProjectVector::VectorTypeAligned, "Aligned Vectors"},
    {ProjectVector::VectorTypeBatch, "Batch Vectors"}};

constexpr NamedValue<ProjectVector::ScoreLoadingType> scoreLoadingTypes[] = {
    {ProjectVector::NoScoreLoading, "NOSCORELOADING"},
    {ProjectVector::Score, "SCORE"},
    {ProjectVector::Loading, "LOADING"},
    {ProjectVector::AllScoreLoading, "ALL"}};

constexpr NamedValue<ProjectVector::ObsOrPredType> obsOrPredTypes[] = {{ProjectVector::Observed, "Observed"},
                                                                       {ProjectVector::Predicted, "Predicted"},
                                                                       {ProjectVector::ObsAndPred, "ObsAndPred"}};

template <typename Table, typename Value>
char const *TextOf(Table const &table, Value value) {
    auto const found =
        std::find_if(std::begin(table), std::end(table), [&](auto const &row) { return row.value == value; });
    return found == std::end(table) ? "" : found->text;
}

// An unknown text stands for the value 1 in each of the tables.
template <typename Value, std::size_t size>
Value ValueOf(NamedValue<Value> const (&table)[size], char const *text) {
    auto const found = std::find_if(std::begin(table), std::end(table),
                                    [&](auto const &row) { return std::strcmp(row.text, text) == 0; });
    return found == std::end(table) ? static_cast<Value>(1) : found->value;
}

} // namespace

ProjectVector::ProjectVector() = default;

ProjectVector::ProjectVector(VectorTypeEnum type, char const *name, DataTypeEnum dataType, int componentType,
                             NumberType numberType)
    : m_name(name), m_longName(name), m_type(type), m_dataType(dataType), m_componentType(componentType),
      m_numberType(numberType) {}

ProjectVector::~ProjectVector() {
    ProjectVectorHandler::Instance()->Remove(this);
}

void ProjectVector::Init(char const *name, VectorTypeEnum type, DataTypeEnum dataType, ModelTypeE::Model modelType,
                         int componentType, NumberType numberType, ScoreLoadingType scoreLoadingType,
                         ObsOrPredType obsPredType, bool isDisplayable) {
    m_type = type;
    m_name = name;
    m_longName = name;
    m_dataType = dataType;
    m_modelType = modelType;
    m_componentType = componentType;
    m_numberType = numberType;
    m_scoreLoadingType = scoreLoadingType;
    m_obsPredType = obsPredType;
    m_isDisplayable = isDisplayable;
    ProjectVectorHandler::Instance()->Add(this);
}

std::string ProjectVector::GetLongName() const {
    return m_longName;
}
bool ProjectVector::IsValidProject(ProjectPtr) const {
    return true;
}
bool ProjectVector::IsValidModel(NCProject const &, ModelInfo const &) const {
    return UseModel();
}
int ProjectVector::GetComponentType() const {
    return m_componentType;
}
std::string ProjectVector::GetHelpString() const {
    return {};
}
bool ProjectVector::IsNumVectorLike() const {
    return m_isNumVector;
}
bool ProjectVector::IsSourceOfVariationVector() const {
    return false;
}
bool ProjectVector::SupportDateTime() const {
    return false;
}
bool ProjectVector::IsT2RangeVector() const {
    return false;
}
bool ProjectVector::HasMultiplier() const {
    return false;
}
bool ProjectVector::HasResolvableCoefficients() const {
    return false;
}
ProjectVector::ComponentType ProjectVector::GetDoubleCompComponentType(int) const {
    return ComponentPredictive;
}

bool ProjectVector::IsValidDataset(NCProject const &, int dataset) const {
    return (m_dataType & DataTypeDataSet) != 0 && dataset > 0;
}

TablePtr ProjectVector::CreateVectorRaw(ProjectPtr project, char const *args) const {
    std::string source;
    int component = 0;
    unsigned long number = 0;
    int round = 0;
    Parse(args, source, component, number, round);
    return CreateVector(project, source.c_str(), component, number, round);
}

TablePtr ProjectVector::CreateVector(ProjectPtr, char const *, int, unsigned long, int) const {
    return nullptr;
}

ColumnIDs ProjectVector::CreateColumnIDsRaw(ProjectPtr project, char const *args) const {
    std::string source;
    int component = 0;
    unsigned long number = 0;
    int round = 0;
    Parse(args, source, component, number, round);
    return CreateColumnIDs(project, source.c_str(), component, number);
}

ColumnIDs ProjectVector::CreateColumnIDs(ProjectPtr, char const *, int, unsigned long) const {
    throw NCInternalError("ProjectVector::CreateColumnIDs", ExceptionMessage::translate("Virtual baseclass called."));
}

bool ProjectVector::IsXVector() const {
    return m_numberType == NumberXVariable || m_numberType == NumberXAndYVariable ||
           m_numberType == NumberBatchXVariable;
}

bool ProjectVector::IsYVector() const {
    return m_numberType == NumberYVariable || m_numberType == NumberXAndYVariable ||
           m_numberType == NumberBatchYVariable || m_numberType == NumberBatchVIPPhase;
}

bool ProjectVector::UseNumberID2() const {
    return m_numberType == NumberXAndYVariable || m_numberType == NumberComponentRange ||
           m_numberType == NumberBatchVIPPhase || m_numberType == NumberBatchComponentRange ||
           m_numberType == NumberBatchVIPSecond;
}

bool ProjectVector::UseBatchIx() const {
    return m_numberType >= NumberBatch && m_numberType <= NumberBatchIndexOnly && m_numberType != NumberBatchVIPPhase;
}

bool ProjectVector::HasOneComponent() const {
    return m_componentType == ComponentPredictive || m_componentType == ComponentXSideOrthogonal ||
           m_componentType == ComponentYSideOrthogonal || m_componentType == ComponentOSC;
}

bool ProjectVector::IsCenteredAndScaled() const {
    static constexpr char const *names[] = {"CoeffCS", "CoeffCSLag", "CoeffCScvSELag", "CoeffCScv", "CoeffCScvSE"};
    return std::find(std::begin(names), std::end(names), m_name) != std::end(names);
}

int ProjectVector::SelectComponent(ComponentType kind, int predictive, int xSide, int ySide) {
    switch (kind) {
    case ComponentPredictive:
        return predictive;
    case ComponentXSideOrthogonal:
        return xSide;
    case ComponentYSideOrthogonal:
        return ySide;
    default:
        return 0;
    }
}

int ProjectVector::SelectMaxComponents(ComponentType kind, ModelInfo const &model) {
    return SelectComponent(kind, model.SizePredictiveComponents(), model.SizeXSideOrthogonalComponents(),
                           model.SizeYSideOrthogonalComponents());
}

int ProjectVector::GetModelNumber(ProjectPtr const &, char const *source) {
    char *end = nullptr;
    long const number = source[0] == 'M' ? std::strtol(source + 1, &end, 10) : -1;
    return end != source + 1 && std::in_range<int>(number) ? static_cast<int>(number) : -1;
}

int ProjectVector::GetModelNumber(ProjectPtr const &project, std::string const &source) {
    return GetModelNumber(project, source.c_str());
}

int ProjectVector::GetDataSetNumber(ProjectPtr const &, char const *source) {
    if (source[0] != 'D')
        return -1;
    // The second character is skipped unseen.
    long const number = source[1] == '\0' ? 0 : std::strtol(source + 2, nullptr, 10);
    return number >= 0 && std::in_range<int>(number) ? static_cast<int>(number) : -1;
}

ColumnTerms ProjectVector::GetYColumnTerm(NCProject const &project, int model, unsigned int index) {
    boost::shared_ptr<NCModel const> const object = project.GetModel(model);
    if (!object || object->GetYColumnTerms().Size() == 0)
        throw NCError(ExceptionMessage::translate("Model {1} is not a predictive model.") % model, NCError::Error);
    ColumnTerms const &terms = object->GetYColumnTerms();
    if (index == 0 || index > static_cast<unsigned int>(terms.Size()))
        throw NCError(ExceptionMessage::translate("{1} is not a valid response index in model {2}.") % index % model,
                      NCError::Error);
    return ColumnTerms({terms[static_cast<int>(index)]});
}

std::list<int> ProjectVector::NamedNumbers(Arguments const &arguments) {
    std::list<int> numbers;
    if (arguments.number == noSingleItem)
        ParseIntegerList(arguments.rest ? arguments.rest : "", numbers);
    else
        numbers.push_back(static_cast<int>(arguments.number));
    return numbers;
}

ColumnTerms ProjectVector::NamedTerms(NCProject const &project, int model, Arguments const &arguments) const {
    if (IsYVector() && !IsXVector())
        return GetYColumnTerm(project, model, static_cast<unsigned int>(arguments.number));
    boost::shared_ptr<NCModel const> const object = project.GetModel(model);
    ColumnTerms const mothers = m_type == VectorTypeLag ? XTermsOf(project, model) : ColumnTerms();
    ColumnTerms const &terms = m_type == VectorTypeLag || !object ? mothers : object->GetXColumnTerms();
    ColumnTerms named;
    for (int const number : NamedNumbers(arguments))
        if (number >= 1 && number <= terms.Size())
            named.AppendTerm(terms[number]);
    return named;
}

ColumnTerms ProjectVector::XTermsOf(NCProject const &project, int model) const {
    boost::shared_ptr<NCModel const> const object = project.GetModel(model);
    if (!object)
        return {};
    if (m_type != VectorTypeLag)
        return object->GetXColumnTerms();
    ColumnTerms mothers;
    for (std::uint32_t const mother : object->GetXColumnTerms().GetLaggedColumnTermMothers())
        mothers.AppendTerm(ColumnTerm(mother));
    return mothers;
}

char const *ProjectVector::FromVectorTypeEnum(VectorTypeEnum type) {
    return TextOf(vectorTypes, type);
}

ProjectVector::VectorTypeEnum ProjectVector::ToVectorTypeEnum(char const *text) {
    return ValueOf(vectorTypes, text);
}

std::string ProjectVector::FromVectorTypeEnumGui(VectorTypeEnum type) {
    switch (type) {
    case VectorTypeNone:
        return translate("None");
    case VectorTypeVariablesScores:
        return translate("Variables and scores");
    case VectorTypeObservationsLoadings:
        return translate("Observations and loadings");
    case VectorTypeComponent:
        return translate("F(Component)");
    case VectorTypeLag:
        return translate("F(Lag)");
    case VectorTypeAligned:
        return translate("Aligned batch vectors", "Aligned vectors");
    case VectorTypeBatch:
        return translate("Batch vectors");
    }
    return {};
}

ProjectVector::VectorTypeEnum ProjectVector::ToVectorTypeEnumGui(char const *text) {
    // "None" is tried last: a translation may give it the text of another type.
    for (int const type : {1, 2, 3, 4, 5, 6, 0})
        if (FromVectorTypeEnumGui(static_cast<VectorTypeEnum>(type)) == text)
            return static_cast<VectorTypeEnum>(type);
    return VectorTypeVariablesScores;
}

char const *ProjectVector::FromScoreLoadingType(ScoreLoadingType type) {
    return TextOf(scoreLoadingTypes, type);
}

ProjectVector::ScoreLoadingType ProjectVector::ToScoreLoadingType(char const *text) {
    return ValueOf(scoreLoadingTypes, text);
}

char const *ProjectVector::FromObsOrPredType(ObsOrPredType type) {
    return TextOf(obsOrPredTypes, type);
}

ProjectVector::ObsOrPredType ProjectVector::ToObsOrPredType(char const *text) {
    return ValueOf(obsOrPredTypes, text);
}
