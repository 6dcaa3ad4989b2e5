#include "catalogue/ProjectVectorHandler.h"
#include "platform/project/ModelUtilities.h"
#include "platform/project/NCProject.h"
#include "platform/storage/XercesXMLSection.h"
#include "platform/text/VqString.h"
#include "specification/ProjectVectorData.h"
#include "specification/ReadVectorException.h"
#include "utilities/KestaProjectHandlerBase.h"

#include <boost/archive/polymorphic_iarchive.hpp>
#include <boost/archive/polymorphic_oarchive.hpp>
#include <boost/format.hpp>
#include <boost/make_shared.hpp>
#include <boost/serialization/string.hpp>

#include <algorithm>
#include <sstream>

// A specification in a section of settings, and in an archive.

namespace {

constexpr char const *archiveSection = "ProjectVectorData";
constexpr char pointSeparator = ';';
constexpr int formerModelData = 8; // what stood for data of a model in older files

ReadVectorException CannotShow(char const *text, std::string const &name) {
    return ReadVectorException(ExceptionMessage::translate(text) % name);
}

// The first of two keys that is there; older files have the second.
bool ReadEither(ConfigurationSection const &section, char const *key, char const *olderKey, int &value) {
    return section.ReadKey(key, value) || section.ReadKey(olderKey, value);
}

template <typename Value>
void ReadOr(ConfigurationSection const &section, char const *key, Value &value, Value const &otherwise) {
    if (!section.ReadKey(key, value))
        value = otherwise;
}

// Only 1 is true.
bool ReadFlag(ConfigurationSection const &section, char const *key, bool &flag) {
    int value = 0;
    bool const isThere = section.ReadKey(key, value);
    if (isThere)
        flag = value == 1;
    return isThere;
}

bool ReadNumber(ConfigurationSection const &section, char const *key, std::uint32_t &number) {
    int value = 0;
    bool const isThere = section.ReadKey(key, value);
    if (isThere)
        number = static_cast<std::uint32_t>(value);
    return isThere;
}

template <typename Container>
bool ReadList(ConfigurationSection const &section, char const *key, Container &values) {
    std::list<int> read;
    if (!section.ReadKey(key, read))
        return false;
    values.clear();
    for (int const value : read)
        values.push_back(static_cast<typename Container::value_type>(value));
    return true;
}

template <typename Container>
void WriteList(ConfigurationSection &section, char const *key, Container const &values) {
    section.WriteKey(key, std::list<int>(values.begin(), values.end()));
}

BatchPoints ReadPoint(ConfigurationSection const &section, char const *batch, double maturity) {
    std::string name;
    section.ReadKey(batch, name);
    return {{name, static_cast<float>(maturity)}};
}

void CheckPositions(std::vector<int> const &positions, int size, char const *text) {
    if (std::any_of(positions.begin(), positions.end(), [size](int position) { return position > size; }))
        throw ReadVectorException(ExceptionMessage::translate(text));
}

} // namespace

void ProjectVectorData::WriteSection(ConfigurationSection *section) const {
    if (!m_vector)
        return;
    auto const writeNumber = [section](char const *key, std::uint32_t number) {
        section->WriteKey(key, static_cast<int>(number));
    };
    auto const writeFlag = [section](char const *key, bool flag) { section->WriteKey(key, flag ? 1 : 0); };
    writeNumber("NumberID", m_numberID);
    writeNumber("NumberID2", m_numberID2);
    section->WriteKey("BatchIx", batchIx);
    section->WriteKey("ProjectVector", m_vector->GetName());
    section->WriteKey("ProjectVectorType", ProjectVector::FromVectorTypeEnum(m_vector->GetType()));
    section->WriteKey("DataType", static_cast<int>(m_vector->GetDataType()));
    writeFlag("Unscaled", unscaled);
    writeFlag("BackTransformed", backTransformed);
    section->WriteKey("SelCV", selCV);
    section->WriteKey("WeightType", ContributionWeightEnum::GetWeightName(m_weightType));
    section->WriteKey("Multiplier1", multiplier1);
    section->WriteKey("Multiplier2", multiplier2);
    WriteList(*section, "Obs1", obs1);
    WriteList(*section, "Obs2", obs2);
    section->WriteKey("YVar", m_yVar);
    section->WriteKey("Scaling", scaling);
    section->WriteKey("Offset", offset);
    section->WriteKey("StartLag", startLag);
    section->WriteKey("EndLag", endLag);
    WriteContributionVector(section, "ContRef", contRef);
    WriteContributionVector(section, "ContGroup", contGroup);
    writeFlag("AlignedMaturity1", alignedMaturity1);
    writeFlag("AlignedMaturity2", alignedMaturity2);
    WriteList(*section, "CompList", m_components);
    WriteList(*section, "WeightVec", m_weights);
    if (m_vector->UseModel() && m_model)
        section->WriteKey("Model", m_model->number);
    if (m_vector->GetDataType() & ProjectVector::DataTypeDataSet)
        section->WriteKey("Dataset", m_dataset);
    int const kinds = m_vector->GetComponentType();
    if (kinds & ProjectVector::ComponentPredictive)
        section->WriteKey("PredictiveComp", m_predictiveComponent);
    if (kinds & ProjectVector::ComponentXSideOrthogonal)
        section->WriteKey("XSideOrthoComp", m_xSideComponent);
    if (kinds & ProjectVector::ComponentYSideOrthogonal)
        section->WriteKey("YSideOrthoComp", m_ySideComponent);
    if (kinds & ProjectVector::ComponentOSC)
        section->WriteKey("OSCCOMP", oscComponent);
    if (m_vector->HasResolvableCoefficients())
        section->WriteKey("ResolveHier", static_cast<int>(m_coefficientStatus));
}

