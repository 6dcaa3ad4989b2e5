#include "utilities/DefaultSelection.h"

#include "platform/project/NCProject.h"
#include "platform/storage/ConfigurationSection.h"
#include "platform/text/Exception.h"
#include "utilities/KestaProjectHandlerBase.h"

#include <boost/archive/polymorphic_iarchive.hpp>
#include <boost/archive/polymorphic_oarchive.hpp>
#include <boost/serialization/nvp.hpp>
#include <boost/serialization/string.hpp>
#include <boost/serialization/vector.hpp>

#include <algorithm>
#include <sstream>

namespace ProjectUtilities {

namespace {

using boost::serialization::make_nvp;

constexpr char separator = ';';

std::unique_ptr<ConfigurationSection> SectionOf(NCProject &project) {
    return project.GetSettingsSection("DefaultSelection");
}

template <typename Number>
std::string Joined(std::vector<Number> const &numbers) {
    std::ostringstream text;
    text.imbue(std::locale::classic());
    for (std::size_t i = 0; i < numbers.size(); ++i)
        text << (i == 0 ? "" : ";") << numbers[i];
    return text.str();
}

// A term without lags, or without qualitative settings, has no such list.
void WriteOrDelete(ConfigurationSection &section, char const *key, std::vector<int> const &values) {
    if (std::any_of(values.begin(), values.end(), [](int value) { return value != 0; }))
        section.WriteKey(key, Joined(values));
    else
        section.DeleteKey(key);
}

void WriteTerm(ConfigurationSection &section, ColumnTerm const &term) {
    std::vector<std::uint32_t> mothers;
    std::vector<int> lags;
    std::vector<int> settings;
    for (int position = 1; position <= term.Size(); ++position) {
        // Behind the first mother the form repeats the second one.
        mothers.push_back(term.GetMotherVariable(std::min(position, 2)));
        lags.push_back(term.GetLag(position));
        settings.push_back(term.GetQualSetting(position));
    }
    if (mothers.empty())
        section.DeleteKey("MotherVariables");
    else
        section.WriteKey("MotherVariables", Joined(mothers));
    WriteOrDelete(section, "Lags", lags);
    WriteOrDelete(section, "QualSetting", settings);
}

// False when the key is not there or holds something else; numbers read up to there stay. An empty text leaves the
// list.
template <typename Number>
bool ReadNumbers(ConfigurationSection const &section, char const *key, std::vector<Number> &numbers) {
    std::string text;
    if (!section.ReadKey(key, text))
        return false;
    if (text.empty())
        return true;
    numbers.clear();
    std::istringstream stream(text);
    stream.imbue(std::locale::classic());
    for (Number number; stream >> number;) {
        numbers.push_back(number);
        char between = separator;
        if (stream >> between && between != separator)
            return false;
    }
    return true;
}

bool ReadTerm(ConfigurationSection const &section, ColumnTerm &term) {
    std::vector<std::uint32_t> mothers;
    std::vector<int> settings;
    if (!ReadNumbers(section, "MotherVariables", mothers))
        return false;
    // Stored lags take the place of the mothers: saved projects are read so.
    ReadNumbers(section, "Lags", mothers);
    ReadNumbers(section, "QualSetting", settings);
    term = ColumnTerm(mothers, {}, settings);
    return true;
}

NCError DatasetMissing() {
    return NCError(ExceptionMessage::translate("The dataset could not be loaded."), NCError::Error);
}

boost::shared_ptr<NCDataContainerBase const> DataOf(NCProject const &project, int dataset, bool predicted) {
    boost::shared_ptr<NCDataContainerBase const> const data =
        predicted ? project.GetPredSet(-1) : project.GetDataSet(dataset);
    if (!data)
        throw DatasetMissing();
    return data;
}

ObservationInfos ObservationsOf(NCProject const &project, int model, int dataset, bool predicted) {
    if (model < 1)
        return DataOf(project, dataset, predicted)->GetObservations();
    if (predicted) {
        if (auto const predictions = project.GetPredictions(model, false))
            return predictions->GetObservations();
    } else if (auto const object = project.GetModel(model)) {
        return object->GetObservations();
    }
    throw DatasetMissing();
}

char const *TermSection(bool ofY) {
    return ofY ? "YTerm" : "XTerm";
}

char const *BatchesKey(bool predicted) {
    return predicted ? "PredictionSelectedBatches" : "SelectedBatches";
}

} // namespace

DefaultSelection::DefaultSelection() : m_project(KestaProjectHandlerBase::Instance().GetActiveProject()) {}

DefaultSelection::DefaultSelection(boost::shared_ptr<NCProject> const &project) : m_project(project) {}

boost::shared_ptr<NCProject> DefaultSelection::GetProject() const {
    return boost::shared_ptr<NCProject>(m_project);
}

void DefaultSelection::clear() {
    m_yTerm.Clear();
    m_xTerm.Clear();
    m_observation = 0;
    m_predSetObservation = 0;
    m_variable = 0;
    m_batches.clear();
    m_predictionBatches.clear();
}

int DefaultSelection::GetTermIndex(int model, bool ofY) const {
    boost::shared_ptr<NCProject> const project = GetProject();
    boost::shared_ptr<NCModel const> const object = project->GetModel(model);
    static ColumnTerms const none;
    ColumnTerms const &terms = !object ? none : ofY ? object->GetYColumnTerms() : object->GetXColumnTerms();
    ColumnTerm const first = terms.Size() > 0 ? terms[1] : ColumnTerm();

    ColumnTerm &cached = CachedTerm(ofY);
    ColumnTerm candidate = cached;
    if (candidate.Size() == 0) {
        auto const section = SectionOf(*project);
        auto const stored = section ? section->OpenSubSection(TermSection(ofY)) : nullptr;
        if (!stored || !ReadTerm(*stored, candidate)) {
            cached = first;
            return 1;
        }
    }
    if (terms.Size() == 0)
        return 1;
    int const index = terms.Find(candidate);
    cached = index == -1 ? first : candidate;
    return std::max(index, 1);
}

void DefaultSelection::SetTerm(ColumnTerm const &term, bool ofY) {
    boost::shared_ptr<NCProject> const project = GetProject();
    if (auto const section = SectionOf(*project))
        WriteTerm(*section->CreateSubSection(TermSection(ofY)), term);
    CachedTerm(ofY) = term;
}

void DefaultSelection::SetTermIndex(int model, int index, bool ofY) {
    boost::shared_ptr<NCProject> const project = GetProject();
    auto const object = project->GetModelIndex(model) > 0 ? project->GetModel(model) : nullptr;
    if (!object)
        return;
    ColumnTerms const &terms = ofY ? object->GetYColumnTerms() : object->GetXColumnTerms();
    if (index >= 1 && index <= terms.Size())
        SetTerm(terms[index], ofY);
}

int DefaultSelection::GetDefaultXVarIndex(int model) const {
    return GetTermIndex(model, false);
}
int DefaultSelection::GetDefaultYVarIndex(int model) const {
    return GetTermIndex(model, true);
}
void DefaultSelection::SetDefaultXVarIndex(int model, int index) {
    SetTermIndex(model, index, false);
}
void DefaultSelection::SetDefaultYVarIndex(int model, int index) {
    SetTermIndex(model, index, true);
}
void DefaultSelection::SetDefaultXTerm(ColumnTerm const *term) {
    SetTerm(*term, false);
}
void DefaultSelection::SetDefaultYTerm(ColumnTerm const *term) {
    SetTerm(*term, true);
}

std::uint32_t DefaultSelection::GetDefaultSelectedObservation(int model, int dataset, bool predicted) const {
    boost::shared_ptr<NCProject> const project = GetProject();
    std::uint32_t &field = predicted ? m_predSetObservation : m_observation;
    if (field != 0)
        return field;
    ObservationInfos const observations = ObservationsOf(*project, model, dataset, predicted);
    auto const isHere = [&observations](std::uint32_t number) {
        return std::find(observations.begin(), observations.end(), ObservationInfo(number)) != observations.end();
    };
    int stored = 0;
    auto const section = SectionOf(*project);
    bool const known = section && section->ReadKey(predicted ? "PredSetObs" : "Obs", stored);
    std::uint32_t const number = static_cast<std::uint32_t>(stored);
    std::uint32_t const first = observations.empty() ? 0 : observations.front().GetUniqueID();
    field = known && isHere(number) ? number : first;
    return field;
}

void DefaultSelection::SetDefaultSelectedObservation(std::uint32_t observation, bool predicted) {
    boost::shared_ptr<NCProject> const project = GetProject();
    if (auto const section = SectionOf(*project))
        section->WriteKey(predicted ? "PredSetObs" : "Obs", static_cast<int>(observation));
    (predicted ? m_predSetObservation : m_observation) = observation;
}

std::uint32_t DefaultSelection::GetDefaultSelectedVariable(int model, int dataset, bool predicted) const {
    return model > 0 ? GetDefaultSelectedModelVariable(model) : GetDefaultSelectedDatasetVariable(dataset, predicted);
}

std::uint32_t DefaultSelection::GetDefaultSelectedModelVariable(int model) const {
    boost::shared_ptr<NCProject> const project = GetProject();
    int variable = static_cast<int>(m_variable);
    if (variable == 0)
        if (auto const section = SectionOf(*project))
            section->ReadKey("Variable", variable);
    auto const object = project->GetModel(model);
    bool const known = !object || object->GetXColumnTerms().Size() == 0 ||
                       object->GetXColumnTerms().FindFirst(static_cast<unsigned>(variable)) >= 1;
    return known ? static_cast<std::uint32_t>(variable) : object->GetXColumnTerms()[1].GetMotherVariable(1);
}

std::uint32_t DefaultSelection::GetDefaultSelectedDatasetVariable(int dataset, bool predicted) const {
    boost::shared_ptr<NCProject> const project = GetProject();
    auto const data = DataOf(*project, dataset, predicted);
    // The section has no say here: only what this object was told counts.
    std::vector<std::uint32_t> const &variables = data->GetVariables();
    bool const known = std::find(variables.begin(), variables.end(), m_variable) != variables.end();
    if (!known && !variables.empty())
        m_variable = variables.front();
    return m_variable;
}

void DefaultSelection::SetDefaultSelectedVariable(std::uint32_t variable) {
    boost::shared_ptr<NCProject> const project = GetProject();
    if (auto const section = SectionOf(*project))
        section->WriteKey("Variable", static_cast<int>(variable));
    m_variable = variable;
}

int DefaultSelection::GetDefaultSelectedBatches(std::vector<std::string> &batches, bool predicted) const {
    boost::shared_ptr<NCProject> const project = GetProject();
    std::vector<std::string> &cached = predicted ? m_predictionBatches : m_batches;
    if (cached.empty())
        if (auto const section = SectionOf(*project))
            section->ReadKey(BatchesKey(predicted), cached, separator);
    batches = cached;
    return static_cast<int>(batches.size());
}

void DefaultSelection::SetDefaultSelectedBatches(std::vector<std::string> const &batches, bool predicted) {
    boost::shared_ptr<NCProject> const project = GetProject();
    if (auto const section = SectionOf(*project))
        section->WriteKey(BatchesKey(predicted), batches, separator);
    (predicted ? m_predictionBatches : m_batches) = batches;
}

std::string DefaultSelection::GetDefaultSelectedBatch(bool predicted) const {
    boost::shared_ptr<NCProject> const project = GetProject();
    std::vector<std::string> &cached = predicted ? m_predictionBatches : m_batches;
    if (cached.empty()) {
        std::string text;
        if (auto const section = SectionOf(*project))
            section->ReadKey(BatchesKey(predicted), text);
        cached.push_back(text.substr(0, text.find(separator)));
    }
    return cached.front();
}

void DefaultSelection::SetDefaultSelectedBatch(std::string const &batch, bool predicted) {
    boost::shared_ptr<NCProject> const project = GetProject();
    std::vector<std::string> batches;
    if (auto const section = SectionOf(*project))
        section->ReadKey(BatchesKey(predicted), batches, separator);
    if (auto const known = std::find(batches.begin(), batches.end(), batch); known != batches.end())
        batches.erase(known);
    batches.insert(batches.begin(), batch);
    SetDefaultSelectedBatches(batches, predicted);
}

template <typename Archive>
void DefaultSelection::save(Archive &archive, unsigned int) const {
    for (ColumnTerm const *term : {&m_yTerm, &m_xTerm}) {
        std::ostringstream text;
        text << *term;
        std::string const saved = text.str();
        archive << make_nvp("Term", saved);
    }
    archive << make_nvp("Obs", m_observation) << make_nvp("PredSetObs", m_predSetObservation)
            << make_nvp("Variable", m_variable) << make_nvp("SelectedBatches", m_batches)
            << make_nvp("PredictionSelectedBatches", m_predictionBatches);
}

template <typename Archive>
void DefaultSelection::load(Archive &archive, unsigned int) {
    for (ColumnTerm *term : {&m_yTerm, &m_xTerm}) {
        std::string saved;
        archive >> make_nvp("Term", saved);
        std::istringstream text(saved);
        text >> *term;
    }
    archive >> make_nvp("Obs", m_observation) >> make_nvp("PredSetObs", m_predSetObservation) >>
        make_nvp("Variable", m_variable) >> make_nvp("SelectedBatches", m_batches) >>
        make_nvp("PredictionSelectedBatches", m_predictionBatches);
}

template DATASERIES_API void DefaultSelection::save(boost::archive::polymorphic_oarchive &, unsigned int) const;
template DATASERIES_API void DefaultSelection::load(boost::archive::polymorphic_iarchive &, unsigned int);

} // namespace ProjectUtilities