bool ProjectVectorData::ReadSection(ProjectPtr const &project, ConfigurationSection *section, bool activeModel) {
    SetProjectVector(nullptr);
    std::string name, typeText;
    if (!section->ReadKey("ProjectVector", name) || !section->ReadKey("ProjectVectorType", typeText))
        return false;
    ProjectVectorHandler const &catalogue = *ProjectVectorHandler::Instance();
    ProjectVector::VectorTypeEnum const type = ProjectVector::ToVectorTypeEnum(typeText.c_str());
    if (catalogue.IsNumVector(name.c_str())) {
        SetProjectVector(catalogue.GetNumVector(type));
        m_model = boost::make_shared<ModelInfo>();
        m_dataset = 1;
    } else if (int data = 0; section->ReadKey("DataType", data)) {
        if (data & formerModelData)
            data = (data & ~formerModelData) | ProjectVector::DataTypeModel;
        if (!ReadSource(project, *section, {name, type, static_cast<ProjectVector::DataTypeEnum>(data)}, activeModel))
            return false;
    }
    if (!m_vector)
        throw CannotShow("Unknown vector: {1}", name);
    return ReadArguments(project, *section);
}

bool ProjectVectorData::ReadSource(ProjectPtr const &project, ConfigurationSection const &section,
                                   StoredVector const &stored, bool activeModel) {
    ProjectVectorHandler const &catalogue = *ProjectVectorHandler::Instance();
    auto const find = [&] {
        auto const found = catalogue.Find(stored.name.c_str(), stored.type, stored.data, nullptr);
        SetProjectVector(found == catalogue.end() ? nullptr : *found);
    };
    switch (stored.data) {
    case ProjectVector::DataTypeDataSet:
        if (int dataset = 0; !section.ReadKey("Dataset", dataset))
            return false;
        else if (!project || !project->GetDataSet(dataset))
            throw NCError(ExceptionMessage::translate("Dataset {1} could not be found for vector {2}.") % dataset %
                              stored.name,
                          NCError::Error);
        else
            SetDataSet(dataset);
        find();
        return !m_vector || ReadCorrectionComponent(*project, section);
    case ProjectVector::DataTypePredictionSet:
        find();
        return true;
    default:
        return ReadModelVector(project, section, stored, activeModel);
    }
}

bool ProjectVectorData::ReadCorrectionComponent(NCProject const &project, ConfigurationSection const &section) {
    if ((m_vector->GetComponentType() & ProjectVector::ComponentOSC) == 0)
        return true;
    if (!ReadEither(section, "OSCCOMP", "Component", oscComponent))
        return false;
    oscComponent = std::min(oscComponent, ModelUtilities::NumberOfOSCComponents(project, m_dataset));
    return true;
}

bool ProjectVectorData::ReadModelVector(ProjectPtr const &project, ConfigurationSection const &section,
                                        StoredVector const &stored, bool activeModel) {
    int number = 0;
    if (!section.ReadKey("Model", number))
        return false;
    if (project && activeModel)
        number = project->GetActiveModelNumber();
    boost::shared_ptr<ModelInfo const> const model = project ? project->GetModelInfo(number) : nullptr;
    if (!model)
        throw NCError(ExceptionMessage::translate("Model could not be found for vector {1}.") % stored.name,
                      NCError::Error);
    if (!model->fitted)
        throw CannotShow("Cannot display vector {1} with an unfitted model.", stored.name);
    SetModelInfoPtr(model);
    ProjectVectorHandler const &catalogue = *ProjectVectorHandler::Instance();
    auto const found = catalogue.Find(stored.name.c_str(), stored.type, stored.data, model.get());
    if (found == catalogue.end())
        throw CannotShow("Vector is not available for this model: {1}", stored.name);
    if (!(*found)->IsValidProject(project))
        throw CannotShow("Vector is not available for this project: {1}", stored.name);
    if (!(*found)->IsValidModel(*project, *model))
        throw CannotShow("Vector is not available for this model: {1}", stored.name);
    SetProjectVector(*found);
    if (!ReadComponents(section))
        return false;
    if ((stored.type == ProjectVector::VectorTypeAligned || stored.type == ProjectVector::VectorTypeBatch) &&
        !model->isBatchModel)
        throw CannotShow("Vector {1} is only available for batch models.", stored.name);
    if ((m_vector->GetModelType() & model->type) == 0)
        throw ReadVectorException(ExceptionMessage::translate("Vector {1} is only available for {2} models.") %
                                  stored.name % ModelTypeE::GetModelTypeName(m_vector->GetModelType()));
    return true;
}

bool ProjectVectorData::ReadComponents(ConfigurationSection const &section) {
    auto const needs = [this](ProjectVector::ComponentType kind, int size) {
        if ((m_vector->GetComponentType() & kind) == 0)
            return false;
        if (m_vector->GetFirstComponent() != 0 && size == 0)
            throw CannotShow("Cannot display vector {1} with a zero component model.", m_vector->GetName());
        return true;
    };
    int const size = Model().SizeComponents();
    if (needs(ProjectVector::ComponentPredictive, size)) {
        if (!ReadEither(section, "PredictiveComp", "Component", m_predictiveComponent)) {
            if (!m_vector->PredictiveComponentDefaultsToLast())
                return false;
            m_predictiveComponent = -1;
        }
        m_predictiveComponent = std::min(m_predictiveComponent, size);
    }
    int const xSide = Model().SizeXSideOrthogonalComponents();
    if (needs(ProjectVector::ComponentXSideOrthogonal, xSide)) {
        section.ReadKey("XSideOrthoComp", m_xSideComponent);
        m_xSideComponent = std::min(m_xSideComponent, xSide);
    }
    int const ySide = Model().SizeYSideOrthogonalComponents();
    if (needs(ProjectVector::ComponentYSideOrthogonal, ySide)) {
        section.ReadKey("YSideOrthoComp", m_ySideComponent);
        m_ySideComponent = std::min(m_ySideComponent, ySide);
    }
    return true;
}

bool ProjectVectorData::ReadArguments(ProjectPtr const &project, ConfigurationSection const &section) {
    if (m_vector->GetDataType() == ProjectVector::DataTypeDataSet && !section.ReadKey("Dataset", m_dataset))
        return false;
    if (!ReadNumber(section, "NumberID", m_numberID) || !ReadNumber(section, "NumberID2", m_numberID2))
        return false;
    ReadOr(section, "BatchIx", batchIx, 1);
    ReadPoints(section);
    for (auto const &[key, flag] :
         {std::pair("AlignedMaturity1", &alignedMaturity1), std::pair("AlignedMaturity2", &alignedMaturity2)})
        if (!ReadFlag(section, key, *flag))
            *flag = false;
    if (!CheckNumberIDs(project))
        throw NCError(ExceptionMessage::translate("The selected numbers are not available."), NCError::Error);
    section.ReadKey("StartLag", startLag);
    section.ReadKey("EndLag", endLag);
    if (!ReadFlag(section, "Unscaled", unscaled) || !ReadFlag(section, "BackTransformed", backTransformed) ||
        !section.ReadKey("SelCV", selCV))
        return false;
    ReadOr(section, "Offset", offset, 0.0);
    ReadOr(section, "Scaling", scaling, 1.0);
    ReadOr(section, "Multiplier1", multiplier1, NoMultiplier);
    ReadOr(section, "Multiplier2", multiplier2, NoMultiplier);
    if (m_vector->IsContribution() && !ReadContribution(section))
        return false;
    if (m_vector->HasResolvableCoefficients()) {
        int status = ProjectData::Default;
        section.ReadKey("ResolveHier", status);
        m_coefficientStatus = static_cast<ProjectData::CoefficientStatus>(status);
    }
    return true;
}

void ProjectVectorData::ReadPoints(ConfigurationSection const &section) {
    double maturity = 0.0;
    if (!section.ReadKey("Maturity1", maturity)) {
        ReadContributionVector(&section, "ContRef", contRef);
        ReadContributionVector(&section, "ContGroup", contGroup);
        return;
    }
    contRef = ReadPoint(section, "Batch1", maturity);
    ReadOr(section, "Maturity2", maturity, 0.0);
    contGroup = ReadPoint(section, "Batch2", maturity);
}

bool ProjectVectorData::ReadContribution(ConfigurationSection const &section) {
    std::string weight;
    if (!section.ReadKey("WeightType", weight))
        return false;
    m_weightType = ContributionWeightEnum::ToWeightType(weight.c_str());
    if (!ReadList(section, "WeightVec", m_weights))
        m_weights.clear();
    ReadList(section, "Obs1", obs1);
    ReadList(section, "Obs2", obs2);
    if (m_vector->GetObsPredType() == ProjectVector::Observed) {
        CheckPositions(obs1, Model().sizeObservations,
                       "One of the first selected observations are outside observation range.");
        CheckPositions(obs2, Model().sizeObservations,
                       "One of the second selected observations are outside observation range.");
    }
    if (IsYVarContribution() && section.ReadKey("YVar", m_yVar) && m_yVar > Model().sizeYVariables)
        throw NCError(ExceptionMessage::translate("Selected contribution Y variable is outside the legal range."),
                      NCError::Error);
    if (ReadList(section, "CompList", m_components))
        LowerWeightComponents();
    return true;
}

void ProjectVectorData::LowerWeightComponents() {
    bool const arePaired = m_weights.size() == m_components.size();
    for (std::size_t i = 0; i < m_components.size(); ++i) {
        bool const isOrthogonal = arePaired && m_weights[i] == WeightTypeE::PO;
        m_components[i] = std::min(m_components[i],
                                   isOrthogonal ? Model().SizeXSideOrthogonalComponents() : Model().SizeComponents());
    }
}

void ProjectVectorData::WriteContributionVector(ConfigurationSection *section, char const *key,
                                                BatchPoints const &points) const {
    std::vector<std::string> entries;
    for (auto const &[batch, maturity] : points) {
        std::ostringstream number;
        number.imbue(std::locale::classic());
        number << maturity;
        entries.push_back((boost::format("%1%:") % batch).str() + number.str());
    }
    section->WriteKey(key, entries, pointSeparator);
}

// The name itself may hold a colon.
void ProjectVectorData::ReadContributionVector(ConfigurationSection const *section, char const *key,
                                               BatchPoints &points) const {
    std::vector<std::string> entries;
    if (!section->ReadKey(key, entries, pointSeparator))
        return;
    points.clear();
    for (std::string const &entry : entries) {
        std::size_t const colon = entry.rfind(':');
        float maturity = 0.0f;
        if (colon != std::string::npos && VqString::ToFloat(entry.substr(colon + 1), maturity))
            points.emplace_back(entry.substr(0, colon), maturity);
    }
}

template <typename Archive>
void ProjectVectorData::save(Archive &archive, unsigned int) const {
    XercesXMLSection root;
    WriteSection(root.CreateSubSection(archiveSection).get());
    std::string text;
    root.Flush(text);
    archive << boost::serialization::make_nvp("Section", text);
}

template <typename Archive>
void ProjectVectorData::load(Archive &archive, unsigned int) {
    std::string text;
    archive >> boost::serialization::make_nvp("Section", text);
    auto const root = XercesXMLSection::CreateXMLSectionFromString(text);
    auto const section = root ? root->OpenSubSection(archiveSection) : nullptr;
    if (!section || !ReadSection(KestaProjectHandlerBase::Instance().GetActiveProject(), section.get(), false))
        SetProjectVector(nullptr);
}

template DATASERIES_API void ProjectVectorData::save(boost::archive::polymorphic_oarchive &, unsigned int) const;
template DATASERIES_API void ProjectVectorData::load(boost::archive::polymorphic_iarchive &, unsigned int);
